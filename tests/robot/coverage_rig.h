#pragma once

#include <vector>

#include "robot/belief/map_store.h"
#include "robot/navigation_rig.h"
#include "robot/services/coverage/coverage.h"

namespace vemra::robot {

// A robot in a home with the services that find its way and decide which floor comes next.
class CoverageRig : public RobotRig
{
public:
    CoverageRig(Home home, const PoseMm& at) : RobotRig(std::move(home), at)
    {
        install({&navigation, &coverage});
        update();
    }
    ~CoverageRig() override { dropTrees(); }

    // The robot knows the home already, as after an earlier run.
    void knowHome()
    {
        map.occupancy().load(gridOf(world.visible()));
        navigation.update();
    }

    bool search(const std::string& mode)
    {
        return passes("AwesomeSearch search_mode=" + mode +
                      " source_point=${current_coord} target=default region=${gridmap_limit} "
                      "output_point=navi_target_point failure_tolerance=0");
    }

    Localisation localisation{body};
    RobotMap map{body, localisation};
    MapStore store;
    NavigationService navigation{parts, map, switches};
    CoverageService coverage{parts, map, store, switches, navigation.search()};
};

}  // namespace vemra::robot
