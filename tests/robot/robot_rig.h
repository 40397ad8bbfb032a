#pragma once

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "leaves/host/host.h"
#include "robot/base/clock.h"
#include "robot/belief/sensor_switches.h"
#include "robot/body/body.h"
#include "robot/services/core/robot_state.h"
#include "robot/services/core/service.h"
#include "robot/sketch.h"
#include "support/tree_library.h"

namespace vemra::robot {

// A body in a home with the trees of the plug-in; the rigs derived from it add the services.
class RobotRig
{
public:
    RobotRig(Home home, const PoseMm& at) : world(std::move(home)), body(world, at, Chance(7))
    {
        factory.registerFromPlugin(test::treeLibrary());
    }
    virtual ~RobotRig() = default;
    RobotRig(const RobotRig&) = delete;
    RobotRig& operator=(const RobotRig&) = delete;

    // One frame; the tree, if there is one, is ticked once.
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

    void frames(int count)
    {
        for (int i = 0; i < count; ++i) {
            frame();
        }
    }

    // Ticks until the tree ends; RUNNING if it did not within so many frames.
    BT::NodeStatus run(int most_frames)
    {
        BT::NodeStatus status = BT::NodeStatus::RUNNING;
        for (frames_run = 0; frames_run < most_frames && status == BT::NodeStatus::RUNNING; ++frames_run) {
            status = frame();
        }
        return status;
    }

    void enter(const std::string& name) { tree = factory.createTree(name, blackboard); }

    // A tree of one leaf.
    void enterLeaf(const std::string& id, const BT::NodeParameters& ports = {})
    {
        tree = {};
        const std::shared_ptr<BT::TreeNode> node = factory.instantiateTreeNode(id, id, ports, blackboard);
        tree.root_node = node.get();
        tree.nodes = {node};
    }

    // One tick of a leaf that is done at once.
    bool passes(const std::string& id, const BT::NodeParameters& ports = {})
    {
        const auto node = factory.instantiateTreeNode(id, id, ports, blackboard);
        return node->executeTick() == BT::NodeStatus::SUCCESS;
    }

    std::string text(const std::string& key) const
    {
        std::string value = "absent";
        blackboard->get(key, value);
        return value;
    }

    bool happened(const std::string& text_part) const
    {
        return std::any_of(log.begin(), log.end(), [&text_part](const std::string& entry) {
            return entry.find(text_part) != std::string::npos;
        });
    }

    PointMm at() const { return body.truePose().at; }
    double yaw() const { return body.truePose().yaw.value; }
    double away(PointMm from) const { return distance(at(), from); }

    World world;
    Body body;
    SensorSwitches switches;
    RobotState state;
    Chance chance{1};
    std::vector<std::string> log;
    BT::Blackboard::Ptr blackboard = BT::Blackboard::create();
    RobotParts parts{*blackboard, [this](const Event& event) { log.push_back(toText(event)); }, chance, state,
                     body};
    BT::BehaviorTreeFactory factory;
    BT::Tree tree;
    int frames_run = 0;
    bool bumped = false;

protected:
    virtual std::vector<Service*> services() = 0;

    // The leaves of the services and of `more`; all others do nothing.
    void install(const std::function<void(leaf::LeafHost&)>& more = {})
    {
        leaf::LeafHost host(factory);
        host.use_runtime_builtin();
        for (Service* service : services()) {
            service->install(host);
        }
        if (more) {
            more(host);
        }
        host.register_defaults();
    }

    // To be called before the services go.
    void dropTrees() { tree = {}; }
};

}  // namespace vemra::robot
