#include "robot/services/panel/commands.h"

#include <utility>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {

CommandService::CommandService(const RobotParts& parts, const ScenarioStart& start)
    : parts_(parts), quiet_time_(start.annoy)
{
    setChildLock(start.child_lock);
}

bool CommandService::stillDealtWith() const
{
    return parts_.state.frame - dealt_with_since_ < kPatienceFrames;
}

void CommandService::setChildLock(bool on)
{
    parts_.blackboard.set("RobotChildLockStatus", on ? 1 : 0);
}

bool CommandService::take(const Happening& what)
{
    if (const auto* press = std::get_if<KeyPress>(&what))
        keys_.add(press->key, parts_.state.frame);
    else if (const auto* command = std::get_if<AppCommand>(&what))
        app_.add(*command, parts_.state.frame);
    else if (const auto* lock = std::get_if<ChildLock>(&what))
        setChildLock(lock->on);
    else if (const auto* click = std::get_if<AppChildLock>(&what)) {
        setChildLock(click->on);
        parts_.blackboard.set("ChildLockAppButtonClick", "");
    } else if (const auto* quiet = std::get_if<Annoy>(&what)) {
        parts_.state.quiet_hours = quiet->on;
    } else if (std::holds_alternative<FindRobot>(what)) {
        find_robot_ = true;
        parts_.blackboard.set("RobotFindSet", "");
    } else if (const auto* wifi = std::get_if<WifiAnswer>(&what)) {
        wifi_joined_ = wifi->joined;
    } else {
        return false;
    }
    return true;
}

void CommandService::update()
{
    keys_.dropOld(parts_.state.frame);
    app_.dropOld(parts_.state.frame);
    if (quiet_time_ && parts_.state.frame == quiet_time_->from)
        parts_.state.quiet_hours = true;
    if (quiet_time_ && parts_.state.frame == quiet_time_->to)
        parts_.state.quiet_hours = false;
}

void CommandService::install(leaf::LeafHost& host)
{
    installKeys(host);
    installApp(host);
    host.condition("IsRobotInAnnoyMode", [this](BT::TreeNode&) { return passed(parts_.state.quiet_hours); });
    host.condition("DoesReceiveFindRobot",
                   [this](BT::TreeNode&) { return passed(std::exchange(find_robot_, false)); });
}

void CommandService::installKeys(leaf::LeafHost& host)
{
    host.builder("IsKeysStatueChanged",
                 PassCondition::builder({[this] {
                                             key_ = keys_.next();
                                             if (!key_)
                                                 return false;
                                             ordered_.reset();
                                             parts_.blackboard.set("OloButton", static_cast<int>(*key_));
                                             dealt_with_since_ = parts_.state.frame;
                                             return true;
                                         },
                                         [this] { return key_.has_value() && stillDealtWith(); },
                                         [this] { key_.reset(); }}));
    const auto is = [this](PanelKey key) {
        return [this, key](BT::TreeNode&) { return passed(key_ == key); };
    };
    host.condition("Is_Key1_Click", is(PanelKey::Start));
    host.condition("Is_Key1_LongPressed", is(PanelKey::StartLong));
    host.condition("Is_Key2_Click", is(PanelKey::Home));
    host.condition("Is_Key2_LongPressed", [this](BT::TreeNode&) {
        return passed(key_ == PanelKey::HomeLong || key_ == PanelKey::HomeVeryLong);
    });
    host.condition("Is_SetWIFIKey_Click", is(PanelKey::SetUp));
    host.condition("Is_ResetKey_LongPress", is(PanelKey::Reset));
    host.condition("DoesKeyValueIs", [this](BT::TreeNode& node) {
        int value = 0;
        return passed(key_ && node.getParam("button_value", value) && value == static_cast<int>(*key_));
    });
    host.action("EraseKeyValue", [this](BT::TreeNode&) {
        parts_.blackboard.erase("OloButton");
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SetWIFIKey_Click_Process", [this](BT::TreeNode&) {
        parts_.state.modes.request(Mode::WifiSet);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("ResetKey_LongPress_Process", [this](BT::TreeNode&) {
        parts_.report(event::Note{"settings reset", "reset"});
        return BT::NodeStatus::SUCCESS;
    });
}

// A task that runs is not begun by the order.
void CommandService::noteOrder(const AppCommand& command)
{
    ordered_.reset();
    if (!command.timed_order || command.mode == parts_.state.modes.current())
        return;
    ordered_ = command.mode;
    ordered_in_ = parts_.state.frame;
}

bool CommandService::takeOrder()
{
    if (ordered_ != parts_.state.modes.current() || parts_.state.frame - ordered_in_ > kOrderFrames)
        return false;
    ordered_.reset();
    return true;
}

void CommandService::showToTrees(const AppCommand& command)
{
    if (command.timed_order)
        parts_.blackboard.set("OrderAutoClean", "");
    if (!command.rooms.empty())
        parts_.blackboard.set("Areas_Clean_Set_List_Ping",
                              std::vector<double>(command.rooms.begin(), command.rooms.end()));
    // Numbers in a row: the edges of each area, the place of a point, in mm.
    std::vector<double> edges;
    for (const AreaMm& area : command.areas)
        edges.insert(edges.end(), {area.low.x, area.low.y, area.high.x, area.high.y});
    if (!edges.empty())
        parts_.blackboard.set("Draw_Area_Set_Ping", edges);
    std::vector<double> places;
    for (const PointMm& point : command.points)
        places.insert(places.end(), {point.x, point.y});
    if (!places.empty())
        parts_.blackboard.set("Select_Point_Set_Ping", places);
}

void CommandService::installApp(leaf::LeafHost& host)
{
    host.builder("DoesReceiveWIFICMD",
                 PassCondition::builder({[this] {
                                             command_ = app_.next();
                                             if (!command_)
                                                 return false;
                                             noteOrder(*command_);
                                             showToTrees(*command_);
                                             dealt_with_since_ = parts_.state.frame;
                                             return true;
                                         },
                                         [this] { return stillDealtWith(); }, [this] { command_.reset(); }}));
    host.condition("DoesExcuteOrderAutoMode", [this](BT::TreeNode&) { return passed(takeOrder()); });
    host.condition("DoesAlreadyGetWIFIRes", [this](BT::TreeNode&) {
        const auto answer = std::exchange(wifi_joined_, std::nullopt);
        if (answer)
            parts_.report(
                event::Note{*answer ? "Wi-Fi joined" : "Wi-Fi refused", "wifi", {{"joined", *answer}}});
        return passed(answer.has_value());
    });
    // The app of this robot reads the event log.
    host.action("WIFIState_Send", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.condition("WhatsTheAPPCMDMode", [this](BT::TreeNode& node) {
        return passed(command_ && isText(node, "IsThisMode", toText(command_->mode)));
    });
}

}  // namespace vemra::robot
