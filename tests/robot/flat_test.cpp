#include <gmock/gmock.h>

#include "robot/files.h"
#include "robot/scenario/scenario.h"
#include "robot/sketch.h"
#include "robot/world/map_file.h"
#include "robot/world/plan.h"
#include "robot/world/reach.h"

namespace vemra::robot {
namespace {

using testing::HasSubstr;

const std::filesystem::path kHomes = std::filesystem::path(VEMRA_SOURCE_DIR) / "homes";

TEST(Flat, MapIsWhatThePlanGives)
{
    const Plan plan = readPlan(kHomes / "flat/plan.yaml");
    EXPECT_EQ(bytesOf(kHomes / "flat/flat.pgm"), pgmBytes(drawPlan(plan)));
    EXPECT_EQ(bytesOf(kHomes / "flat/flat.yaml"), mapYaml(plan));
}

TEST(Flat, TheRobotGetsFromTheDockIntoEveryRoom)
{
    const HomeFile flat = readHome(kHomes / "flat/flat.yaml");
    const ChosenDock chosen = chooseDock(flat, {});
    EXPECT_EQ(chosen.source, DockSource::Map);
    const Reach reach(flat.home, kRobotRadiusMm);
    const auto region = [&](PointMm place) { return reach.regionOf(flat.home.cellOf(place)); };
    const int home = region(dockedPose(chosen.dock).at);
    ASSERT_NE(home, Reach::kNone);
    EXPECT_EQ(region({2500, 800}), home) << "living room";
    EXPECT_EQ(region({5600, 2000}), home) << "kitchen";
    EXPECT_EQ(region({1000, 5400}), home) << "bedroom, under the bed";
    EXPECT_EQ(region({5200, 5500}), home) << "hall";
    EXPECT_EQ(region({7800, 5400}), home) << "bathroom";
}

TEST(Plan, WallsDoorsLegsAndRimLandWhereThePlanSays)
{
    const Folder folder;
    folder.write("plan.yaml",
                 "name: hut\n"
                 "floor: [0, 0, 0.5, 0.3]\n"
                 "margin: 0.05\n"
                 "walls: [[0.2, 0, 0.25, 0.3]]\n"
                 "doors: [[0.2, 0.1, 0.25, 0.2]]\n"
                 "furniture: [{name: stool, legs: [0.3, 0.05, 0.45, 0.2]}]\n"
                 "cliffs: [[0.05, 0.1, 0.15, 0.3]]\n");
    const Plan plan = readPlan(folder / "plan.yaml");
    folder.write("hut.pgm", pgmBytes(drawPlan(plan)));
    const HomeFile hut = readHome(folder.write("hut.yaml", mapYaml(plan)));
    EXPECT_EQ(hut.home.origin(), (PointMm{-50, -50}));
    EXPECT_THAT(hut.cliffs, testing::ElementsAre(BoxMm{{50, 100}, {150, 300}}));
    EXPECT_THAT(sketched(hut.home), testing::ElementsAre("????????????",  //
                                                         "?....#.....?",  //
                                                         "?....#.....?",  //
                                                         "?......#.#.?",  //
                                                         "?..........?",  //
                                                         "?....#.#.#.?",  //
                                                         "?....#.....?",  //
                                                         "????????????"));
}

TEST(Plan, FaultsNameTheLine)
{
    const Folder folder;
    const auto fault = [&](const std::string& line) {
        folder.write("plan.yaml", "name: hut\nfloor: [0, 0, 1, 1]\nmargin: 0.5\n" + line + "\n");
        return faultOf([&] { readPlan(folder / "plan.yaml"); });
    };
    EXPECT_EQ(fault("walls: []"), "nothing thrown");
    EXPECT_THAT(fault("walls: [[0, 0, 0.07, 1]]"), HasSubstr("plan.yaml:4: 0.07 is off the grid"));
    EXPECT_THAT(fault("walls:\n  - [0, 0, 0, 1]"), HasSubstr("plan.yaml:5: an empty box"));
    EXPECT_THAT(fault("doors: [[0, 0, 1.1, 1]]"), HasSubstr("outside the floor"));
    EXPECT_THAT(fault("furniture: [{name: bed}]"), HasSubstr("either \"box\" or \"legs\""));
    EXPECT_THAT(fault("wall: []"), HasSubstr("plan.yaml:4: a plan has no field \"wall\""));
}

TEST(Scenarios, AllThatAreShippedCanBeRead)
{
    int count = 0;
    for (const auto& file : std::filesystem::directory_iterator(kHomes.parent_path() / "scenarios")) {
        if (file.path().extension() == ".yaml") {
            const Scenario scenario = readScenario(file.path());
            EXPECT_FALSE(scenario.events.empty()) << file.path();
            EXPECT_LT(scenario.events.back().frame, scenario.frames) << file.path();
            ++count;
        }
    }
    EXPECT_GT(count, 0);
}

}  // namespace
}  // namespace vemra::robot
