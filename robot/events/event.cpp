#include "robot/events/event.h"

#include <fmt/format.h>

namespace vemra::robot {
namespace {

std::string changed(const std::string& code, bool raised)
{
    return code + (raised ? " raised" : " cleared");
}

std::string warned(bool warning, const std::string& text)
{
    return (warning ? "warning " : "") + text;
}

std::string about(EscapeKind kind)
{
    return std::string(nameOf(kind).about);
}

std::string percent(const char* before, int percent)
{
    return before + std::to_string(percent) + " %";
}

}  // namespace

std::string_view kindOf(const Event& event)
{
    using namespace event;
    using Key = KeyChange::Key;
    using Kind = std::string_view;
    return std::visit(Cases{[](const ModeChange&) -> Kind { return "mode"; },
                            [](const KeyChange& e) -> Kind {
                                return e.key == Key::TaskState ? "task_state" : "robot_status";
                            },
                            [](const Light&) -> Kind { return "light"; },
                            [](const StationLight&) -> Kind { return "station_light"; },
                            [](const Music&) -> Kind { return "music"; },
                            [](const Message&) -> Kind { return "message"; },
                            [](const LevelMessage&) -> Kind { return "message"; },
                            [](const UserAct&) -> Kind { return "user"; },
                            [](const DockContact&) -> Kind { return "body"; },
                            [](const Approach&) -> Kind { return "body"; },
                            [](const BatteryLevel&) -> Kind { return "body"; },
                            [](const BatteryEmpty&) -> Kind { return "body"; },
                            [](const ChargeBegins&) -> Kind { return "body"; },
                            [](const HealthCode&) -> Kind { return "error"; },
                            [](const EscapeError&) -> Kind { return "error"; },
                            [](const StationCode&) -> Kind { return "error"; },
                            [](const Motion&) -> Kind { return "motion"; },
                            [](const EscapeBegins&) -> Kind { return "escape"; },
                            [](const EscapeEnds&) -> Kind { return "escape"; },
                            [](const TrapReport&) -> Kind { return "custom"; },
                            [](const PassBegins&) -> Kind { return "custom"; },
                            [](const CleaningLog&) -> Kind { return "custom"; },
                            [](const Unmet&) -> Kind { return "expectation"; },
                            [](const Note&) -> Kind { return "custom"; }},
                      event);
}

std::string toText(const Event& event)
{
    using namespace event;
    return std::visit(
        Cases{[](const ModeChange& e) { return std::string(toText(e.to)); },
              [](const KeyChange& e) { return e.to; }, [](const Light& e) { return e.shown; },
              [](const StationLight& e) { return e.shown; },
              [](const Music& e) { return std::to_string(e.number) + (e.interrupt ? "" : " queued"); },
              [](const DockContact& e) { return std::string(e.on ? "on the dock" : "off the dock"); },
              [](const Approach&) { return std::string("final approach to the dock"); },
              [](const BatteryLevel& e) { return percent("battery ", e.percent); },
              [](const BatteryEmpty&) { return std::string("the battery is empty: the robot is off"); },
              [](const ChargeBegins& e) { return percent("charges from ", e.percent); },
              [](const HealthCode& e) { return warned(e.warning, changed(e.code, e.raised)); },
              [](const EscapeError& e) { return changed(e.code, e.raised); },
              [](const StationCode& e) { return "station: " + warned(e.warning, changed(e.code, e.raised)); },
              [](const EscapeBegins& e) { return "escape: " + about(e.kind); },
              [](const EscapeEnds& e) { return (e.free ? "free: " : "still stuck: ") + about(e.kind); },
              [](const PassBegins&) { return std::string("the floor is cleaned once more"); },
              [](const CleaningLog& e) {
                  return fmt::format("cleaning log: {}, {} s, {:.1f} m2, {}", e.mode, e.seconds, e.area_m2,
                                     e.done ? "done" : "broken off");
              },
              [](const auto& e) { return e.text; }},
        event);
}

}  // namespace vemra::robot
