#include "robot/events/json_lines.h"

#include "robot/base/clock.h"

namespace vemra::robot {

void JsonLines::take(const LogEntry& entry)
{
    nlohmann::ordered_json line{{"frame", entry.frame},
                                {"ms", entry.frame * kFrameMs},
                                {"event", toText(entry.kind)},
                                {"text", entry.text}};
    if (entry.fields.is_object()) {
        line.update(entry.fields);
    }
    put(line);
}

void JsonLines::finish(const nlohmann::ordered_json& report)
{
    put({{"report", report}});
    out_.flush();
}

void JsonLines::put(const nlohmann::ordered_json& line)
{
    // A text that is not UTF-8 must not end a run: what cannot be read in it is replaced.
    out_ << line.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

}  // namespace vemra::robot
