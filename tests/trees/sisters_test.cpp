#include <algorithm>

#include "support/scripted_robot.h"

namespace vemra::test {
namespace {

using Nodes = std::vector<std::string>;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

/// What the one tree has more of than the other; where the order alone differs there is nothing.
Nodes more(const ScriptedRobot& robot, const std::string& tree, const std::string& than)
{
    Nodes mine = robot.nodesOf(tree);
    Nodes other = robot.nodesOf(than);
    std::sort(mine.begin(), mine.end());
    std::sort(other.begin(), other.end());
    Nodes rest;
    std::set_difference(mine.begin(), mine.end(), other.begin(), other.end(), std::back_inserter(rest));
    return rest;
}

Nodes paths(Nodes nodes)
{
    for (std::string& node : nodes)
        if (const auto at = node.find("subtree_file_path="); at != std::string::npos)
            node = node.substr(at + 18);
    return nodes;
}

TEST(Sisters, OfNavigateProcDifferInTheirFarBranchAlone)
{
    const ScriptedRobot robot;
    EXPECT_THAT(paths(more(robot, "NavigateProcNoUnknown", "NavigateProc")),
                ElementsAre("GotoPointNoUnknown.xml"));
    EXPECT_THAT(paths(more(robot, "NavigateProc", "NavigateProcNoUnknown")), ElementsAre("GotoPoint.xml"));
    EXPECT_THAT(paths(more(robot, "NavigateProcWithHistoryMap", "NavigateProc")),
                UnorderedElementsAre("DoWhile", "GotoPointWithHistoryMap.xml",
                                     "SetMapDrawMode LockState=false draw_mode=None",
                                     "SetMapDrawMode LockState=true draw_mode=None"));
    EXPECT_THAT(paths(more(robot, "NavigateProc", "NavigateProcWithHistoryMap")),
                UnorderedElementsAre("GotoPoint.xml", "SetMapDrawMode draw_mode=None"));
}

TEST(Sisters, OfGotoPointDifferInTheirPlannerAndAfterAFailedBridge)
{
    const ScriptedRobot robot;
    EXPECT_THAT(more(robot, "GotoPointNoUnknown", "GotoPoint"),
                ElementsAre("IsAGreaterThanBInt A=30 B=${path_length_grid}"));
    EXPECT_THAT(paths(more(robot, "GotoPoint", "GotoPointNoUnknown")),
                UnorderedElementsAre("IsAGreaterThanBInt A=1048576 B=${path_length_grid}", "Back2cm",
                                     "SetBlackboard key=bump_dir value=None"));
    EXPECT_THAT(more(robot, "GotoPointWithHistoryMap", "GotoPointNoUnknown"), IsEmpty());
    EXPECT_THAT(paths(more(robot, "GotoPointExplore", "GotoPointWithHistoryMap")),
                UnorderedElementsAre("ExploreTargetClear", "Inverter"));
}

TEST(Sisters, OfTheFollowDifferInHowTheyAreOrdered)
{
    const ScriptedRobot robot;
    EXPECT_THAT(more(robot, "PreciseFollowWallProc", "FollowWallProc"),
                ElementsAre("SetFollowWallCmd ignorebase=false lowspeed=false precise=true"));
    EXPECT_THAT(more(robot, "FollowWallProc", "PreciseFollowWallProc"),
                ElementsAre("SetFollowWallCmd ignorebase=false lowspeed=false precise=false"));
    EXPECT_THAT(more(robot, "BlindAdvanceDouble", "BlindAdvance"), ElementsAre("Frameout frames=144"));
    EXPECT_THAT(more(robot, "BlindAdvance", "BlindAdvanceDouble"), ElementsAre("Frameout frames=44"));
}

}  // namespace
}  // namespace vemra::test
