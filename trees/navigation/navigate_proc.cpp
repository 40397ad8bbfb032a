#include "trees/navigation/navigate_proc.h"

namespace vemra::trees {

Node forget_bridges_after(const Node& navigation)
{
    return IfThenElseStar(navigation, ForceSuccess(ResetBridgeList{}), ForceFailure(ResetBridgeList{}));
}

Node navigate(const NavigationForm& form)
{
    return forget_bridges_after(IfThenElseStar(form.is_near, form.near_run, form.far_walk));
}

}  // namespace vemra::trees
