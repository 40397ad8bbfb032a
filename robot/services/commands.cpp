#include "robot/services/commands.h"

#include <utility>

#include "robot/services/leaf_functions.h"

namespace vemra::robot {

CommandService::CommandService(BT::Blackboard& blackboard, Report report, ModeService& modes)
    : blackboard_(blackboard), report_(std::move(report)), modes_(modes)
{}

void CommandService::setChildLock(bool on)
{
    blackboard_.set("RobotChildLockStatus", on ? 1 : 0);
}

void CommandService::clickChildLock(bool on)
{
    setChildLock(on);
    blackboard_.set("ChildLockAppButtonClick", "");
}

void CommandService::install(leaf::LeafHost& host)
{
    setChildLock(false);
    installKeys(host);
    installApp(host);
    host.condition("IsRobotInAnnoyMode", [this](BT::TreeNode&) { return passed(annoy_); });
    // The lights are out in quiet hours but for the time that somebody uses the keys: never kept from a person.
    host.condition("IsRobotInAnnoyModeLedOff", [](BT::TreeNode&) { return BT::NodeStatus::FAILURE; });
    host.condition("DoesReceiveFindRobot", [this](BT::TreeNode&) { return passed(std::exchange(find_robot_, false)); });
}

void CommandService::installKeys(leaf::LeafHost& host)
{
    host.builder("IsKeysStatueChanged",
                 PassCondition::builder({[this] {
                                             if (keys_.empty())
                                                 return false;
                                             key_ = keys_.front();
                                             keys_.pop_front();
                                             blackboard_.set("OloButton", static_cast<int>(*key_));
                                             dealt_with_since_ = frame_;
                                             return true;
                                         },
                                         [this] { return key_.has_value() && stillDealtWith(); },
                                         [this] { key_.reset(); }}));
    const auto is = [this](Key key) { return [this, key](BT::TreeNode&) { return passed(key_ == key); }; };
    host.condition("Is_Key1_Click", is(Key::Start));
    host.condition("Is_Key1_LongPressed", is(Key::StartLong));
    host.condition("Is_Key2_Click", is(Key::Home));
    host.condition("Is_Key2_LongPressed", [this](BT::TreeNode&) {
        return passed(key_ == Key::HomeLong || key_ == Key::HomeVeryLong);
    });
    host.condition("Is_SetWIFIKey_Click", is(Key::SetUp));
    host.condition("Is_ResetKey_LongPress", is(Key::Reset));
    host.condition("DoesKeyValueIs", [this](BT::TreeNode& node) {
        int value = 0;
        return passed(key_ && node.getParam("button_value", value) && value == static_cast<int>(*key_));
    });
    host.action("EraseKeyValue", [this](BT::TreeNode&) {
        blackboard_.erase("OloButton");
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SetWIFIKey_Click_Process", [this](BT::TreeNode&) {
        modes_.request(Mode::WifiSet);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("ResetKey_LongPress_Process", [this](BT::TreeNode&) {
        report_("custom", "settings reset", {{"what", "reset"}});
        return BT::NodeStatus::SUCCESS;
    });
}

void CommandService::installApp(leaf::LeafHost& host)
{
    host.builder("DoesReceiveWIFICMD",
                 PassCondition::builder({[this] {
                                             if (app_.empty())
                                                 return false;
                                             command_ = app_.front();
                                             app_.pop_front();
                                             if (command_->order)
                                                 blackboard_.set("OrderAutoClean", "");
                                             dealt_with_since_ = frame_;
                                             return true;
                                         },
                                         [this] { return stillDealtWith(); }, [this] { command_.reset(); }}));
    host.condition("WhatsTheAPPCMDMode", [this](BT::TreeNode& node) {
        return passed(command_ && textOf(node, "IsThisMode") == toText(command_->mode));
    });
}

}  // namespace vemra::robot
