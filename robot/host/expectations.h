#pragma once

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "behaviortree_cpp/blackboard/blackboard.h"
#include "robot/events/event_log.h"
#include "robot/scenario/expectation.h"

namespace vemra::robot {

/// The robot at the end of a frame, as far as it can be expected to be some way.
struct Moment
{
    std::uint64_t frame = 0;
    Mode mode = Mode::None;
    const std::string& task_state;
    const std::string& robot_status;
    bool docked = false;
    bool powered_off = false;
    const std::set<std::string, std::less<>>& errors;
    PointMm stands_at;
    const BT::Blackboard& keys;
    std::function<double()> coverage;              ///< percent; takes its time
    std::function<double()> known;                 ///< likewise
    std::function<double(const BoxMm&)> swept_in;  ///< percent of the floor in a box, likewise
};

/// An expectation that was not met.
struct Unmet
{
    std::uint64_t frame = 0;  ///< in which that was certain
    int line = 0;             ///< in the scenario file
    std::string text;         ///< "expected {...}: mode was StandbyMode"
};

/// Holds a run against what its scenario expects of it. It is to be a sink of the run's log.
class Expectations final : public LogSink
{
public:
    /// By their first frame.
    explicit Expectations(std::vector<Expectation> expected) : expected_(std::move(expected)) {}

    /// Before anything happens in a frame.
    void begin(std::uint64_t frame);
    void take(const LogEntry& entry) override;
    void finish(const nlohmann::ordered_json& /*report*/) override {}
    /// After a frame; gives what has turned out not to be met in it.
    [[nodiscard]] std::vector<Unmet> look(const Moment& now);
    /// The robot is off and stays as it is: all that is still expected is held against that.
    [[nodiscard]] std::vector<Unmet> close(const Moment& now);

    [[nodiscard]] std::uint64_t met() const { return met_; }
    /// Those whose time has not come, or not run out.
    [[nodiscard]] std::uint64_t open() const { return expected_.size() - next_ + active_.size(); }

private:
    /// An expectation whose frames are running, and what was seen in them.
    struct Active
    {
        const Expectation* what;
        bool state_seen = false;
        std::uint64_t told = 0;  ///< how often the message or event came
        std::vector<std::string> modes = {};
        std::vector<std::string> music = {};
    };

    [[nodiscard]] static bool isMet(const Active& active);
    [[nodiscard]] std::string found(const Active& active, const Moment& now) const;
    /// Whether it is decided; then met_ or `unmet` has it.
    bool decide(Active& active, const Moment& now, std::vector<Unmet>& unmet);

    std::vector<Expectation> expected_;
    std::size_t next_ = 0;
    std::vector<Active> active_;
    std::string light_;
    std::string station_light_;
    std::uint64_t met_ = 0;

    [[nodiscard]] std::string missing(const ExpectedState& state, const Moment& now) const;
};

}  // namespace vemra::robot
