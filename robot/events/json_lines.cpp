#include "robot/events/json_lines.h"

#include <cmath>
#include <nlohmann/json.hpp>

#include "robot/base/clock.h"

namespace vemra::robot {
namespace {

using Json = nlohmann::ordered_json;

Json valueOf(const event::Note::Value& value)
{
    return std::visit([](const auto& held) { return Json(held); }, value);
}

// What a machine may want to know beside the text; null where that says all.
Json fieldsOf(const Event& event)
{
    using namespace event;
    return std::visit(Cases{[](const ModeChange& e) {
                                return Json{{"from", toText(e.from)}, {"to", toText(e.to)}};
                            },
                            [](const KeyChange& e) {
                                return Json{{"from", e.from}};
                            },
                            [](const Music& e) {
                                return Json{{"number", e.number}, {"interrupt", e.interrupt}};
                            },
                            [](const LevelMessage& e) {
                                return Json{{"level", e.level}};
                            },
                            [](const DockContact& e) {
                                return Json{{"on_dock", e.on}};
                            },
                            [](const Approach& e) {
                                return Json{{"docking_attempt", e.number}};
                            },
                            [](const BatteryLevel& e) {
                                return Json{{"battery", e.percent}};
                            },
                            [](const BatteryEmpty&) {
                                return Json{{"battery", 0}};
                            },
                            [](const ChargeBegins& e) {
                                return Json{{"charge", e.number}, {"battery", e.percent}};
                            },
                            [](const HealthCode& e) {
                                return Json{{"code", e.code}, {"warning", e.warning}, {"raised", e.raised}};
                            },
                            [](const EscapeError& e) {
                                return Json{{"code", e.code}, {"raised", e.raised}};
                            },
                            [](const StationCode& e) {
                                return Json{{"code", e.code}, {"raised", e.raised}};
                            },
                            [](const Motion& e) {
                                return e.account.empty() ? Json() : Json{{"account", e.account}};
                            },
                            [](const EscapeBegins& e) {
                                return Json{{"kind", nameOf(e.kind).word}};
                            },
                            [](const EscapeEnds& e) {
                                return Json{{"kind", nameOf(e.kind).word}, {"free", e.free}};
                            },
                            [](const TrapReport& e) {
                                return Json{{"what", "trap"}, {"key", e.key}};
                            },
                            [](const PassBegins&) {
                                return Json{{"what", "pass"}};
                            },
                            [](const CleaningLog& e) {
                                Json ways = Json::object();
                                for (const auto& [reason, way_mm] : e.way_mm)
                                    ways[reason.empty() ? "other" : reason] = std::round(way_mm) / 1e3;
                                return Json{{"what", "cleaning_log"}, {"mode", e.mode},
                                            {"seconds", e.seconds},   {"area_m2", e.area_m2},
                                            {"done", e.done},         {"way_m", ways}};
                            },
                            [](const Unmet& e) {
                                return Json{{"line", e.line}};
                            },
                            [](const Note& e) {
                                Json fields;
                                if (!e.what.empty())
                                    fields["what"] = e.what;
                                for (const auto& [name, value] : e.fields)
                                    fields[name] = valueOf(value);
                                return fields;
                            },
                            [](const auto& /*e*/) { return Json(); }},
                      event);
}

}  // namespace

void JsonLines::take(const LogEntry& entry)
{
    Json line{{"frame", entry.frame},
              {"ms", entry.frame * kFrameMs},
              {"event", kindOf(entry.event)},
              {"text", toText(entry.event)}};
    if (const Json fields = fieldsOf(entry.event); fields.is_object())
        line.update(fields);
    put(line);
}

void JsonLines::finish(const Json& report)
{
    put({{"report", report}});
    out_.flush();
}

void JsonLines::put(const Json& line)
{
    // A text that is not UTF-8 must not end a run: what cannot be read in it is replaced.
    out_ << line.dump(-1, ' ', false, Json::error_handler_t::replace) << '\n';
}

}  // namespace vemra::robot
