#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "leaves/host/host.h"
#include "robot/clock.h"
#include "robot/grid_sketch.h"
#include "robot/mapping/localisation.h"
#include "robot/services/blackboard_types.h"
#include "robot/services/escape.h"
#include "robot/services/motion.h"
#include "robot/services/navigation.h"
#include "robot/services/sensing.h"
#include "robot/world/map_file.h"

namespace vemra::robot {

// A robot in a home with the services that move it, feel and find its way, and the trees of the plug-in; all
// other leaves do nothing.
class NavigationRig
{
public:
    NavigationRig(Home home, const PoseMm& at, const std::string& library)
        : world(std::move(home)), body(world, at, Chance(7))
    {
        factory.registerFromPlugin(library);
        leaf::LeafHost host(factory);
        host.use_runtime_builtin();
        for (Service* service : services()) {
            service->install(host);
        }
        host.register_defaults([this](std::string_view id) {
            if (std::find(met.begin(), met.end(), id) == met.end()) {
                met.emplace_back(id);
            }
        });
        for (Service* service : services()) {
            service->update();
        }
    }
    ~NavigationRig()
    {
        tree = {};
        factory.clearTreePools();
    }
    NavigationRig(const NavigationRig&) = delete;
    NavigationRig& operator=(const NavigationRig&) = delete;

    // The robot knows the home already, as after an earlier run.
    void knowHome()
    {
        map.occupancy().load(gridOf(world.visible()));
        navigation.update();
    }

    BT::NodeStatus frame()
    {
        ++state.frame;
        body.step(kFrameMs / 1000.0);
        for (Service* service : services()) {
            service->update();
        }
        bumped = bumped || body.bumper().any();
        return tree.root_node == nullptr ? BT::NodeStatus::IDLE : tree.root_node->executeTick();
    }

    BT::NodeStatus run(int most_frames)
    {
        BT::NodeStatus status = BT::NodeStatus::RUNNING;
        for (frames_run = 0; frames_run < most_frames && status == BT::NodeStatus::RUNNING; ++frames_run) {
            status = frame();
        }
        if (status != BT::NodeStatus::RUNNING) {
            tree = {};  // or the next frame would begin it anew
        }
        return status;
    }

    void enter(const std::string& name) { tree = factory.createTree(name, blackboard); }

    bool passes(const std::string& id, const BT::NodeParameters& ports = {})
    {
        const std::shared_ptr<BT::TreeNode> node = factory.instantiateTreeNode(id, id, ports, blackboard);
        return node->executeTick() == BT::NodeStatus::SUCCESS;
    }

    bool search(const std::string& mode, PointMm target, const std::string& output = "navi_target_point")
    {
        blackboard->set("wanted", target);
        return passes("AwesomeSearch", {{"search_mode", mode},
                                        {"source_point", "${current_coord}"},
                                        {"target", "${wanted}"},
                                        {"region", "${gridmap_limit}"},
                                        {"output_point", output},
                                        {"failure_tolerance", "0"}});
    }

    double away(PointMm from) const { return distance(body.truePose().at, from); }
    std::string text(const std::string& key) const
    {
        std::string out;
        return blackboard->get(key, out) ? out : std::string("(none)");
    }

    World world;
    Body body;
    Localisation localisation{body};
    RobotMap map{body, localisation};
    SensorSwitches switches;
    RobotState state;
    Chance chance{11};
    BT::Blackboard::Ptr blackboard = BT::Blackboard::create();
    BT::BehaviorTreeFactory factory;
    std::vector<std::string> met;  ///< leaves without an implementation that were ticked
    int frames_run = 0;
    bool bumped = false;

private:
    std::vector<Service*> services() { return {&motion, &sensing, &escape, &navigation}; }

    RobotParts parts{*blackboard, [](const std::string&, const std::string&, nlohmann::ordered_json) {},
                     chance, state, body};
    MotionService motion{parts, localisation};
    SensingService sensing{parts, localisation, switches, map.virtualWalls()};
    EscapeService escape{parts, sensing};

public:
    NavigationService navigation{parts, map, switches};
    BT::Tree tree;
};

}  // namespace vemra::robot
