#include <gmock/gmock.h>

#include "robot/files.h"
#include "robot/sketch.h"
#include "robot/world/map_file.h"
#include "robot/world/plan.h"

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

}  // namespace
}  // namespace vemra::robot
