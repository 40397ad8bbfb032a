#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "robot/events/event_log.h"

namespace vemra::app {

/// How far a run is, told on standard error of a terminal once it has taken two seconds. What is printed on
/// standard output goes out several times a second, so that whoever follows the run sees it come.
///
/// It is to be a sink of the run before the one that prints: its line is wiped before anything is printed.
class Progress final : public robot::LogSink
{
public:
    explicit Progress(std::uint64_t frames) : Progress(frames, {}) {}
    /// With what else is to be told of the moment.
    Progress(std::uint64_t frames, std::function<std::string()> moment);

    /// To be called after each frame.
    void tell(std::uint64_t frame);

    void take(const robot::LogEntry& /*entry*/) override { wipe(); }
    void finish(const nlohmann::ordered_json& /*report*/) override { wipe(); }

private:
    using Clock = std::chrono::steady_clock;

    void wipe();

    std::uint64_t frames_;
    std::function<std::string()> moment_;
    bool on_terminal_;
    bool shown_ = false;
    Clock::time_point start_ = Clock::now();
    Clock::time_point next_ = start_;
};

}  // namespace vemra::app
