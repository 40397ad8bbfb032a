#include "robot/host/robot.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <utility>

#include "robot/base/clock.h"
#include "robot/base/input_error.h"
#include "robot/host/end_reason.h"
#include "robot/host/goal_tree.h"
#include "robot/host/observers.h"
#include "robot/host/places.h"
#include "robot/host/start_field.h"
#include "robot/host/unwritten_trees.h"
#include "robot/world/sight.h"

namespace vemra::robot {
namespace {

// The contacts touch within this of the docked pose.
constexpr double kContactMm = 30;
constexpr double kContactDeg = 10;
constexpr double kBeforeDockMm = 500;

bool isAway(const PoseMm& a, const PoseMm& b, double mm, double degrees)
{
    return distance(a.at, b.at) > mm || std::abs(wrapped({a.yaw.value - b.yaw.value}).value) > degrees;
}

// Every dock has room here, since the robot could not back out of it otherwise.
PoseMm poseBefore(const Dock& dock)
{
    return {dockedPose(dock).at + kBeforeDockMm * direction(dock.face.yaw),
            wrapped({dock.face.yaw.value + 180})};
}

// What the scenario says of the dock.
RobotSetup docked(RobotSetup setup)
{
    setup.dock.backwards = setup.dock.backwards || setup.scenario.start.dock.backwards;
    return setup;
}

// What a robot that has been everywhere has on its map.
Grid<CellState> statesOf(const Home& home)
{
    const CellIndex low = cellAt(home.centreOf({0, 0}));
    Grid<CellState> cells({low, {low.column + home.columns(), low.row + home.rows()}}, CellState::Unknown,
                          CellState::Unknown);
    for (int row = 0; row < home.rows(); ++row)
        for (int column = 0; column < home.columns(); ++column)
            cells.set({low.column + column, low.row + row}, home.at(CellIndex{column, row}));
    return cells;
}

PoseMm startPose(const RobotSetup& setup)
{
    if (setup.scenario.start.on_dock)
        return dockedPose(setup.dock);
    return setup.scenario.start.pose.value_or(poseBefore(setup.dock));
}

}  // namespace

/// The time of a run is its frames.
class Robot::FrameClock final : public BT::Clock
{
public:
    explicit FrameClock(const RobotState& state) : state_(state) {}
    [[nodiscard]] std::int64_t milliseconds() const override
    {
        return static_cast<std::int64_t>(state_.frame) * kFrameMs;
    }

private:
    const RobotState& state_;
};

void Robot::addObserver(BT::StatusObserver& observer)
{
    observers_->add(observer);
    blackboard_->setStatusObserver(observers_.get());
}

Robot::Robot(RobotSetup setup)
    : setup_(docked(std::move(setup))),
      chance_(setup_.seed),
      world_(setup_.home),
      body_(world_, startPose(setup_), chance_.branch()),
      clock_(std::make_shared<FrameClock>(state_)),
      observers_(std::make_unique<Observers>()),
      blackboard_(BT::Blackboard::create()),
      knowledge_(body_),
      keys_{{"task_state", event::KeyChange::Key::TaskState, {}},
            {"robot_status", event::KeyChange::Key::RobotStatus, {}}},
      swept_(world_.solid()),
      first_place_(body_.truePose().at),
      expectations_(setup_.scenario.expectations)
{
    for (const BoxMm& cliff : setup_.cliffs)
        world_.addCliff(cliff);
    world_.setDockField(fieldAtStart(setup_.dock, setup_.scenario.start.dock));
    checkPlaces(setup_.scenario, world_.solid());
    blackboard_->setClock(clock_);
    log_.addSink(expectations_);
    log_.addSink(figures_);
    log_.addSink(passes_);
    setup_.load_trees(factory_);
    if (!factory_.hasTree(setup_.tree))
        throw InputError("--tree", 0, fmt::format("there is no tree \"{}\"", setup_.tree));
    watchUnwritten(factory_, [this](const std::string& tree) {
        if (++unwritten_met_[tree] == 1)
            record(event::Note{fmt::format("tree {} is not written: it fails wherever it is entered", tree),
                               "not_written",
                               {{"tree", tree}}});
    });

    if (setup_.scenario.start.map.known) {
        knowledge_.map.occupancy().load(statesOf(world_.visible()));
        for (const PointMm& place : setup_.scenario.start.map.been)
            knowledge_.map.remember(place);
    }

    if (setup_.scenario.start.lost)
        knowledge_.localisation.lose();

    const Report report = [this](Event event) { record(std::move(event)); };
    services_ =
        setup_.services({*blackboard_, report, chance_, state_, body_}, knowledge_, setup_.scenario.start);
    leaf::LeafHost host(factory_);
    host.use_runtime_builtin();
    for (const auto& service : services_)
        service->install(host);
    host.register_defaults([this](std::string_view id) {
        if (const auto met = defaults_met_.find(id); met != defaults_met_.end())
            ++met->second;
        else
            defaults_met_.emplace(id, 1);
    });
    plantTree();
}

void Robot::plantTree()
{
    tree_ = factory_.createTree(setup_.tree, blackboard_);
    if (isUnwritten(tree_))
        throw InputError(
            "--tree", 0,
            fmt::format("tree \"{}\" has a name and no description: it is not written", setup_.tree));
    if (setup_.goal && !contains({world_.solid().origin(), world_.solid().farCorner()}, *setup_.goal))
        throw InputError("--goal", 0, "expected a place within the home");
    if (setup_.goal)
        tree_ = goalTree(factory_, blackboard_, setup_.tree, *setup_.goal);
    // Once, at power-on: no frame has to make trees.
    BT::prepareTrees(tree_);
}

Robot::~Robot()
{
    // Nodes of trees that wait to be entered again refer to services.
    blackboard_->setStatusObserver(nullptr);
    tree_ = {};
}

void Robot::record(Event event)
{
    log_.record(state_.frame, std::move(event));
}

double Robot::knownFloor() const
{
    const std::vector<PointMm> visible = floorInSight(world_, first_place_, body_.laser().range_mm);
    const OccupancyMap& map = knowledge_.map.known();
    const auto known = std::count_if(visible.begin(), visible.end(), [&](PointMm place) {
        return map.at(cellAt(knowledge_.localisation.ofWorld(place))) != CellState::Unknown;
    });
    return visible.empty() ? 0 : static_cast<double>(known) / static_cast<double>(visible.size());
}

bool Robot::isDocked() const
{
    return !body_.lifted() && !isAway(body_.truePose(), dockedPose(setup_.dock), kContactMm, kContactDeg);
}

bool Robot::moveBody(const Happening& what)
{
    if (const auto* lift = std::get_if<Lift>(&what)) {
        lift->up ? body_.lift() : body_.setDown(body_.truePose());
    } else if (const auto* wheels = std::get_if<Wheels>(&what)) {
        wheels->dropped ? body_.lift() : body_.setDown(body_.truePose());
    } else if (const auto* carry = std::get_if<CarryTo>(&what)) {
        body_.carryTo(carry->pose);
    } else if (const auto* slip = std::get_if<Slip>(&what)) {
        body_.setSlip(slip->share);
    } else if (std::holds_alternative<PutOnDock>(what)) {
        body_.carryTo(dockedPose(setup_.dock));
    } else if (std::holds_alternative<TakeOffDock>(what)) {
        body_.carryTo(poseBefore(setup_.dock));
    } else {
        return false;
    }
    return true;
}

bool Robot::changeHome(const Happening& what)
{
    if (const auto* thing = std::get_if<PutDown>(&what)) {
        takeAway(thing->name);
        things_[thing->name] = world_.putDown({thing->box.low, thing->box.high}, thing->step  ? Height::Step
                                                                                 : thing->low ? Height::Low
                                                                                              : Height::Tall);
        return true;
    }
    const auto* gone = std::get_if<TakeAway>(&what);
    if (gone != nullptr)
        takeAway(gone->name);
    return gone != nullptr;
}

void Robot::takeAway(const std::string& thing)
{
    if (const auto known = things_.find(thing); known != things_.end()) {
        world_.takeAway(known->second);
        things_.erase(known);
    }
}

void Robot::happen(const ScenarioEvent& event)
{
    record(event::UserAct{event.text});
    bool taken = moveBody(event.what) || changeHome(event.what);
    for (const auto& service : services_)
        taken |= service->take(event.what);
    if (!taken)
        record(event::Note{event.text + ": nothing on this robot feels it"});
}

void Robot::beginFrame()
{
    state_.modes.update(blackboard_->contains("RobotModeSwitchLock"));
    showMode();
    ++frames_in_mode_[toText(state_.modes.current())];
    state_.contacts.update(isDocked());
    knowledge_.localisation.feel(state_.contacts.touching());
}

void Robot::showMode()
{
    const Mode now = state_.modes.current();
    if (now != shown_mode_)
        record(event::ModeChange{shown_mode_, now});
    shown_mode_ = now;
}

void Robot::showKeys()
{
    for (WatchedKey& watched : keys_) {
        std::string scratch;
        const BT::Any* value = blackboard_->getAny(watched.name);
        const std::string_view text = value != nullptr ? value->view(scratch) : std::string_view{};
        if (text == watched.text)
            continue;
        const std::string before = std::exchange(watched.text, std::string(text));
        record(event::KeyChange{watched.key, before, watched.text});
    }
}

void Robot::step()
{
    if (over())
        return;
    expectations_.begin(state_.frame);
    const auto& events = setup_.scenario.events;
    for (; next_event_ < events.size() && events[next_event_].frame <= state_.frame; ++next_event_)
        happen(events[next_event_]);
    body_.step(kFrameMs / 1000.0);
    beginFrame();
    for (const auto& service : services_)
        service->update();
    std::string reason;
    const BT::NodeStatus result = tick(reason);
    showMode();
    showKeys();
    showResult(result, reason);
    passes_.frame(state_.frame, body_, swept_, first_place_);
    swept_.follow(body_.truePose(), state_.brushes_on && !body_.lifted(), state_.frame);
    figures_.frame(body_, state_.brushes_on, swept_.passAreaM2());
    showUnmet(expectations_.look(moment()));
    ++state_.frame;
}

void Robot::finish()
{
    // A robot that is off stays as it is. A run that was broken off says nothing of what was to come.
    if (over())
        showUnmet(expectations_.close(moment()));
    log_.finish(report());
}

Moment Robot::moment() const
{
    return {.frame = state_.frame,
            .mode = state_.modes.current(),
            .task_state = keys_[0].text,
            .robot_status = keys_[1].text,
            .docked = state_.contacts.touching(),
            .powered_off = state_.powered_off,
            .errors = state_.errors,
            .stands_at = body_.truePose().at,
            .keys = *blackboard_,
            .coverage = [this] { return 100 * coverage(); },
            .known = [this] { return 100 * knownFloor(); },
            .swept_in = [this](const BoxMm& box) { return 100 * swept_.shareOf(first_place_, box).part(); }};
}

void Robot::showUnmet(std::vector<Unmet> unmet)
{
    for (Unmet& one : unmet) {
        record(event::Unmet{one.text, one.line});
        unmet_.push_back(std::move(one));
    }
}

// A tree that ends as soon as it is entered was most often given too little to work with: the user hears what
// it lacked.
BT::NodeStatus Robot::tick(std::string& reason)
{
    if (state_.frame > 0)
        return tree_.root_node->executeTick();
    EndReason watch;
    observers_->add(watch);
    blackboard_->setStatusObserver(observers_.get());
    const BT::NodeStatus result = tree_.root_node->executeTick();
    observers_->remove(watch);
    if (observers_->empty())
        blackboard_->setStatusObserver(nullptr);
    reason = watch.of(result);
    return result;
}

// A root that ends is entered anew in the next frame; told once, and again when it ends in the other way.
void Robot::showResult(BT::NodeStatus result, const std::string& reason)
{
    if (result == BT::NodeStatus::RUNNING)
        return;
    ++(result == BT::NodeStatus::SUCCESS ? root_successes_ : root_failures_);
    if (result == shown_result_)
        return;
    shown_result_ = result;
    record(event::Note{fmt::format("tree {} ends: {}{}{}", setup_.tree, BT::toStr(result),
                                   reason.empty() ? "" : ", by ", reason),
                       "tree",
                       {{"result", BT::toStr(result)}}});
}

}  // namespace vemra::robot
