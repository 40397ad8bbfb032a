#pragma once

#include <nlohmann/json_fwd.hpp>
#include <ostream>

#include "robot/events/event_log.h"

namespace vemra::robot {

/// One JSON object a line: {"frame":F,"ms":M,"event":KIND,"text":T,...fields}, and at the end
/// {"report":{...}}. The same run gives the same bytes.
class JsonLines : public LogSink
{
public:
    /// out must outlive the sink.
    explicit JsonLines(std::ostream& out) : out_(out) {}

    void take(const LogEntry& entry) override;
    void finish(const nlohmann::ordered_json& report) override;

private:
    void put(const nlohmann::ordered_json& line);

    std::ostream& out_;
};

}  // namespace vemra::robot
