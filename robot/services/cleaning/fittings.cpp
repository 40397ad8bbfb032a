#include "robot/services/cleaning/fittings.h"

#include <string>
#include <utility>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {

void FittingService::change(Thing& thing, bool fitted)
{
    if (thing.fitted == fitted)
        return;
    thing.fitted = fitted;
    thing.put_on = fitted;
    thing.dropped = !fitted;
}

bool FittingService::take(const Happening& what)
{
    const auto* fitting = std::get_if<FittingChange>(&what);
    if (fitting == nullptr)
        return false;
    if (fitting->fitting == Fitting::WaterBox)
        change(water_box_, fitting->installed);
    else if (fitting->fitting == Fitting::Mop)
        change(mop_, fitting->installed);
    if (fitting->fitting == Fitting::Mop)
        tellUse();
    warned_of_mop_ = warned_of_mop_ && mop_.fitted && !water_box_.fitted;
    return true;
}

void FittingService::tellUse()
{
    BT::Blackboard& keys = parts_.blackboard;
    keys.set("use_mop", mop_.fitted);
    if (!mop_.fitted)
        keys.set("robot_mop_mode", "0");
    else if (std::string mode; !keys.get("robot_mop_mode", mode) || mode == "0")
        keys.set("robot_mop_mode", "2");
}

// A cloth without the water box is worth a warning, once.
bool FittingService::mopRunsDry()
{
    const bool dry = mop_.fitted && !water_box_.fitted;
    return dry && !std::exchange(warned_of_mop_, dry);
}

void FittingService::install(leaf::LeafHost& host)
{
    const auto once = [](bool& happened) {
        return [&happened](BT::TreeNode&) { return passed(std::exchange(happened, false)); };
    };
    const auto now = [](const bool& fitted) { return [&fitted](BT::TreeNode&) { return passed(fitted); }; };
    if (water_box_.fitted)
        parts_.blackboard.set("water_box", "");
    host.condition("DoesRobotPutOnWaterBox", once(water_box_.put_on));
    host.condition("DoesRobotDropWaterBox", once(water_box_.dropped));
    host.condition("DoesRobotUsingWaterBox", now(water_box_.fitted));
    host.condition("DoesRobotPutOnTuobu", once(mop_.put_on));
    host.condition("DoesRobotDropTuobu", once(mop_.dropped));
    host.condition("DoesTuobuInstall", now(mop_.fitted));
    host.condition("NeedToPlayMopWarningMusic", [this](BT::TreeNode&) { return passed(mopRunsDry()); });
    // Boxes are always as they are; there is nothing to take in.
    host.action("UpdateRobotBoxState", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
}

}  // namespace vemra::robot
