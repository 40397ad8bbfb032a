#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "robot/body/body.h"
#include "robot/events/event_log.h"
#include "robot/host/expectations.h"
#include "robot/host/passes.h"
#include "robot/host/run_figures.h"
#include "robot/host/services.h"
#include "robot/scenario/scenario.h"
#include "robot/world/dock.h"
#include "robot/world/swept_floor.h"
#include "robot/world/world.h"

namespace vemra::robot {

class Observers;

/// What a run needs. The same setup gives the same run, event by event.
struct RobotSetup
{
    /// Registers the trees, as the plug-in does.
    std::function<void(BT::BehaviorTreeFactory&)> load_trees;
    Home home;
    Dock dock;
    std::vector<BoxMm> cliffs = {};
    Scenario scenario;
    std::uint64_t seed = 1;
    std::string tree = "RobotNode";        ///< the root; entered anew whenever it ends
    std::optional<PointMm> goal = {};      ///< a way there is searched before the tree is entered
    ServiceMaker services = makeServices;  ///< what answers the leaves
};

/// The simulated robot in its home: the trees of the plug-in, ticked once a frame, and the services that
/// answer their leaves. A leaf that no service answers does nothing; report() says which of them the run met.
class Robot
{
public:
    /// Throws InputError when the tree is unknown or not written, or a place in the scenario lies outside the
    /// home or leaves the robot no room, and what load_trees throws.
    explicit Robot(RobotSetup setup);
    ~Robot();
    Robot(const Robot&) = delete;
    Robot& operator=(const Robot&) = delete;

    /// Gets all that is logged from now on; must outlive the robot.
    void addSink(LogSink& sink) { log_.addSink(sink); }

    /// Sees all nodes of the trees at work from now on; must outlive the robot.
    void addObserver(BT::StatusObserver& observer);

    /// One frame: what the scenario lets happen, the body's step, the services, one tick of the trees.
    void step();
    /// Frames done.
    [[nodiscard]] std::uint64_t frame() const { return state_.frame; }
    /// The robot has switched itself off; nothing happens any more.
    [[nodiscard]] bool over() const { return state_.powered_off; }
    /// Something happens now, beside what the scenario lets happen.
    void happen(const ScenarioEvent& event);
    /// Closes the log with the report.
    void finish();
    /// What the scenario expected and did not come true; complete when the run is finished.
    [[nodiscard]] const std::vector<Unmet>& unmet() const { return unmet_; }
    /// How many expectations the run was too short for.
    [[nodiscard]] std::uint64_t openExpectations() const { return expectations_.open(); }

    [[nodiscard]] const RobotState& state() const { return state_; }
    [[nodiscard]] const Body& body() const { return body_; }
    [[nodiscard]] const Home& home() const { return world_.solid(); }
    [[nodiscard]] const World& world() const { return world_; }
    /// Where the robot thinks it is.
    [[nodiscard]] PoseMm believedPose() const { return knowledge_.localisation.pose(); }
    /// The floor that was swept, in square metres.
    [[nodiscard]] double sweptM2() const { return swept_.areaM2(); }
    /// The same of the pass at hand.
    [[nodiscard]] double passSweptM2() const { return swept_.passAreaM2(); }
    /// How often the floor was cleaned, the pass at hand included.
    [[nodiscard]] std::size_t passes() const { return passes_.count(); }
    /// The share of the floor within reach that was swept, 0 to 1; takes a look at the whole home.
    [[nodiscard]] double coverage() const { return swept_.shareOf(first_place_).part(); }
    /// Of the floor that its laser can see from where it can get to, the share that is on its map, 0 to 1;
    /// takes a look at the whole home.
    [[nodiscard]] double knownFloor() const;
    /// What its map says of a place of that map, told in the map's frame.
    [[nodiscard]] CellState onItsMap(PointMm place) const
    {
        return knowledge_.map.occupancy().at(cellAt(place));
    }
    /// The floor that it could have swept and did not: middles of squares, and their edge in mm. None where
    /// the run was no clean: a robot that only goes home misses nothing.
    [[nodiscard]] std::vector<PointMm> missedFloor() const
    {
        constexpr double kClean = 0.25;
        return swept_.shareOf(first_place_).part() >= kClean ? swept_.missed(first_place_)
                                                             : std::vector<PointMm>{};
    }
    [[nodiscard]] double missedFloorMm() const { return swept_.cellMm(); }
    [[nodiscard]] const Dock& dock() const { return setup_.dock; }
    [[nodiscard]] const VirtualWalls& virtualWalls() const { return knowledge_.map.virtualWalls(); }
    [[nodiscard]] BT::Blackboard& blackboard() { return *blackboard_; }

    /// How often the root has ended in failure.
    [[nodiscard]] std::uint64_t rootFailures() const { return root_failures_; }
    /// What came of the run, in figures.
    [[nodiscard]] nlohmann::ordered_json report() const;

private:
    class FrameClock;
    /// A key of the blackboard that is shown on the time line.
    struct WatchedKey
    {
        const char* name;
        event::KeyChange::Key key;
        std::string text;
    };

    void record(Event event);
    bool moveBody(const Happening& what);
    bool changeHome(const Happening& what);
    void takeAway(const std::string& thing);
    [[nodiscard]] bool isDocked() const;
    void beginFrame();
    void showUnmet(std::vector<Unmet> unmet);
    [[nodiscard]] Moment moment() const;
    void showMode();
    void showKeys();
    void showResult(BT::NodeStatus result, const std::string& reason);
    void plantTree();
    /// Not inlined, so that what a tick costs can be counted apart from the rest of the frame.
    [[nodiscard]] [[gnu::noinline]] BT::NodeStatus tick(std::string& reason);

    RobotSetup setup_;
    EventLog log_;
    RobotState state_;
    Chance chance_;
    World world_;
    Body body_;
    std::shared_ptr<FrameClock> clock_;
    std::unique_ptr<Observers> observers_;
    BT::Blackboard::Ptr blackboard_;
    BT::BehaviorTreeFactory factory_;
    Knowledge knowledge_;
    std::vector<std::unique_ptr<Service>> services_;
    BT::Tree tree_;
    std::map<std::string, World::ThingId> things_;  ///< put down in the home, by name
    std::size_t next_event_ = 0;
    BT::NodeStatus shown_result_ = BT::NodeStatus::IDLE;
    std::uint64_t root_successes_ = 0;
    std::uint64_t root_failures_ = 0;
    Mode shown_mode_ = Mode::None;
    std::vector<WatchedKey> keys_;
    SweptFloor swept_;
    RunFigures figures_;
    Passes passes_;
    PointMm first_place_;
    Expectations expectations_;
    std::vector<Unmet> unmet_;
    std::map<std::string, std::uint64_t, std::less<>> defaults_met_;  ///< leaf without service: ticks
    std::map<std::string, std::uint64_t> unwritten_met_;              ///< tree without description: ticks
    std::map<std::string, std::uint64_t> frames_in_mode_;
};

}  // namespace vemra::robot
