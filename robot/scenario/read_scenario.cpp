#include "robot/scenario/scenario.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

#include "robot/base/input_error.h"
#include "robot/scenario/scenario_fields.h"

namespace vemra::robot {
namespace {

AnnoyTime readAnnoy(const YamlFields& annoy)
{
    annoy.allowOnly({"from", "to"});
    const AnnoyTime time{framesOf(annoy, "from"), framesOf(annoy, "to")};
    if (time.to <= time.from) {
        annoy.fail("to", "a time after \"from\"");
    }
    return time;
}

StoredMap readStoredMap(const YamlFields& map)
{
    map.allowOnly({"present", "known", "been", "check"});
    StoredMap stored;
    if (map.has("present")) {
        stored.present = map.flag("present");
    }
    stored.known = map.has("known") && map.flag("known");
    if (map.has("been")) {
        if (!stored.known) {
            map.fail("been", "it only with \"known: true\"");
        }
        for (const YAML::Node& place : map.list("been")) {
            const std::vector<double> at = map.places(place, "been", 2);
            stored.been.push_back({1e3 * at[0], 1e3 * at[1]});
        }
    }
    if (map.has("check")) {
        stored.check = map.number("check");
        if (stored.check != 0 && stored.check != 0.5 && stored.check != -1) {
            map.fail("check", "0, 0.5 or -1");
        }
    }
    return stored;
}

DockStart readDock(const YamlFields& dock)
{
    dock.allowOnly({"exchanged", "backwards", "dropouts", "mirrors"});
    DockStart read;
    read.exchanged = dock.has("exchanged") && dock.flag("exchanged");
    read.backwards = dock.has("backwards") && dock.flag("backwards");
    if (dock.has("dropouts")) {
        read.dropouts = dock.number("dropouts", 0, 1);
    }
    for (const YAML::Node& mirror : dock.list("mirrors")) {
        const std::vector<double> ends = dock.places(mirror, "mirrors", 4);
        if (ends[0] == ends[2] && ends[1] == ends[3]) {
            dock.failAt(mirror, "\"mirrors\": expected lines [x0, y0, x1, y1] between two places");
        }
        read.mirrors.push_back({{1e3 * ends[0], 1e3 * ends[1]}, {1e3 * ends[2], 1e3 * ends[3]}});
    }
    return read;
}

ScenarioStart readStart(const YamlFields& start)
{
    start.allowOnly({"on_dock", "lost", "pose", "battery", "child_lock", "charge_rate", "drain_rate",
                     "breakpoint_resume", "annoy", "parameters_confirmed_after", "map", "dock", "keys"});
    ScenarioStart read;
    if (start.has("on_dock")) {
        read.on_dock = start.flag("on_dock");
    }
    read.lost = start.has("lost") && start.flag("lost");
    if (start.has("pose")) {
        if (read.on_dock) {
            start.fail("pose", "it only with \"on_dock: false\"");
        }
        read.pose = poseOf(start, "pose");
        read.pose_line = start.line("pose");
    }
    if (start.has("battery")) {
        read.battery = start.number("battery", 0, 100);
    }
    if (start.has("child_lock")) {
        read.child_lock = start.flag("child_lock");
    }
    if (start.has("charge_rate")) {
        read.charge_rate = start.number("charge_rate", 0, 1e6);
    }
    if (start.has("drain_rate")) {
        read.drain_rate = start.number("drain_rate", 0, 1e6);
    }
    if (start.has("breakpoint_resume")) {
        read.breakpoint_resume = start.flag("breakpoint_resume");
    }
    if (start.has("annoy")) {
        read.annoy = readAnnoy(start.fields("annoy"));
    }
    if (start.has("parameters_confirmed_after")) {
        read.parameters_confirmed_after = framesOf(start, "parameters_confirmed_after");
    }
    if (start.has("map")) {
        read.map = readStoredMap(start.fields("map"));
    }
    if (start.has("dock")) {
        read.dock = readDock(start.fields("dock"));
    }
    if (start.has("keys")) {
        read.keys = keysOf(start, "keys");
    }
    return read;
}

// Somebody who misspells a thing would wonder why it stays.
void checkThings(const Scenario& scenario)
{
    std::set<std::string> there;
    for (const ScenarioEvent& event : scenario.events) {
        if (const auto* thing = std::get_if<PutDown>(&event.what)) {
            there.insert(thing->name);
        } else if (const auto* gone = std::get_if<TakeAway>(&event.what);
                   gone != nullptr && there.erase(gone->name) == 0) {
            throw InputError(
                scenario.file, event.line,
                fmt::format("\"take_away\": expected a thing that was put down before, not \"{}\"",
                            gone->name));
        }
    }
}

}  // namespace

Scenario readScenario(const std::filesystem::path& file)
{
    const YamlFields top(readYaml(file), file.string(), "a scenario");
    top.allowOnly({"name", "about", "home", "tree", "goal", "start", "frames", "events"});
    Scenario scenario;
    scenario.file = file.string();
    scenario.name = top.text("name");
    scenario.about = top.has("about") ? top.text("about") : "";
    scenario.tree = top.has("tree") ? top.text("tree") : "";
    if (top.has("home")) {
        scenario.home = file.parent_path() / top.text("home");
    }
    if (top.has("goal")) {
        const std::vector<double> at = top.places("goal", 2);
        scenario.goal = PointMm{1e3 * at[0], 1e3 * at[1]};
    }
    scenario.frames = framesOf(top, "frames");
    if (scenario.frames == 0) {
        top.fail("frames", "at least one frame");
    }
    if (top.has("start")) {
        scenario.start = readStart(top.fields("start"));
    }
    for (const YAML::Node& event : top.list("events")) {
        const YamlFields fields(event, top.file(), "an event");
        if (framesOf(fields, "at") >= scenario.frames) {
            fields.fail("at", fmt::format("a time before the end of the run, {} frames", scenario.frames));
        }
        if (saysWhatHappens(fields)) {
            scenario.events.push_back(readEvent(fields));
        } else {
            fields.allowOnly({"at", "expect"});
        }
        if (fields.has("expect")) {
            scenario.expectations.push_back(readExpectation(fields, scenario.frames));
        }
    }
    std::stable_sort(scenario.events.begin(), scenario.events.end(),
                     [](const ScenarioEvent& a, const ScenarioEvent& b) { return a.frame < b.frame; });
    std::stable_sort(scenario.expectations.begin(), scenario.expectations.end(),
                     [](const Expectation& a, const Expectation& b) { return a.from < b.from; });
    checkThings(scenario);
    return scenario;
}

}  // namespace vemra::robot
