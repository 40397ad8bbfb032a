#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "behaviortree_cpp/bt_factory.h"
#include "leaves/host/host.h"
#include "robot/body/body.h"
#include "robot/clock.h"
#include "robot/services/escape.h"
#include "robot/services/motion.h"
#include "robot/services/navigation_points.h"
#include "robot/services/sensing.h"
#include "robot/services/sensing_review.h"
#include "robot/sketch.h"

namespace vemra::robot {

// A body in a drawn home with the services that move and feel it, and the trees of the plug-in; all other
// leaves do nothing. The pose is known without error.
class BodyRig
{
public:
    struct Happened
    {
        std::uint64_t frame;
        std::string text;
    };

    BodyRig(const std::vector<std::string>& home, const PoseMm& at, const BodyConfig& config = {})
        : world(sketch(home)), body(world, at, Chance(7), config)
    {
        factory.registerFromPlugin(VEMRA_LIB_DIR "/libvemra_tree.so");
        leaf::LeafHost host(factory);
        host.use_runtime_builtin();
        for (Service* service : services()) {
            service->install(host);
        }
        installPointLeaves(host);
        host.register_defaults();
    }

    // One frame; the tree, if there is one, is ticked once.
    BT::NodeStatus frame()
    {
        ++state.frame;
        body.step(kFrameMs / 1000.0);
        for (Service* service : services()) {
            service->update();
        }
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
        return std::any_of(log.begin(), log.end(), [&text_part](const Happened& entry) {
            return entry.text.find(text_part) != std::string::npos;
        });
    }

    PointMm at() const { return body.truePose().at; }
    double yaw() const { return body.truePose().yaw.value; }

    World world;
    Body body;
    TruePose pose{body};
    VirtualWalls walls;
    SensorSwitches switches;
    RobotState state;
    Chance chance{1};
    std::vector<Happened> log;
    BT::Blackboard::Ptr blackboard = BT::Blackboard::create();
    RobotParts parts{*blackboard,
                     [this](const std::string&, const std::string& what, const nlohmann::ordered_json&) {
                         log.push_back({state.frame, what});
                     },
                     chance, state, body};
    MotionService motion{parts, pose};
    SensingService sensing{parts, pose, switches, walls};
    EscapeService escape{parts, sensing};
    ReviewService review{parts, pose};
    BT::BehaviorTreeFactory factory;
    BT::Tree tree;
    int frames_run = 0;

private:
    std::vector<Service*> services() { return {&motion, &sensing, &escape, &review}; }
};

}  // namespace vemra::robot
