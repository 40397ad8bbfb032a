#include "robot/scenario/scenario.h"

#include "robot/files.h"

namespace vemra::robot {
namespace {

struct ScenarioFile : testing::Test
{
    Scenario read(const std::string& text) const { return readScenario(folder_.write("day.yaml", text)); }

    // A scenario of one event, which stands on line 4.
    Scenario readEvent(const std::string& event) const
    {
        return read("name: one\nframes: 100\nevents:\n  - {" + event + "}\n");
    }

    template <typename What>
    What what(const std::string& event) const
    {
        return std::get<What>(readEvent(event).events.at(0).what);
    }

    std::string fault(const std::string& event) const
    {
        return faultOf([&] { readEvent(event); });
    }

    static auto here(const std::string& expected)
    {
        return AllOf(HasSubstr("day.yaml:4: "), HasSubstr(expected));
    }
    std::string whole(const std::string& text) const
    {
        return faultOf([&] { read(text); });
    }

    Folder folder_;
};

TEST(ScenarioTime, CountsOfFramesAndTimesWithUnits)
{
    for (const auto& [text, frames] : {std::pair{"500", 500U},
                                       {"0", 0U},
                                       {"20ms", 1U},
                                       {"12s", 600U},
                                       {"1.5s", 75U},
                                       {"3m", 9000U},
                                       {"2h", 360000U},
                                       {"1h30m", 270000U}})
        EXPECT_THAT(framesOfText(text), Optional(frames)) << text;
    for (const char* bad : {"", "-1", "-0s", "1.5", "30ms", "12 s", "12x", "s", "1m30", "1e3", "nan", "inf",
                            "999999999h", "0s5"}) {
        EXPECT_EQ(framesOfText(bad), std::nullopt) << bad;
    }
}

TEST_F(ScenarioFile, EventsComeByTimeAndWithinATimeByTheFile)
{
    const Scenario scenario = read(
        "name: order\nframes: 1m\nevents:\n"
        "  - {at: 10s, battery: 3}\n"
        "  - {at: 500, battery: 1}\n"
        "  - {at: 20ms, battery: 0}\n"
        "  - {at: 10s, battery: 2}\n");
    std::vector<std::pair<std::uint64_t, double>> seen;
    std::vector<int> lines;
    for (const ScenarioEvent& event : scenario.events) {
        seen.emplace_back(event.frame, std::get<SetBattery>(event.what).percent);
        lines.push_back(event.line);
    }
    EXPECT_THAT(seen, ElementsAre(Pair(1, 0), Pair(500, 3), Pair(500, 1), Pair(500, 2)));
    EXPECT_THAT(lines, ElementsAre(6, 4, 5, 7));
    EXPECT_EQ(scenario.frames, 3000U);
}

TEST_F(ScenarioFile, EventsKeepWhatTheySay)
{
    const auto order = what<AppCommand>("at: 1, app: select_area, order: true, areas: [1, 3]");
    EXPECT_TRUE(order.timed_order);
    EXPECT_THAT(order.rooms, ElementsAre(1, 3));
    const auto draw = what<AppCommand>("at: 1, app: draw_area, areas: [[0, -1, 1.5, 2]]");
    ASSERT_EQ(draw.areas.size(), 1U);
    EXPECT_EQ(draw.areas[0].low, (PointMm{0, -1000}));
    EXPECT_EQ(draw.areas[0].high, (PointMm{1500, 2000}));
    EXPECT_THAT(what<AppCommand>("at: 1, app: select_point, areas: [[1, 2]]").points,
                ElementsAre(PointMm{1000, 2000}));
    EXPECT_EQ(what<CarryTo>("at: 1, carry_to: [1, 2, 270]").pose, (PoseMm{{1000, 2000}, {-90}}));
    EXPECT_EQ(what<Fault>("at: 1, clear_station_error: OLO_HEALTH_STATUS_TYPE_DUST_BLOCK").code,
              "DUST_BLOCK");
    EXPECT_THAT(what<SetKeys>("at: 1, set: {z: 1, a: cleaning, flag: }").values,
                ElementsAre(Pair("z", "1"), Pair("a", "cleaning"), Pair("flag", "")));
    EXPECT_THAT(what<StationChange>("at: 1, station: {bag: false, full: true}").parts,
                ElementsAre(Pair(StationPart::Bag, false), Pair(StationPart::Full, true)));
    const auto chair = what<PutDown>("at: 1, put_down: chair, box_at: [1, 2, 1.4, 2.4], low: true");
    EXPECT_EQ(chair.name, "chair");
    EXPECT_EQ(chair.box.high, (PointMm{1400, 2400}));
    EXPECT_TRUE(chair.low);
    EXPECT_EQ(readEvent("at: 1, app: select_area, areas: [1, 3]").events[0].text,
              "app: select_area, areas: [1, 3]");
}

TEST_F(ScenarioFile, StartKeepsWhatItSaysAndLeavesTheRestOpen)
{
    const ScenarioStart open = read("name: a\nframes: 1\n").start;
    EXPECT_TRUE(open.on_dock);
    EXPECT_EQ(open.charge_rate, std::nullopt);

    const ScenarioStart start = read(
                                    "name: a\nframes: 1\nstart: {on_dock: false, pose: [1, 2, 90], battery: "
                                    "14.5, drain_rate: 20, breakpoint_resume: "
                                    "false, annoy: {from: 1s, to: 2s}, map: {known: true, been: [[1, 2.5]], "
                                    "check: -1}, keys: {a: 1}}\n")
                                    .start;
    EXPECT_FALSE(start.on_dock);
    EXPECT_THAT(start.pose, Optional(PoseMm{{1000, 2000}, {90}}));
    EXPECT_EQ(start.battery, 14.5);
    EXPECT_THAT(start.drain_rate, Optional(20));
    EXPECT_THAT(start.breakpoint_resume, Optional(false));
    ASSERT_TRUE(start.annoy);
    EXPECT_EQ(start.annoy->from, 50U);
    EXPECT_EQ(start.annoy->to, 100U);
    EXPECT_THAT(start.keys.values, ElementsAre(Pair("a", "1")));
    EXPECT_EQ(start.map.check, -1);
    EXPECT_EQ(start.map.been, (std::vector<PointMm>{{1000, 2500}}));
}

// Four bytes that the parser makes no headway with, and ten lines that stand for ten million values.
TEST_F(ScenarioFile, WhatATextStandsForIsBounded)
{
    EXPECT_THAT(whole(", a"), HasSubstr("day.yaml:1: not YAML: a value was expected here"));
    std::string bomb = "a0: &a0 [x, x, x, x, x, x, x, x, x, x]\n";
    for (int i = 1; i < 8; ++i) {
        const std::string before = "*a" + std::to_string(i - 1);
        const std::string name = "a" + std::to_string(i);
        bomb.append(name).append(": &").append(name).append(" [").append(before);
        for (int times = 1; times < 10; ++times)
            bomb.append(", ").append(before);
        bomb += "]\n";
    }
    EXPECT_THAT(whole(bomb), HasSubstr("at most 100000 values, those of aliases included"));
}

TEST_F(ScenarioFile, ExpectationsStandBesideEventsOrAlone)
{
    const Scenario scenario = read(
        "name: e\nframes: 100\nevents:\n"
        "  - {at: 9, key: start, expect: {mode: ChargingMode, music: [], within: 5}}\n"
        "  - {at: 7, expect: {never: {docked: true}}}\n"
        "  - {at: 8, expect: {keys: {a: b}}}\n");
    EXPECT_EQ(scenario.events.size(), 1U);
    ASSERT_EQ(scenario.expectations.size(), 3U);
    EXPECT_TRUE(scenario.expectations[0].never);
    EXPECT_EQ(scenario.expectations[0].to, 99U);
    EXPECT_EQ(scenario.expectations[1].to, 8U);
    EXPECT_THAT(scenario.expectations[1].state.keys, ElementsAre(Pair("a", "b")));
    EXPECT_EQ(scenario.expectations[2].to, 14U);
    EXPECT_EQ(scenario.expectations[2].line, 4);
    EXPECT_EQ(scenario.expectations[2].state.mode, Mode::Charging);
    EXPECT_THAT(scenario.expectations[2].events.music, Optional(IsEmpty()));

    EXPECT_THAT(fault("at: 1, expect: {}"), here("something to look for"));
    EXPECT_THAT(fault("at: 1, expect: {within: 3}"), here("something to look for"));
    EXPECT_THAT(fault("at: 1, expect: {mood: good}"), here("no field \"mood\": expected one of mode"));
    EXPECT_THAT(fault("at: 1, expect: {mode: Charging}"), here("names of modes, as in ChargingMode"));
    EXPECT_THAT(fault("at: 1, expect: {modes: [Charging]}"), here("names of modes"));
    EXPECT_THAT(fault("at: 1, expect: {mode: ChargingMode, within: 99}"), here("before the end of the run"));
    EXPECT_THAT(fault("at: 1, expect: {place: [1, 2]}"), here("\"place\" and \"mm\" together"));
    EXPECT_THAT(fault("at: 1, expect: {times: 2}"), here("with either \"message\" or \"told\""));
    EXPECT_THAT(fault("at: 1, expect: {never: {music: []}}"), here("expected no \"times\", \"modes\" or"));
    EXPECT_THAT(fault("at: 1, bettery: 3, expect: {mode: ChargingMode}"), here("no field \"bettery\""));
}

TEST_F(ScenarioFile, FaultsNameTheLineAndTheWordsThatWouldDo)
{
    EXPECT_THAT(fault("at: 1, key: go"), here("one of start, home, key1, key2"));
    EXPECT_THAT(fault("at: 1, app: dance"), here("one of pause, standby, auto"));
    EXPECT_THAT(fault("at: 1, enter_mode: auto"), here("one of part_clean, follow_wall, wifi"));
    EXPECT_THAT(fault("at: 1, error: DUST_BLOCK"), here("one of DROP")) << "a code of the station";
    EXPECT_THAT(fault("at: -1, key: start"), here("not \"-1\""));
    EXPECT_THAT(fault("at: soon, key: start"), here("a count of frames"));
    EXPECT_THAT(fault("key: start"), here("lacks the field \"at\""));
    EXPECT_THAT(fault("at: 1"), here("says nothing"));
    EXPECT_THAT(fault("at: 1, key: start, battery: 3"), here("an event says one thing"));
    EXPECT_THAT(fault("at: 1, bettery: 3"), here("no field \"bettery\""));
    EXPECT_THAT(fault("at: 1, key: start, order: true"), here("no field \"order\"")) << "belongs to app";
    EXPECT_THAT(fault("at: 1, app: pause, order: true"), here("only with auto or select_area"));
    EXPECT_THAT(fault("at: 1, battery: 101"), here("from 0 to 100"));
    EXPECT_THAT(fault("at: 1, battery: much"), here("expected a number"));
    EXPECT_THAT(fault("at: 1, lift: up"), here("true or false"));
    EXPECT_THAT(fault("at: 1, carry_to: [1, 2]"), here("a list of 3 numbers"));
    EXPECT_THAT(fault("at: 1, app: auto, areas: [1]"), here("only with select_area"));
    EXPECT_THAT(fault("at: 1, app: draw_area, areas: [[1, 1, 0, 2]]"), here("x0 < x1"));
    EXPECT_THAT(fault("at: 1, carry_to: [1e7, 2, 0]"), here("none beyond 1000000"));
    EXPECT_THAT(fault("at: 1, station: {lid: true}"), here("no field \"lid\": expected one of cap, bag"));
    EXPECT_THAT(fault("at: 1, stuck: sofa"), here("one of cliff, drop"));
    EXPECT_THAT(fault("at: 1, put_down: chair"), here("lacks the field \"box_at\""));
    EXPECT_THAT(fault("at: 1, put_down: chair, box_at: [1, 2, 1, 3]"), here("x0 < x1"));
    EXPECT_THAT(fault("at: 1, put_on_dock: false"), here("expected true"));
    EXPECT_THAT(fault("at: 1, set: task_state"), here("blackboard keys"));
    EXPECT_THAT(fault("at: 1, key: start, key: home"), here("\"key\" stands here twice"));
    EXPECT_THAT(fault("at: 1, take_away: chair"), here("put down before, not \"chair\""));
    EXPECT_THAT(fault("at: 1h, key: start"), here("before the end of the run"));

    EXPECT_THAT(whole("name: a\nframes: 0\n"), HasSubstr("day.yaml:2: \"frames\": expected at least one"));
    EXPECT_THAT(whole("name: a\nframes: 9\nevent: []\n"),
                HasSubstr("day.yaml:3: a scenario has no field \"event\""));
    EXPECT_THAT(whole("name: a\nframes: 9\nstart: {pose: [1, 2, 3]}\n"), HasSubstr("on_dock: false"));
    EXPECT_THAT(whole("name: a\nframes: 9\nstart: {map: {check: 2}}\n"), HasSubstr("0, 0.5 or -1"));
    EXPECT_THAT(whole("name: a\nframes: 9\nstart: {map: {been: [[1, 1]]}}\n"), HasSubstr("known: true"));
    EXPECT_THAT(whole("name: a\nframes: 9\nevents:\n - [1]\n"), HasSubstr("day.yaml:4: expected an event"));
    EXPECT_THAT(whole("name: {a\n"), HasSubstr("not YAML"));
    EXPECT_THAT(whole("name: a\nframes: 9\n---\nname: b\n"), HasSubstr("day.yaml:3: expected one YAML"));
    EXPECT_THAT(whole("name: &a [*a]\nframes: 9\n"), HasSubstr("stands within what it stands for"));
    EXPECT_THAT(whole("name: " + std::string(60, '[') + std::string(60, ']')),
                HasSubstr("at most 50 levels"));
    EXPECT_THAT(whole("# " + std::string(1 << 20, 'x')), HasSubstr("at most 1048576 bytes"));
    EXPECT_THAT(whole(""), HasSubstr("expected a scenario"));
}

}  // namespace
}  // namespace vemra::robot
