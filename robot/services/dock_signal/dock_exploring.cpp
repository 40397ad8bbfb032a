#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/dock_signal/dock_signal.h"

#include <algorithm>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

constexpr int kHeardFrames = 10;
constexpr double kMuteMm = 1000;

}  // namespace

// Whoever asks again after a dock was told of, chased it in vain: from there it is not told again.
bool DockSignalService::foundWhileExploring()
{
    const PointMm at = pose_.pose().at;
    const std::uint64_t now = parts_.state.frame;
    if (told_of_dock_at_ && now > told_asked_ + 1) {
        mute_at_.push_back(*told_of_dock_at_);
        told_of_dock_at_.reset();
    }
    told_asked_ = now;
    const bool mute = std::any_of(mute_at_.begin(), mute_at_.end(),
                                  [&](PointMm place) { return distance(place, at) <= kMuteMm; });
    if (heard_frames_ < kHeardFrames || mute) {
        return false;
    }
    told_of_dock_at_ = at;
    return true;
}

// Where the dock was heard best: the place to come back to.
void DockSignalService::markWhereHeard()
{
    double strength = 0;
    for (const Heard& heard : parts_.body.dockHearing()) {
        strength = std::max(strength, heard.strength);
    }
    if (!parts_.blackboard.contains("mark_charger_point")) {
        marked_strength_ = 0;
    }
    if (heard_frames_ >= kHeardFrames && strength > marked_strength_) {
        marked_strength_ = strength;
        const PointMm at = pose_.pose().at;
        parts_.blackboard.set("mark_charger_point", at);
        parts_.blackboard.set("first_potential_charger", at);
    }
}

void DockSignalService::installExploring(leaf::LeafHost& host)
{
    host.condition("ExploreFindCharger", [this](BT::TreeNode&) { return passed(foundWhileExploring()); });
    host.action("ExploreMarkCharger", [this](BT::TreeNode&) {
        markWhereHeard();
        return BT::NodeStatus::SUCCESS;
    });
}

}  // namespace vemra::robot
