#pragma once

#include "robot/belief/localisation.h"
#include "robot/belief/map_store.h"
#include "robot/grid_sketch.h"
#include "robot/robot_rig.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/coverage/coverage.h"
#include "robot/services/escape/escape.h"
#include "robot/services/motion/motion.h"
#include "robot/services/navigation/navigation.h"
#include "robot/services/sensing/sensing.h"
#include "robot/services/wall_following/wall_following.h"
#include "robot/world/map_file.h"

namespace vemra::robot {

// A robot in a home with the services that move it, feel, find its way and decide which floor comes next.
class NavigationRig : public RobotRig
{
public:
    NavigationRig(Home home, const PoseMm& at) : RobotRig(std::move(home), at)
    {
        install({&motion, &sensing, &escape, &navigation, &wall_following, &coverage});
        navigation.borders().feltBy(sensing);
        update();
    }
    ~NavigationRig() override { dropTrees(); }

    static Home flat() { return readHome(VEMRA_SOURCE_DIR "/homes/flat/flat.yaml").home; }

    // The robot knows the home already, as after an earlier run.
    void knowHome()
    {
        map.occupancy().load(gridOf(world.visible()));
        navigation.update();
    }

    // Enters a tree and ticks it until it ends; nothing runs after that.
    NodeStatus runTree(const std::string& name, int most_frames)
    {
        enter(name);
        const NodeStatus status = run(most_frames);
        if (status != NodeStatus::RUNNING)
            tree = {};
        return status;
    }

    bool search(const std::string& mode, PointMm target, const std::string& output = "navi_target_point",
                int tolerated_failures = 0)
    {
        blackboard->set("wanted", target);
        return passes(
            "AwesomeSearch search_mode=" + mode +
            " source_point=${current_coord} target=${wanted} region=${gridmap_limit} output_point=" + output +
            " failure_tolerance=" + std::to_string(tolerated_failures));
    }

    // Takes up the next piece of the plan; the bridge that it is.
    bool takeUp() { return passes("CheckPathSegment input_navi_path=${navigation_path_segments}"); }
    bool takeBridge()
    {
        return passes(
            "BridgeDestructor bridge=${navigation_bridge} out_from_point=from out_to_point=to "
            "out_follow_wall_dist=follow");
    }
    // A place that the robot is to look for itself.
    bool search(const std::string& mode)
    {
        return passes("AwesomeSearch search_mode=" + mode +
                      " source_point=${current_coord} target=default region=${gridmap_limit} "
                      "output_point=navi_target_point failure_tolerance=0");
    }
    void drawWalls(const std::string& notes)
    {
        set(notes);
        EXPECT_TRUE(passes("GenerateVirtualWalls"));
    }

    Localisation localisation{body};
    RobotMap map{body, localisation};
    MotionService motion{parts, localisation};
    SensingService sensing{parts, localisation, switches, map.virtualWalls()};
    EscapeService escape{parts, sensing};
    NavigationService navigation{parts, map, switches};
    WallFollowing wall_following{parts, navigation.view(), navigation.search()};
    MapStore store;
    CoverageService coverage{parts, map, store, switches, navigation.search()};
};

}  // namespace vemra::robot
