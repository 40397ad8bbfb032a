#include "robot/services/dock/dock_contacts.h"

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {

void DockContactService::update()
{
    const DockContacts& contacts = parts_.state.contacts;
    if (contacts.justTouched() || (contacts.touching() && parts_.state.frame == 0))
        parts_.report(event::DockContact{true});
    if (contacts.justLost())
        parts_.report(event::DockContact{false});
}

void DockContactService::install(leaf::LeafHost& host)
{
    const DockContacts& contacts = parts_.state.contacts;
    for (const char* leaf : {"DoesRobotGetCharger", "GotCharger"})
        host.condition(leaf, [&contacts](BT::TreeNode&) { return passed(contacts.touching()); });
    host.condition("DoesChargerGetOn", [&contacts](BT::TreeNode&) { return passed(contacts.justTouched()); });
    host.condition("DoesChargerDrop", [&contacts](BT::TreeNode&) { return passed(contacts.justLost()); });
    host.condition("DoesRobotChargerStateChange", [&contacts](BT::TreeNode&) {
        return passed(contacts.justTouched() || contacts.justLost());
    });
}

}  // namespace vemra::robot
