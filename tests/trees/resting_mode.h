#pragma once

#include "support/supervised_robot.h"

namespace vemra::test {

/// One tree of a mode by itself; requests are only written down.
class RestingMode : public testing::Test
{
protected:
    RestingMode()
        : robot({"StandbyModeIndex", "StopModeIndex", "StopChargingIndex", "SleepModeDealIndex",
                 "PowerOffModeIndex", "OTAModeDealIndex", "SetWIFIModeIndex"})
    {
        robot.obeys_requests = false;
        robot.set("task_state=init task_type=Idle LastRobotMode=3");
        robot.succeed("AdvCleanComplete | SearchChargeEnding");
    }

    /// Enters the mode with its tree and ticks.
    void enter(const std::string& mode, const std::string& tree, int frames)
    {
        robot.mode = mode;
        robot.forgetRequests();
        robot.start(tree);
        robot.tick(frames);
    }

    SupervisedRobot robot;
};

}  // namespace vemra::test
