// A host in a project of its own: it finds vemra as an installed package, answers a few leaves and ticks the
// supervisor as a robot does, fifty times a second. After a second somebody presses the start key.

#include <chrono>
#include <iostream>
#include <set>
#include <string>
#include <thread>

#include "behaviortree_cpp/bt_factory.h"
#include "leaves/host/host.h"

int main()
{
    int frame = 0;
    std::string mode = "standby";
    std::set<std::string_view> heard;
    const auto passed = [](bool yes) { return yes ? BT::NodeStatus::SUCCESS : BT::NodeStatus::FAILURE; };

    BT::BehaviorTreeFactory factory;
    factory.registerFromPlugin(VEMRA_TREES);
    vemra::leaf::LeafHost host(factory);
    host.use_runtime_builtin();

    for (const char* ready : {"IsElecParaInitOK", "IsGyroParaInitOK", "IsIrParaInitOK",
                              "IsLightFlowParaInitOK", "IsRobotHealthy"})
        host.condition(ready, [&](BT::TreeNode&) { return passed(true); });
    host.condition("IsKeysStatueChanged", [&](BT::TreeNode&) { return passed(frame == 50); });
    host.condition("Is_Key1_Click", [&](BT::TreeNode&) { return passed(frame == 50); });
    host.condition("NeedToEnterAutoMode", [&](BT::TreeNode&) { return passed(mode == "cleaning"); });
    host.condition("NeedToEnterStandbyMode", [&](BT::TreeNode&) { return passed(mode == "standby"); });
    host.action("ChangeRobotModeTo", [&](BT::TreeNode& node) {
        mode = node.getParam<std::string>("IsAimMode_Auto") == "true" ? "cleaning" : "standby";
        std::cout << "frame " << frame << ": " << mode << '\n';
        return passed(true);
    });
    // All others: conditions fail, actions succeed, and what a robot that cleans asks for we want to hear of.
    host.register_defaults([&](std::string_view id) {
        if (mode == "cleaning" && heard.insert(id).second)
            std::cout << "frame " << frame << ": nobody answers " << id << '\n';
    });

    const auto blackboard = BT::Blackboard::create();
    BT::Tree robot = factory.createTree("RobotNode", blackboard);
    auto next = std::chrono::steady_clock::now();
    for (frame = 1; frame <= 60; ++frame) {
        robot.root_node->executeTick();
        std::this_thread::sleep_until(next += std::chrono::milliseconds(20));
    }
    BT::haltAllActions(robot.root_node);
}
