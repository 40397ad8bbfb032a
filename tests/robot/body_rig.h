#pragma once

#include "robot/robot_rig.h"
#include "robot/services/escape/escape.h"
#include "robot/services/motion/motion.h"
#include "robot/services/navigation/goals/navigation_points.h"
#include "robot/services/sensing/sensing.h"
#include "robot/services/sensing/sensing_review.h"

namespace vemra::robot {

// A robot in a drawn home with the services that move it and feel. The pose is known without error.
class BodyRig : public RobotRig
{
public:
    BodyRig(const std::vector<std::string>& home, const PoseMm& at) : RobotRig(sketch(home), at)
    {
        install({&motion, &sensing, &escape, &review}, installPointLeaves);
    }
    ~BodyRig() override { dropTrees(); }

    TruePose pose{body};
    VirtualWalls walls;
    MotionService motion{parts, pose};
    SensingService sensing{parts, pose, switches, walls};
    EscapeService escape{parts, sensing};
    ReviewService review{parts, pose};
};

}  // namespace vemra::robot
