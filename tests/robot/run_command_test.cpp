#include <nlohmann/json.hpp>

#include "robot/files.h"
#include "support/program.h"

namespace vemra::robot {
namespace {

using test::linesOf;
using test::ProgramResult;
using test::runVemra;

ProgramResult run(std::vector<std::string> words)
{
    words.insert(words.begin(), "run");
    return runVemra(words);
}

TEST(RunCommand, PrintsOneObjectALineAndTheReportLast)
{
    const ProgramResult result = run({"--json", "--frames", "2300"});
    ASSERT_EQ(result.exit_code, 0) << result.err;
    EXPECT_THAT(result.err, IsEmpty());
    const auto lines = linesOf(result.out);
    ASSERT_GT(lines.size(), 10U);
    for (const std::string& line : lines) {
        const auto object = nlohmann::json::parse(line);
        EXPECT_TRUE(object.contains("report") == (&line == &lines.back())) << line;
        if (object.contains("report"))
            continue;
        EXPECT_EQ(object["ms"], object["frame"].get<int>() * 20);
    }
    const auto report = nlohmann::json::parse(lines.back())["report"];
    EXPECT_EQ(report["frames"], 2300);
    EXPECT_EQ(report["mode"], "AutoCleanMode");
    EXPECT_EQ(run({"--json", "--frames", "2300"}).out, result.out);
}

TEST(RunCommand, WhatItPrintsForMachinesKeepsToItsSchema)
{
    const std::string source = VEMRA_SOURCE_DIR;
    const auto kinds = [&source](const std::string& options) {
        const ProgramResult result = test::runProgram(
            {"sh", "-c", "\"$0\" run --json " + options + " | /usr/bin/python3 \"$1\" \"$2\"",
             std::string(VEMRA_BIN_DIR) + "/vemra", source + "/tests/robot/check_lines.py",
             source + "/docs/run.schema.json"});
        EXPECT_EQ(result.exit_code, 0) << result.out << result.err;
        return result.out;
    };
    EXPECT_EQ(kinds("--frames 5000"),
              "body custom last_line light message mode motion music robot_status station_light task_state "
              "user\n");
    EXPECT_THAT(kinds("--scenario " + source + "/scenarios/emptying_with_a_block.yaml"), HasSubstr("error"));
    EXPECT_THAT(kinds("--frames 2400 --scenario " + source + "/scenarios/stuck_in_every_way.yaml"),
                HasSubstr("escape"));
}

// `./run --json | jq .event` works with a build to do.
TEST(RunScript, KeepsItsOutputForTheRun)
{
    const Folder folder;
    std::filesystem::copy_file(VEMRA_SOURCE_DIR "/run", folder / "run");
    for (const auto& [file, line] : {std::pair{"scripts/packages", "echo installing"},
                                     {"bin/cmake", "echo building"},
                                     {"build/release/bin/vemra", "echo \"{\\\"ran\\\": \\\"$*\\\"}\""}}) {
        std::filesystem::create_directories((folder / file).parent_path());
        folder.write(file, std::string("#!/bin/sh\n") + line + "\n");
        std::filesystem::permissions(folder / file, std::filesystem::perms::owner_all);
    }
    const ProgramResult result =
        test::runProgram({"env", "PATH=" + (folder / "bin").string() + ":/usr/bin:/bin",
                          (folder / "run").string(), "--json", "--frames", "9"});
    EXPECT_EQ(result.exit_code, 0);
    EXPECT_EQ(result.out, "{\"ran\": \"run --json --frames 9\"}\n");
    EXPECT_EQ(result.err, "installing\nbuilding\nbuilding\n");
}

TEST(RunCommand, LeavesItsRecordsInAFolder)
{
    const Folder folder;
    const auto out = folder / "deep/out";
    const ProgramResult result = run({"--frames", "300", "--out", out.string()});
    ASSERT_EQ(result.exit_code, 0) << result.err;
    EXPECT_THAT(result.out, AllOf(HasSubstr("ChargingMode"), Not(HasSubstr("\033["))));
    EXPECT_THAT(bytesOf(out / "timeline.txt"), testing::StrEq(result.out));
    EXPECT_EQ(linesOf(bytesOf(out / "events.jsonl")).back().substr(0, 10), "{\"report\":");
    EXPECT_EQ(nlohmann::json::parse(bytesOf(out / "report.json"))["frames"], 300);
    const auto track = linesOf(bytesOf(out / "track.csv"));
    ASSERT_GT(track.size(), 30U);
    EXPECT_THAT(track[0], StartsWith("frame,time_s,x_mm,y_mm,yaw_deg,believed_x_mm"));
    for (const std::string& row : track)
        EXPECT_EQ(std::count(row.begin(), row.end(), ','), 12) << row;
    EXPECT_THAT(track,
                Contains("20,0.40,3000.0,3625.0,90.00,3000.0,3625.0,90.00,0,0,100.00,ChargingMode,0.00"))
        << "a change of mode";
    for (const char* picture : {"timeline.png", "home.png"})
        EXPECT_THAT(bytesOf(out / picture), StartsWith("\x89PNG")) << picture;
}

TEST(RunCommand, RunsInAnyMapAndSaysWhereItPutTheDock)
{
    const Folder folder;
    std::string pixels;
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 60; ++x)
            pixels += static_cast<char>(x == 0 || y == 0 || x == 59 || y == 59 ? 0 : 254);
    }
    folder.write("room.pgm", "P5\n60 60\n255\n" + pixels);
    const auto map = folder.write("room.yaml",
                                  "image: room.pgm\nresolution: 0.05\norigin: [0, 0, 0]\nnegate: 0\n"
                                  "occupied_thresh: 0.65\nfree_thresh: 0.196\n");
    // Who names no scenario has the robot clean.
    const ProgramResult result = run({"--home", map.string(), "--frames", "2300", "--json"});
    EXPECT_EQ(result.exit_code, 0) << result.err;
    EXPECT_THAT(result.err, HasSubstr("names no dock; it is put at --dock "));
    const auto report = nlohmann::json::parse(linesOf(result.out).back())["report"];
    EXPECT_FALSE(report["on_dock"]);
    EXPECT_EQ(report["mode"], "AutoCleanMode");
    EXPECT_THAT(result.err, HasSubstr(report["dock"].get<std::string>()));
}

TEST(RunCommand, RefusesBadInputWithPlaceAndExpectation)
{
    const Folder folder;
    const auto scenario = [&](const std::string& name, const std::string& fields) {
        return folder.write(name, "name: b\nframes: 9\n" + fields + "\n").string();
    };
    const std::string out = (folder / "out").string();
    const auto fault = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"--out", out});
        const ProgramResult result = run(words);
        EXPECT_EQ(result.exit_code, 2) << result.err;
        EXPECT_THAT(result.out, IsEmpty());
        EXPECT_FALSE(std::filesystem::exists(out)) << "nothing is left behind";
        return result.err;
    };
    EXPECT_THAT(fault({"--scenario", scenario("bad.yaml", "events:\n  - {at: 1, key: go}")}),
                HasSubstr("bad.yaml:4: \"key\": expected one of start"));
    EXPECT_THAT(fault({"--home", "nowhere.yaml"}), HasSubstr("nowhere.yaml: cannot be read"));
    EXPECT_THAT(fault({"--dock", "3,3"}), HasSubstr("expected X,Y,DEG"));
    EXPECT_THAT(fault({"--dock", "0,0,0"}), HasSubstr("has no room for the robot"));
    EXPECT_THAT(fault({"--tree", "RobotNod"}), HasSubstr("did you mean 'RobotNode'?"));
    EXPECT_THAT(fault({"--plugin", folder / "bad.yaml"}),
                HasSubstr("cannot be loaded as a library of trees"));
    EXPECT_THAT(fault({"--sede", "1"}), HasSubstr("--sede"));
    for (const char* number : {"0", "-1", "1.5", "many", "99999999999999999999999"})
        EXPECT_THAT(fault({"--frames", number}), HasSubstr("expected a whole number from 1 to")) << number;
    EXPECT_THAT(fault({"--seed", "-1"}), HasSubstr("expected a whole number of at least 0, not '-1'"));
    for (const char* event : {"box_at: [1, 1, 99, 2], put_down: a", "carry_to: [-50, 0, 0]"})
        EXPECT_THAT(
            fault({"--scenario", scenario("far.yaml", std::string("events:\n  - {at: 1, ") + event + "}")}),
            AllOf(HasSubstr("far.yaml:4: \""), HasSubstr("\": expected a place")));
    EXPECT_THAT(fault({"--scenario", scenario("far.yaml", "start:\n  on_dock: false\n  pose: [90, 0, 0]")}),
                HasSubstr("far.yaml:5: \"pose\": expected a place"));
    EXPECT_EQ(run({"--frames", "5", "--out", folder / "bad.yaml"}).exit_code, 2)
        << "a file where a folder is to be";
    EXPECT_THAT(fault({"--tree", "GotoPoint", "--goal", "99,0"}),
                HasSubstr("--goal: expected a place within"));
    EXPECT_THAT(fault({"--goal", "1"}), HasSubstr("expected X,Y in metres"));
}

TEST(RunCommand, WritesAllItsRecordsOrNone)
{
    const Folder folder;
    std::filesystem::create_directories(folder / "out/home.png");
    const ProgramResult result = run({"--frames", "9", "--out", (folder / "out").string()});
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.err, HasSubstr("home.png: cannot be written"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder / "out"), {}), 1);
}

TEST(RunCommand, MakesThePlanOfATreeThatDrivesAlongOne)
{
    const ProgramResult result = run({"--tree", "GotoPoint", "--goal", "3,2", "--frames", "2000"});
    EXPECT_THAT(result.out, HasSubstr("tree GotoPoint ends: SUCCESS"));
    const ProgramResult without = run({"--tree", "GotoPoint", "--frames", "7", "--json"});
    EXPECT_THAT(without.out,
                HasSubstr("tree GotoPoint ends: FAILURE, by ArePointsTooClose (GotoPoint, node "));
    EXPECT_THAT(without.out, HasSubstr("not on the blackboard: navi_target_point"));
    EXPECT_EQ(nlohmann::json::parse(linesOf(without.out).back())["report"]["root_ended"]["FAILURE"], 7);
}

TEST(RunCommand, SaysThatATreeIsNotWritten)
{
    const std::string plugin = std::string(VEMRA_LIB_DIR) + "/libodd_trees.so";
    const ProgramResult alone = run({"--plugin", plugin, "--tree", "Unwritten"});
    EXPECT_EQ(alone.exit_code, 2);
    EXPECT_THAT(alone.err, HasSubstr("\"Unwritten\" has a name and no description: it is not written"));
    const ProgramResult entered =
        run({"--plugin", plugin, "--tree", "EntersUnwritten", "--frames", "3", "--json"});
    EXPECT_EQ(entered.exit_code, 0) << entered.err;
    EXPECT_THAT(entered.out, HasSubstr("tree Unwritten is not written: it fails wherever it is entered"));
    EXPECT_EQ(nlohmann::json::parse(linesOf(entered.out).back())["report"]["trees_not_written"]["Unwritten"],
              3);
}

// A leaf that never returns holds back the first signal, as what a run has done so far would be lost.
TEST(RunCommand, EndsAtTheSecondSignalWhateverItDoes)
{
    const Folder folder;
    const std::string script =
        "HANGS=\"$2\" \"$0\" run --plugin \"$1\" --tree Hangs & p=$!\n"
        "until [ -s \"$2\" ]; do sleep 0.05; done\n"
        "kill -TERM $p; sleep 0.3; kill -0 $p || exit 99\n"
        "kill -TERM $p; wait $p";
    const ProgramResult result =
        test::runProgram({"timeout", "60", "sh", "-c", script, std::string(VEMRA_BIN_DIR) + "/vemra",
                          std::string(VEMRA_LIB_DIR) + "/libodd_trees.so", folder / "hangs"});
    EXPECT_EQ(result.exit_code, 128 + 15) << result.err;
}

TEST(RunCommand, SaysWhatWasNotAsExpected)
{
    const Folder folder;
    const std::string text =
        "name: h\nframes: 99\nevents:\n"
        "  - {at: 9, expect: {mode: SleepMode}}\n"
        "  - {at: 50, expect: {mode: ChargingMode}}\n";
    const std::string file = folder.write("hope.yaml", text).string();
    const ProgramResult result = run({"--scenario", file});
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_EQ(result.err, "vemra: " + file + ":4: frame 9: expected {mode: SleepMode}: mode was none\n");
    EXPECT_THAT(result.out, HasSubstr("as expected: 1, otherwise: 1\n"));
    const ProgramResult cut = run({"--scenario", file, "--frames", "9"});
    EXPECT_EQ(cut.exit_code, 0) << "it did not come to that";
    EXPECT_THAT(cut.out, HasSubstr("not come to: 2"));
}

TEST(RunCommand, KeepsWhatHappenedUntilItIsInterrupted)
{
    const Folder folder;
    const std::string scenario = folder.write("long.yaml", "name: l\nframes: 9\n").string();
    const std::filesystem::path out = folder / "out";
    // However busy the machine is, it is interrupted after it has begun to listen.
    constexpr const char* kInterrupt = R"("$@" &
for i in $(seq 300); do grep -q '^SigCgt.*[4-7c-f]...$' /proc/$!/status && break; sleep 0.1; done
sleep 1; kill -TERM $!; wait $!)";
    const ProgramResult result =
        test::runProgram({"sh", "-c", kInterrupt, "sh", std::string(VEMRA_BIN_DIR) + "/vemra", "run",
                          "--scenario", scenario, "--frames", "1000000000", "--out", out.string()});
    EXPECT_NE(result.exit_code, 0);
    EXPECT_THAT(result.err, AllOf(HasSubstr("vemra: stopped after "), HasSubstr("of 1000000000 frames")));
    EXPECT_THAT(bytesOf(out / "timeline.txt"), AllOf(HasSubstr("ChargingMode"), testing::StrEq(result.out)));
    EXPECT_THAT(result.err, HasSubstr(nlohmann::json::parse(bytesOf(out / "report.json"))["frames"].dump()));
    EXPECT_THAT(bytesOf(out / "home.png"), StartsWith("\x89PNG"));
}

}  // namespace
}  // namespace vemra::robot
