#pragma once

#include <cstdint>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <utility>
#include <vector>

#include "robot/events/event.h"

namespace vemra::robot {

struct LogEntry
{
    std::uint64_t frame = 0;
    Event event;
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

    /// Frames never go back. Fields of a note must not be named frame, ms, event, text or what. Throws
    /// std::logic_error otherwise.
    void record(std::uint64_t frame, Event event);
    void finish(const nlohmann::ordered_json& report);

private:
    std::uint64_t last_frame_ = 0;
    std::vector<LogSink*> sinks_;
};

/// Keeps the entries of some kinds.
class LogKeeper final : public LogSink
{
public:
    explicit LogKeeper(std::function<bool(const Event&)> wanted) : wanted_(std::move(wanted)) {}

    void take(const LogEntry& entry) override
    {
        if (wanted_(entry.event))
            entries_.push_back(entry);
    }
    void finish(const nlohmann::ordered_json& /*report*/) override {}

    const std::vector<LogEntry>& entries() const { return entries_; }

private:
    std::function<bool(const Event&)> wanted_;
    std::vector<LogEntry> entries_;
};

}  // namespace vemra::robot
