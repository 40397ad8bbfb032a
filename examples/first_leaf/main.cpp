// A small host: it loads the trees, answers four leaves for a robot on a rail, and ticks one tree to its end.
//
//   first_leaf [TREE] [LIBRARY]
//
// The robot has just run 20 mm into something. The tree `Back2cm` backs it off.

#include <filesystem>
#include <iostream>
#include <memory>
#include <set>
#include <string>

#include "behaviortree_cpp/bt_factory.h"
#include "leaves/host/host.h"

namespace {

constexpr int kFrameLimit = 100;

/// What the leaves work on. A service of a real robot would talk to its motor board here.
struct Rail
{
    double gap_mm = -20;   ///< from the bumper to the obstacle; below zero the bumper is pressed
    double step_mm = 1.6;  ///< how far it backs in a frame
    bool moving = false;
};

// 1. A class with a constructor (name, parameters). The ports that it reads are those of the contract; a
// reference such as ${key} in a port is filled in by getParam.
class SetMapDrawMode : public BT::SyncActionNode
{
public:
    using BT::SyncActionNode::SyncActionNode;
    static const BT::NodeParameters& requiredNodeParameters()
    {
        static const BT::NodeParameters kPorts{{"draw_mode", "Default"}, {"LockState", "false"}};
        return kPorts;
    }

private:
    BT::NodeStatus tick() override
    {
        std::cout << "    draws on the map: " << getParam<std::string>("draw_mode").value_or("?") << '\n';
        return BT::NodeStatus::SUCCESS;
    }
};

// 2. An action that takes many ticks: RUNNING until it is done or, as this one, until somebody above has had
// enough and halts it. Whatever it has set in motion stops there.
class GoBackwards : public BT::ActionNodeBase
{
public:
    GoBackwards(const std::string& name, const BT::NodeParameters& ports, Rail& rail)
        : ActionNodeBase(name, ports), rail_(rail)
    {}

    void halt() override
    {
        rail_.moving = false;
        setStatus(BT::NodeStatus::IDLE);
    }

private:
    BT::NodeStatus tick() override
    {
        rail_.moving = true;
        rail_.gap_mm += rail_.step_mm;
        return BT::NodeStatus::RUNNING;
    }

    Rail& rail_;
};

void registerLeaves(BT::BehaviorTreeFactory& factory, Rail& rail)
{
    // The host holds each registration against the contract: a misspelt leaf, or an action where a condition
    // is wanted, is an exception here and no riddle later.
    vemra::leaf::LeafHost host(factory);
    host.use_runtime_builtin();

    host.implement<SetMapDrawMode>("SetMapDrawMode");
    host.builder("GoBackwards", [&rail](const std::string& name, const BT::NodeParameters& ports) {
        return std::make_unique<GoBackwards>(name, ports, rail);
    });

    // 3. What is done at once needs no class. A port of the type out_key names the key to write; left empty,
    // nothing is written.
    host.condition("SensorCheckBumped", [&rail](BT::TreeNode& node) {
        if (rail.gap_mm >= 0)
            return BT::NodeStatus::FAILURE;
        if (const auto key = node.getParam<std::string>("out_bump_dir"); key && !key->empty())
            node.blackboard()->set(*key, std::string("front"));
        return BT::NodeStatus::SUCCESS;
    });
    host.action("Stop", [&rail](BT::TreeNode&) {
        std::cout << "    stops\n";
        rail.moving = false;
        return BT::NodeStatus::SUCCESS;
    });
    // All others: conditions fail, actions succeed, and we hear of it once each.
    host.register_defaults([heard = std::make_shared<std::set<std::string_view>>()](std::string_view id) {
        if (heard->insert(id).second)
            std::cout << "    (nobody answers " << id << ")\n";
    });
}

int run(const std::string& name, const std::string& library)
{
    Rail rail;
    BT::BehaviorTreeFactory factory;
    factory.registerFromPlugin(library);
    registerLeaves(factory, rail);

    // All trees share the blackboard, also those that `Back2cm` enters.
    const auto blackboard = BT::Blackboard::create<BT::BlackboardLocal>();
    BT::Tree tree = factory.createTree(name, blackboard);
    for (int frame = 1; frame <= kFrameLimit; ++frame) {
        std::cout << "frame " << frame << '\n';
        const BT::NodeStatus status = tree.root_node->executeTick();
        std::cout << "    " << status << ", " << rail.gap_mm << " mm from the obstacle"
                  << (rail.moving ? ", backing" : "") << '\n';
        if (status != BT::NodeStatus::RUNNING)
            return status == BT::NodeStatus::SUCCESS ? 0 : 1;
    }
    BT::haltAllActions(tree.root_node);
    std::cout << "not done after " << kFrameLimit << " frames; halted\n";
    return 1;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::filesystem::path here = std::filesystem::read_symlink("/proc/self/exe").parent_path();
    try {
        return run(argc > 1 ? argv[1] : "Back2cm", argc > 2 ? argv[2] : here / "../lib/libvemra_tree.so");
    } catch (const std::exception& fault) {
        std::cerr << "first_leaf: " << fault.what() << '\n';
        return 2;
    }
}
