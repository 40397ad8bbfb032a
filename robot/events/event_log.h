#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vemra::robot {

enum class LogKind : std::uint8_t
{
    Mode,
    TaskState,
    RobotStatus,
    Light,
    Music,
    StationLight,
    Message,
    User,  ///< what the scenario does
    Body,  ///< on or off the dock ("on_dock"), a final approach to it ("docking_attempt"), the battery in
           ///< percent ("battery"), a charge that begins ("charge")
    Error,
    Motion,       ///< what the robot is about to do ("account": the key that is accounted to)
    Escape,       ///< the robot gets stuck, free, or stays stuck ("kind")
    Expectation,  ///< what the scenario expects has not come true ("line" in its file)
    Custom
};

/// "mode", "task_state", "robot_status", ...
const char* toText(LogKind kind);
std::optional<LogKind> logKindOfText(std::string_view text);

struct LogEntry
{
    std::uint64_t frame = 0;
    LogKind kind = LogKind::Custom;
    std::string text;
    nlohmann::ordered_json fields;  ///< an object, or null
};

/// Somebody who follows a run.
class LogSink
{
public:
    virtual ~LogSink() = default;
    virtual void take(const LogEntry& entry) = 0;
    /// The run is over.
    virtual void finish(const nlohmann::ordered_json& report) = 0;
};

/// Where all that happens in a run is told, in the order in which it does. The time line, the pictures and
/// the report are made from it and from nothing else. It keeps nothing itself: a run may be long.
class EventLog
{
public:
    /// The sink gets all later entries; it must outlive the log.
    void addSink(LogSink& sink) { sinks_.push_back(&sink); }

    /// Frames never go back. Fields must not be named frame, ms, event or text. Throws std::logic_error
    /// otherwise.
    void record(std::uint64_t frame, LogKind kind, std::string text, nlohmann::ordered_json fields = {});
    void finish(const nlohmann::ordered_json& report);

private:
    std::uint64_t last_frame_ = 0;
    std::vector<LogSink*> sinks_;
};

/// Keeps the entries of some kinds.
class LogKeeper final : public LogSink
{
public:
    explicit LogKeeper(std::function<bool(LogKind)> wanted) : wanted_(std::move(wanted)) {}

    void take(const LogEntry& entry) override
    {
        if (wanted_(entry.kind))
            entries_.push_back(entry);
    }
    void finish(const nlohmann::ordered_json& /*report*/) override {}

    const std::vector<LogEntry>& entries() const { return entries_; }

private:
    std::function<bool(LogKind)> wanted_;
    std::vector<LogEntry> entries_;
};

}  // namespace vemra::robot
