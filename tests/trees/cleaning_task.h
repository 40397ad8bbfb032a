#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "support/supervised_robot.h"

namespace vemra::test {

struct CleaningModeNames
{
    const char* tree;
    const char* mode;
    const char* prefix;    ///< of its stages under task_state
    const char* coverage;  ///< the tree that does the work
};

constexpr CleaningModeNames kHome{"AutoModeIndex", "AutoCleanMode", "", "RecursiveAutoMode_FollowGong"};
constexpr CleaningModeNames kRooms{"AreaSelectModeIndex", "SelectAreaCleanMode", "area_",
                                   "CleanSelectedAreas"};
constexpr CleaningModeNames kZones{"DrawAreaModeIndex", "DrawAreaCleanMode", "zone_", "CleanSelectedAreas"};
constexpr CleaningModeNames kPoint{"PointSelectModeIndex", "SelectPointCleanMode", "point_",
                                   "CleanSelectedAreas"};
constexpr CleaningModeNames kCleaningModes[] = {kHome, kRooms, kZones, kPoint};

/// The four modes that clean by a map, with what they enter replaced: the maps, the way off the dock, the
/// coverage. The robot stands where it stood, its SLAM goes on.
struct CleaningTask : testing::Test
{
    CleaningTask() : robot({kHome.tree, kRooms.tree, kZones.tree, kPoint.tree})
    {
        robot.obeys_requests = false;
        robot.set("current_pose=7 current_coord=7 current_odom=7 gridmap_limit=7 current_yaw_deg=45.0");
        robot.set("start_from_charger=false moved_during_pause=false segment_map=1 clean_time_for_app=0");
        robot.succeed("NeedInitialAutoMode | SlamIsResumable | IsPointInRectangle | IsReuseInfoExist");
        // At exactly so much a battery is not above it.
        robot.leaf("RobotPowerGetHigherThan").decides([this](const Moment& now) {
            return robot.battery > std::stoi(now.port("capability")) ? SUCCESS : FAILURE;
        });
        robot.succeed(
            "AdvCleanComplete | SearchChargeEnding | AdvRestartCleaning | RestartCleaning | "
            "ReuseRestartCleaning | AdvPreAutoOnCharger | CleanFromChargerJudgment | "
            "PreprocessDealsBeforeCleaning | EscapeCoat | Back2cm | ActiveRelocalize_LdsInteractive | "
            "NavigateProcWithHistoryMapNoneStop");
        robot.tree("ForceDelay").succeedsAfter(2);
        for (const char* coverage : {kHome.coverage, kRooms.coverage})
            robot.tree(coverage).runs();
    }

    /// Enters the mode with the task in this stage and ticks until floor is cleaned, another mode is asked
    /// for, or the tree ends. True where floor is cleaned.
    bool enter(const CleaningModeNames& mode, const std::string& stage)
    {
        robot.mode = mode.mode;
        robot.set("task_state", stage);
        robot.forgetRequests();
        robot.start(mode.tree);
        for (int i = 0; i < 400; ++i) {
            const NodeStatus result = robot.tick();
            if (robot.askedNow(mode.coverage))
                return true;
            if (result != RUNNING || !robot.requests().empty())
                return false;
        }
        ADD_FAILURE() << mode.tree << " from " << stage << " stands still:\n" << robot.transcript().print();
        return false;
    }

    /// Ticks until another mode is asked for.
    void awaitRequest(int at_most = 700)
    {
        for (int i = 0; i < at_most && robot.requests().empty(); ++i)
            robot.tick();
        EXPECT_FALSE(robot.requests().empty()) << robot.transcript().print();
    }

    [[nodiscard]] std::vector<std::string> music() const { return robot.newMusic(); }
    /// What closed tasks and began maps since the entry, in order: S and C a task closed, as a search and as
    /// a clean, A a map chosen, N a new map, R the stored one.
    [[nodiscard]] std::string closedAndBegun() const
    {
        return robot.letters({{"SearchChargeEnding", 'S'},
                              {"AdvCleanComplete", 'C'},
                              {"AdvRestartCleaning", 'A'},
                              {"RestartCleaning", 'N'},
                              {"ReuseRestartCleaning", 'R'}});
    }

    SupervisedRobot robot;
};

}  // namespace vemra::test
