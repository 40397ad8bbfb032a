#pragma once

/// Back to the dock that the run trusts.

#include "trees/dock/walks.h"

namespace vemra::trees {

/// The walk to the trusted dock, as a named inner tree.
Node walk_to_marked_charger();

inline Node take_marked_charger()
{
    return key::only_charger_in_map.copy_to(key::navi_target_point);
}

}  // namespace vemra::trees
