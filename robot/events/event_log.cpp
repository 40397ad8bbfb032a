#include "robot/events/event_log.h"

#include <array>
#include <stdexcept>
#include <utility>

namespace vemra::robot {
namespace {

constexpr std::array<const char*, 14> kKinds{"mode",          "task_state", "robot_status", "light", "music",
                                             "station_light", "message",    "user",         "body",  "error",
                                             "motion",        "escape",     "expectation",  "custom"};

}  // namespace

const char* toText(LogKind kind)
{
    return kKinds.at(static_cast<std::size_t>(kind));
}

std::optional<LogKind> logKindOfText(std::string_view text)
{
    for (std::size_t i = 0; i < kKinds.size(); ++i) {
        if (text == kKinds[i]) {
            return static_cast<LogKind>(i);
        }
    }
    return std::nullopt;
}

void EventLog::record(std::uint64_t frame, LogKind kind, std::string text, nlohmann::ordered_json fields)
{
    if (frame < last_frame_) {
        throw std::logic_error("the event log went back in time");
    }
    if (!fields.is_null() && !fields.is_object()) {
        throw std::logic_error("the fields of a log entry are an object");
    }
    for (const char* own : {"frame", "ms", "event", "text"}) {
        if (fields.contains(own)) {
            throw std::logic_error(std::string("a log entry has its own field ") + own);
        }
    }
    last_frame_ = frame;
    const LogEntry entry{frame, kind, std::move(text), std::move(fields)};
    for (LogSink* sink : sinks_) {
        sink->take(entry);
    }
}

void EventLog::finish(const nlohmann::ordered_json& report)
{
    for (LogSink* sink : sinks_) {
        sink->finish(report);
    }
}

}  // namespace vemra::robot
