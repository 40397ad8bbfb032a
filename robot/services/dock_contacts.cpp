#include "robot/services/dock_contacts.h"

#include "robot/services/leaf_functions.h"

namespace vemra::robot {

void DockContactService::update(bool touching)
{
    // A robot that comes up on its dock has not just landed there.
    before_ = first_ ? touching : touching_;
    touching_ = touching;
    first_ = false;
    if (justTouched())
        report_("body", "on the dock", {{"on_dock", true}});
    if (justLost())
        report_("body", "off the dock", {{"on_dock", false}});
}

void DockContactService::install(leaf::LeafHost& host)
{
    for (const char* leaf : {"DoesRobotGetCharger", "GotCharger"})
        host.condition(leaf, [this](BT::TreeNode&) { return passed(touching_); });
    host.condition("DoesChargerGetOn", [this](BT::TreeNode&) { return passed(justTouched()); });
    host.condition("DoesChargerDrop", [this](BT::TreeNode&) { return passed(justLost()); });
    host.condition("DoesRobotChargerStateChange",
                   [this](BT::TreeNode&) { return passed(justTouched() || justLost()); });
    host.condition("DoesGetRobotChargeWarnning", [this](BT::TreeNode&) { return passed(charge_warning_); });
}

}  // namespace vemra::robot
