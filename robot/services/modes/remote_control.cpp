#include "robot/services/modes/remote_control.h"

#include <algorithm>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

constexpr std::uint64_t kPatienceFrames = 500;
/// A contact is backed off from in the meantime: the app has not gone because nobody asked it.
constexpr std::uint64_t kAskedAgainFrames = 60;

}  // namespace

bool RemoteControl::take(const Happening& what)
{
    if (const auto* command = std::get_if<AppCommand>(&what);
        command != nullptr && command->mode == Mode::RemoteCtrl) {
        parts_.blackboard.set("OloWIFICMD_RemoteCtrl_audio", "true");
        return false;  // the command itself is another's
    }
    const auto* order = std::get_if<DriveByHand>(&what);
    if (order == nullptr) {
        return false;
    }
    order_ = *order;
    until_ = parts_.state.frame + order->frames;
    waits_since_ = until_;
    return true;
}

bool RemoteControl::takeSpeed()
{
    const std::uint64_t now = parts_.state.frame;
    if (now > asked_ + kAskedAgainFrames) {
        waits_since_ = std::max(waits_since_, now);
    }
    asked_ = now;
    if (now >= until_) {
        order_ = {};
    }
    return now < waits_since_ + kPatienceFrames;
}

void RemoteControl::install(leaf::LeafHost& host)
{
    host.action("RemoteCtrlModeGetSpeed", [this](BT::TreeNode&) { return passed(takeSpeed()); });
    host.builder("RemoteCtrlModeDeal", RunningAction::builder(
                                           [this](BT::TreeNode&) {
                                               parts_.body.driveArc(order_.forward_mm_s, order_.turn_deg_s,
                                                                    this);
                                               return BT::NodeStatus::RUNNING;
                                           },
                                           [this] { parts_.body.release(this); }));
}

}  // namespace vemra::robot
