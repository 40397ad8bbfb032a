#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <span>

#include "robot/scenario/health_codes.h"
#include "robot/scenario/scenario_fields.h"
#include "robot/scenario/words.h"

namespace vemra::robot {
namespace {

// [x0, y0, x1, y1] in metres, read from a node.
AreaMm areaOf(const std::vector<double>& edges, const YamlFields& fields, const YAML::Node& node,
              std::string_view name)
{
    if (edges[0] >= edges[2] || edges[1] >= edges[3]) {
        fields.failAt(node, fmt::format("\"{}\": expected [x0, y0, x1, y1] with x0 < x1 and y0 < y1", name));
    }
    return {{1e3 * edges[0], 1e3 * edges[1]}, {1e3 * edges[2], 1e3 * edges[3]}};
}

Happening readApp(const YamlFields& event)
{
    AppCommand command;
    command.mode = wordOf(event, "app", kAppModes);
    command.timed_order = event.has("order") && event.flag("order");
    if (command.timed_order && command.mode != Mode::AutoClean && command.mode != Mode::SelectAreaClean) {
        event.fail("order", "it only with auto or select_area");
    }
    for (const YAML::Node& area : event.list("areas")) {
        switch (command.mode) {
            case Mode::SelectAreaClean:
                if (int room = 0; YAML::convert<int>::decode(area, room) && room >= 0) {
                    command.rooms.push_back(room);
                    break;
                }
                event.failAt(area, "\"areas\": expected numbers of rooms, as in [1, 3]");
            case Mode::DrawAreaClean:
                command.areas.push_back(areaOf(event.places(area, "areas", 4), event, area, "areas"));
                break;
            case Mode::SelectPointClean: {
                const std::vector<double> point = event.places(area, "areas", 2);
                command.points.push_back({1e3 * point[0], 1e3 * point[1]});
                break;
            }
            default:
                event.fail("areas", "it only with select_area, draw_area or select_point");
        }
    }
    if (event.has("passes")) {
        constexpr double kMostPasses = 3;
        command.passes = static_cast<int>(event.number("passes", 1, kMostPasses));
    }
    return command;
}

Happening readDrive(const YamlFields& event, std::string_view name)
{
    constexpr double kFastest = 0.3;
    constexpr double kFastestTurn = 120;
    constexpr std::uint64_t kFramesOfAnOrder = 50;
    const std::vector<double> speeds = event.numbers(name, 2);
    if (std::abs(speeds[0]) > kFastest || std::abs(speeds[1]) > kFastestTurn) {
        event.fail(name, fmt::format("metres a second ahead, at most {} to and fro, and degrees a second to "
                                     "the left, at most {}, as in [0.2, -30]",
                                     kFastest, kFastestTurn));
    }
    return DriveByHand{1e3 * speeds[0], speeds[1],
                       event.has("for") ? framesOf(event, "for") : kFramesOfAnOrder};
}

template <bool stuck>
Happening readStuck(const YamlFields& event, std::string_view name)
{
    const std::string word = event.text(name);
    if (const auto kind = escapeKindOf(word)) {
        return Stuck{*kind, stuck};
    }
    std::vector<std::string_view> known;
    known.reserve(kEscapes.size());
    for (const EscapeName& escape : kEscapes) {
        known.push_back(escape.word);
    }
    event.fail(name, fmt::format("one of {}, not \"{}\"", fmt::join(known, ", "), word));
}

Happening readPutDown(const YamlFields& event)
{
    const std::vector<double> edges = event.places("box_at", 4);
    PutDown thing{event.text("put_down"), areaOf(edges, event, event.node("box_at"), "box_at")};
    thing.low = event.has("low") && event.flag("low");
    thing.step = event.has("step") && event.flag("step");
    if (thing.low && thing.step) {
        event.fail("step", "either a low thing or a step");
    }
    return thing;
}

template <FaultKind kind, bool raised>
Happening readFault(const YamlFields& event, std::string_view name)
{
    constexpr std::string_view prefix = "OLO_HEALTH_STATUS_TYPE_";
    std::string code = event.text(name);
    if (code.starts_with(prefix)) {
        code.erase(0, prefix.size());
    }
    const auto known = kind == FaultKind::Error          ? robotErrorCodes()
                       : kind == FaultKind::Warning      ? robotWarningCodes()
                       : kind == FaultKind::StationError ? stationErrorCodes()
                                                         : stationWarningCodes();
    if (std::find(known.begin(), known.end(), code) == known.end()) {
        event.fail(name, fmt::format("one of {}, not \"{}\"", fmt::join(known, ", "), code));
    }
    return Fault{kind, code, raised};
}

Happening readErase(const YamlFields& event)
{
    EraseKeys erase;
    if (event.node("erase").IsScalar()) {
        erase.keys.push_back(event.text("erase"));
        return erase;
    }
    for (const YAML::Node& key : event.list("erase")) {
        if (!key.IsScalar()) {
            event.failAt(key, "\"erase\": expected a key or a list of keys");
        }
        erase.keys.push_back(key.Scalar());
    }
    return erase;
}

Happening readStation(const YamlFields& event)
{
    const YamlFields parts = event.fields("station");
    std::vector<std::string_view> known;
    for (const auto& part : kStationParts) {
        known.push_back(part.text);
    }
    parts.allowOnly(known);
    StationChange change;
    for (const auto& part : kStationParts) {
        if (parts.has(part.text)) {
            change.parts.emplace_back(part.value, parts.flag(part.text));
        }
    }
    if (change.parts.empty()) {
        event.fail("station", fmt::format("at least one of {}", fmt::join(known, ", ")));
    }
    return change;
}

// A field that says what happens, the fields that may go with it, and how they are read.
struct Action
{
    std::string_view name;
    std::vector<std::string_view> extras;
    Happening (*read)(const YamlFields& event, std::string_view name);
};

const std::vector<Action>& actions()
{
    using Fields = const YamlFields&;
    using Name = std::string_view;
    // Fields that only ever say "now": false would mean nothing.
    static const auto now = [](Fields e, Name n) {
        if (!e.flag(n)) {
            e.fail(n, "true");
        }
    };
    static const std::vector<Action> all{
        {"key", {}, [](Fields e, Name n) -> Happening { return KeyPress{wordOf(e, n, kKeys)}; }},
        {"app", {"order", "areas", "passes"}, [](Fields e, Name) { return readApp(e); }},
        {"drive", {"for"}, readDrive},
        {"gyro_drift", {}, [](Fields e, Name n) -> Happening { return GyroDrift{e.number(n, -20, 20)}; }},
        {"slam", {}, [](Fields e, Name n) -> Happening { return wordOf(e, n, kSlamMoods); }},
        {"battery", {}, [](Fields e, Name n) -> Happening { return SetBattery{e.number(n, 0, 100)}; }},
        {"lift", {}, [](Fields e, Name n) -> Happening { return Lift{e.flag(n)}; }},
        {"carry_to", {}, [](Fields e, Name n) -> Happening { return CarryTo{poseOf(e, n)}; }},
        {"put_on_dock", {}, [](Fields e, Name n) -> Happening { return now(e, n), PutOnDock{}; }},
        {"take_off_dock", {}, [](Fields e, Name n) -> Happening { return now(e, n), TakeOffDock{}; }},
        {"stuck", {}, readStuck<true>},
        {"unstuck", {}, readStuck<false>},
        {"slip", {}, [](Fields e, Name n) -> Happening { return Slip{e.number(n, 0, 1)}; }},
        {"put_down", {"box_at", "low", "step"}, [](Fields e, Name) { return readPutDown(e); }},
        {"take_away", {}, [](Fields e, Name n) -> Happening { return TakeAway{e.text(n)}; }},
        {"error", {}, readFault<FaultKind::Error, true>},
        {"clear_error", {}, readFault<FaultKind::Error, false>},
        {"warning", {}, readFault<FaultKind::Warning, true>},
        {"clear_warning", {}, readFault<FaultKind::Warning, false>},
        {"station_error", {}, readFault<FaultKind::StationError, true>},
        {"clear_station_error", {}, readFault<FaultKind::StationError, false>},
        {"station_warning", {}, readFault<FaultKind::StationWarning, true>},
        {"clear_station_warning", {}, readFault<FaultKind::StationWarning, false>},
        {"set", {}, [](Fields e, Name n) -> Happening { return keysOf(e, n); }},
        {"erase", {}, [](Fields e, Name) { return readErase(e); }},
        {"station", {}, [](Fields e, Name) { return readStation(e); }},
        {"child_lock", {}, [](Fields e, Name n) -> Happening { return ChildLock{e.flag(n)}; }},
        {"annoy", {}, [](Fields e, Name n) -> Happening { return Annoy{e.flag(n)}; }},
        {"app_child_lock", {}, [](Fields e, Name n) -> Happening { return AppChildLock{e.flag(n)}; }},
        {"empty_now", {}, [](Fields e, Name n) -> Happening { return now(e, n), EmptyNow{}; }},
        {"enter_mode",
         {},
         [](Fields e, Name n) -> Happening { return EnterMode{wordOf(e, n, kOutsideModes)}; }},
        {"self_test", {}, [](Fields e, Name n) -> Happening { return wordOf(e, n, kSelfTests); }},
        {"wifi", {}, [](Fields e, Name n) -> Happening { return WifiAnswer{wordOf(e, n, kWifi)}; }},
        {"find_robot", {}, [](Fields e, Name n) -> Happening { return now(e, n), FindRobot{}; }},
        {"wheels", {}, [](Fields e, Name n) -> Happening { return Wheels{wordOf(e, n, kWheels)}; }},
        {"box",
         {},
         [](Fields e, Name n) -> Happening {
             return FittingChange{Fitting::DustBox, wordOf(e, n, kFitting)};
         }},
        {"water_box",
         {},
         [](Fields e, Name n) -> Happening {
             return FittingChange{Fitting::WaterBox, wordOf(e, n, kFitting)};
         }},
        {"mop",
         {},
         [](Fields e, Name n) -> Happening {
             return FittingChange{Fitting::Mop, wordOf(e, n, kFitting)};
         }},
    };
    return all;
}

}  // namespace

std::string asText(const YAML::Node& value)
{
    if (value.IsSequence()) {
        std::vector<std::string> parts;
        for (const auto& element : value) {
            parts.push_back(asText(element));
        }
        return fmt::format("[{}]", fmt::join(parts, ", "));
    }
    if (value.IsMap()) {
        std::vector<std::string> parts;
        for (const auto& field : value) {
            parts.push_back(asText(field.first) + ": " + asText(field.second));
        }
        return fmt::format("{{{}}}", fmt::join(parts, ", "));
    }
    return value.IsScalar() ? value.Scalar() : "";
}

bool saysWhatHappens(const YamlFields& event)
{
    return !event.has("expect") ||
           std::any_of(actions().begin(), actions().end(),
                       [&event](const Action& action) { return event.has(action.name); });
}

ScenarioEvent readEvent(const YamlFields& event)
{
    std::vector<std::string_view> known{"at", "expect"};
    std::vector<const Action*> found;
    for (const Action& action : actions()) {
        known.push_back(action.name);
        if (event.has(action.name)) {
            found.push_back(&action);
        }
    }
    if (found.size() == 1) {
        std::vector<std::string_view> allowed{"at", "expect", found.front()->name};
        allowed.insert(allowed.end(), found.front()->extras.begin(), found.front()->extras.end());
        // Other actions can't be there, so what is left over is a stranger or an extra out of its place.
        event.allowOnly(allowed);
    } else if (found.empty()) {
        event.allowOnly(known);
        event.failAt(event.node("at"),
                     fmt::format("the event says nothing: expected, beside \"at\", one of {}",
                                 fmt::join(known.begin() + 1, known.end(), ", ")));
    } else {
        event.fail(
            found[1]->name,
            fmt::format("an event of its own: an event says one thing, here it is \"{}\"", found[0]->name));
    }

    ScenarioEvent read;
    read.frame = framesOf(event, "at");
    read.what = found.front()->read(event, found.front()->name);
    read.line = event.line();
    read.text = fmt::format("{}: {}", found.front()->name, asText(event.node(found.front()->name)));
    for (const std::string_view extra : found.front()->extras) {
        if (event.has(extra)) {
            read.text += fmt::format(", {}: {}", extra, asText(event.node(extra)));
        }
    }
    return read;
}

}  // namespace vemra::robot
