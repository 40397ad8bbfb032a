#include "robot/events/event_log.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace vemra::robot {
namespace {

void check(const event::Note& note)
{
    for (const auto& [name, value] : note.fields)
        for (const char* own : {"frame", "ms", "event", "text", "what"})
            if (name == own)
                throw std::logic_error("a log entry has its own field " + name);
}

}  // namespace

void EventLog::record(std::uint64_t frame, Event event)
{
    if (frame < last_frame_)
        throw std::logic_error("the event log went back in time");
    if (const auto* note = std::get_if<event::Note>(&event))
        check(*note);
    last_frame_ = frame;
    const LogEntry entry{frame, std::move(event)};
    for (LogSink* sink : sinks_)
        sink->take(entry);
}

void EventLog::finish(const nlohmann::ordered_json& report)
{
    for (LogSink* sink : sinks_)
        sink->finish(report);
}

}  // namespace vemra::robot
