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
#include "support/matchers.h"
#include "support/notation.h"
#include "support/tree_library.h"

namespace vemra::robot {

using BT::NodeStatus;

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
    NodeStatus frame()
    {
        ++state.frame;
        body.step(kFrameMs / 1000.0);
        update();
        bumped = bumped || body.bumper().any();
        return tree.root_node == nullptr ? NodeStatus::IDLE : tree.root_node->executeTick();
    }

    void frames(int count)
    {
        for (int i = 0; i < count; ++i)
            frame();
    }

    // So many frames at these speeds, or where it is put down.
    void drive(const WheelSpeeds& speeds, int count)
    {
        body.drive(speeds);
        frames(count);
    }
    void carryTo(const PoseMm& at, int count = 1)
    {
        body.carryTo(at);
        frames(count);
    }

    // Ticks until the tree ends; RUNNING if it did not within so many frames.
    NodeStatus run(int most_frames)
    {
        NodeStatus status = NodeStatus::RUNNING;
        for (frames_run = 0; frames_run < most_frames && status == NodeStatus::RUNNING; ++frames_run)
            status = frame();
        return status;
    }

    void enter(const std::string& name) { tree = factory.createTree(name, blackboard); }

    // Leaves and keys are named in the notation of support/notation.h.
    std::shared_ptr<BT::TreeNode> make(const std::string& leaf)
    {
        const auto [id, values] = test::stepOf(leaf);
        return factory.instantiateTreeNode(id, id, {values.begin(), values.end()}, blackboard);
    }
    // A tree of one leaf.
    void enterLeaf(const std::string& leaf)
    {
        tree = {};
        const std::shared_ptr<BT::TreeNode> node = make(leaf);
        tree.root_node = node.get();
        tree.nodes = {node};
    }
    // One tick of a leaf that is done at once.
    bool passes(const std::string& leaf) { return make(leaf)->executeTick() == NodeStatus::SUCCESS; }

    void set(const std::string& notes) { test::setKeys(*blackboard, notes); }
    testing::AssertionResult keysAre(const std::string& notes) const
    {
        return test::keysAre(*blackboard, notes);
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
    // The leaves of these services and of `more`; all others do nothing.
    void install(std::vector<Service*> services, const std::function<void(leaf::LeafHost&)>& more = {})
    {
        services_ = std::move(services);
        leaf::LeafHost host(factory);
        host.use_runtime_builtin();
        for (Service* service : services_)
            service->install(host);
        if (more)
            more(host);
        host.register_defaults();
    }
    void update()
    {
        for (Service* service : services_)
            service->update();
    }

    // To be called before the services go.
    void dropTrees() { tree = {}; }

private:
    std::vector<Service*> services_;
};

}  // namespace vemra::robot
