#include "robot/services/maps/steps.h"

#include <algorithm>

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/sensing/sensing_direction.h"

namespace vemra::robot {

std::string StepLeaves::contact() const
{
    const PoseMm pose = map_.pose();
    const std::vector<PointMm>& closed = map_.steps().closed();
    const bool met = std::any_of(closed.begin(), closed.end(),
                                 [&pose](PointMm place) { return touchesVirtually(pose, place); });
    return std::string(met ? kVirtualBump : kNoBump);
}

void StepLeaves::feltBy(SensingService& sensing) const
{
    sensing.addEdge("Step", [this] { return contact(); });
}

void StepLeaves::install(leaf::LeafHost& host)
{
    host.action("OpenAStep", [this](BT::TreeNode&) {
        const bool opened = map_.steps().openNearest(map_.pose().at);
        if (opened) {
            parts_.report(event::Note{"a step in the floor may be climbed from now on", "step"});
        }
        return passed(opened);
    });
    host.builder("StepUtility", RunningAction::builder(
                                    [this](BT::TreeNode& node) {
                                        map_.keepNewStepsClosed(textOf(node, "new_step_status") == "Closed");
                                        return BT::NodeStatus::RUNNING;
                                    },
                                    [this] { map_.keepNewStepsClosed(false); }));
}

}  // namespace vemra::robot
