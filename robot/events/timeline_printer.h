#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>

#include "robot/events/event_log.h"

namespace vemra::robot {

/// The time line for people: frame, time, kind, text. The same thing said in frame after frame is printed
/// once, with how often it was said; of the battery, each tenth percent. At the end what the run came to.
class TimelinePrinter : public LogSink
{
public:
    enum class Colour : bool
    {
        Off,
        On
    };

    /// out must outlive the sink.
    TimelinePrinter(std::ostream& out, Colour colour) : out_(out), colour_(colour == Colour::On) {}

    void take(const LogEntry& entry) override;
    void finish(const nlohmann::ordered_json& report) override;

private:
    struct Line
    {
        std::uint64_t frame;
        std::string_view kind;
        std::string text;
    };

    void print();
    /// What the run came to, of the fields of the robot's report.
    void summarise(const nlohmann::ordered_json& report);
    void summarisePasses(const nlohmann::ordered_json& passes);
    void summariseExpectations(const nlohmann::ordered_json& expected);

    std::ostream& out_;
    bool colour_;
    bool headed_ = false;
    std::optional<Line> pending_;   ///< may be said again
    std::uint64_t last_frame_ = 0;  ///< in which it was said last
    int times_ = 0;
    std::optional<int> told_battery_;
};

/// h:mm:ss.mmm from the start of the run.
std::string timeOfFrame(std::uint64_t frame);

/// Whether a stream of the process (1, 2) is a terminal that wants colour.
bool isColourTerminal(int descriptor);

}  // namespace vemra::robot
