#include "robot/services/dock_signal/dock_hearing.h"

#include <algorithm>
#include <cmath>

#include "robot/services/dock_signal/dock_bearing.h"

namespace vemra::robot {
namespace {

constexpr std::array<std::string_view, 6> kSignals{"None",   "Left",         "CentralLeft",
                                                   "Middle", "CentralRight", "Right"};
constexpr std::array<std::string_view, kReceivers> kNames{"Left", "MiddleLeft", "MiddleRight", "Right"};
/// Where the dock lies when one front receiver, or one at the side alone, hears it.
constexpr double kOneFrontDeg = 55;
constexpr double kOneSideDeg = 100;
constexpr std::uint64_t kFreshFrames = 150;
constexpr double kSmoothing = 0.2;
/// Beyond this the place was taken for somewhere else: the robot was carried, or heard a mirror.
constexpr double kElsewhereMm = 600;
constexpr int kImageFrames = 25;
constexpr std::uint64_t kForgetFrames = 100;

void count(std::uint64_t& frames, bool now)
{
    frames = now ? 0 : std::min(frames + 1, DockHearing::kNever);
}

}  // namespace

std::string_view toText(DockSignal signal)
{
    return kSignals[static_cast<std::size_t>(signal)];
}

void DockHearing::judgeOrder(const Hearing& hearing)
{
    const DockSignal left = hearing[static_cast<std::size_t>(Receiver::MiddleLeft)].signal;
    const DockSignal right = hearing[static_cast<std::size_t>(Receiver::MiddleRight)].signal;
    quiet_frames_ = left == DockSignal::None && right == DockSignal::None ? quiet_frames_ + 1 : 0;
    if (left != DockSignal::None && right != DockSignal::None && left != right) {
        // The row of the sectors is the order of the enumeration.
        crosswise_frames_ = std::clamp(crosswise_frames_ + (left > right ? 1 : -1), 0, kImageFrames);
    }
    if (quiet_frames_ >= kForgetFrames)
        crosswise_frames_ = 0;
    if (crosswise_frames_ == kImageFrames || crosswise_frames_ == 0)
        image_ = crosswise_frames_ != 0;
}

void DockHearing::hold(const Hearing& hearing)
{
    for (std::size_t i = 0; i < kReceivers; ++i) {
        Held& held = held_[i];
        if (hearing[i].signal != DockSignal::None) {
            held = {hearing[i].signal, hearing[i].strength, kHoldFrames};
        } else if (held.frames_left > 0) {
            --held.frames_left;
        } else {
            held = {};
        }
    }
}

void DockHearing::yieldToFront(Receiver side, Receiver front)
{
    Held& held = held_[static_cast<std::size_t>(side)];
    if (held.signal != DockSignal::None && held.signal == at(front)) {
        held = {};
    }
}

void DockHearing::update(const Body& body, bool docked)
{
    judgeOrder(body.dockHearing());
    hold(image_ ? Hearing{} : body.dockHearing());
    yieldToFront(Receiver::Left, Receiver::MiddleLeft);
    yieldToFront(Receiver::Right, Receiver::MiddleRight);
    const DockSignal left = at(Receiver::MiddleLeft);
    const DockSignal right = at(Receiver::MiddleRight);
    const bool front = docked || left != DockSignal::None || right != DockSignal::None;
    const bool middle = docked || left == DockSignal::Middle || right == DockSignal::Middle ||
                        (isLeftHand(left) && isRightHand(right));
    count(silent_frames_,
          front || at(Receiver::Left) != DockSignal::None || at(Receiver::Right) != DockSignal::None);
    count(front_silent_frames_, front);
    count(off_middle_frames_, middle);
    count(out_of_field_frames_, body.nearDock());
    locate(body.odometry());
}

void DockHearing::locate(const PoseMm& odometry)
{
    count(since_left_alone_, false);
    count(since_right_alone_, false);
    const double turned = last_yaw_deg_ ? odometry.yaw.value - *last_yaw_deg_ : 0;
    last_yaw_deg_ = odometry.yaw.value;
    const Held& left = held(Receiver::MiddleLeft);
    const Held& right = held(Receiver::MiddleRight);
    // What is held over a dropout was heard with the robot turned otherwise.
    if (left.fresh() && right.fresh()) {
        since_both_ = 0;
        const DockBearing dock = dockBearing(left.strength, right.strength);
        bearing_deg_ = dock.deg;
        away_mm_ = dock.away_mm;
        const PointMm heard = odometry.at + *away_mm_ * direction({odometry.yaw.value + *bearing_deg_});
        if (!emitter_ || distance(*emitter_, heard) > kElsewhereMm) {
            emitter_ = heard;
            looks_.reset();
            looks_by_wall_ = false;
        } else {
            emitter_ = *emitter_ + kSmoothing * (heard - *emitter_);
        }
        // Close to the face its sectors are narrower than the robot: there they tell nothing.
        const bool on_line = left.signal == DockSignal::Middle && right.signal == DockSignal::Middle;
        if (on_line && !looks_by_wall_) {
            const Degrees seen{odometry.yaw.value + *bearing_deg_ + 180};
            const double change = looks_ ? wrapped({seen.value - looks_->value}).value : 0;
            looks_ = looks_ ? Degrees{looks_->value + kSmoothing * change} : seen;
        }
        return;
    }
    ++since_both_;
    if (emitter_) {
        away_mm_ = distance(*emitter_, odometry.at);
    }
    // For a while the place that was heard is worth more than one receiver.
    if (emitter_ && since_both_ <= kFreshFrames) {
        const PointMm way = *emitter_ - odometry.at;
        bearing_deg_ = wrapped({degreesOfRadians(std::atan2(way.y, way.x)).value - odometry.yaw.value}).value;
    } else if (left.strength > 0 || right.strength > 0) {
        // At the rim of a sector they hear in turn: what each hears alone lies between them.
        const bool on_left = left.strength > 0;
        (on_left ? since_left_alone_ : since_right_alone_) = 0;
        const bool in_turn = (on_left ? since_right_alone_ : since_left_alone_) <= kFreshFrames;
        bearing_deg_ = in_turn ? 0 : on_left ? kOneFrontDeg : -kOneFrontDeg;
    } else if (at(Receiver::Left) != DockSignal::None) {
        bearing_deg_ = kOneSideDeg;
    } else if (at(Receiver::Right) != DockSignal::None) {
        bearing_deg_ = -kOneSideDeg;
    } else if (bearing_deg_) {
        bearing_deg_ = wrapped({*bearing_deg_ - turned}).value;
    }
}

int DockHearing::side() const
{
    int sum = 0;
    for (const Receiver receiver : {Receiver::MiddleLeft, Receiver::MiddleRight}) {
        switch (at(receiver)) {
            case DockSignal::Left:
                sum -= 2;
                break;
            case DockSignal::CentralLeft:
                --sum;
                break;
            case DockSignal::CentralRight:
                ++sum;
                break;
            case DockSignal::Right:
                sum += 2;
                break;
            default:
                break;
        }
    }
    return sum;
}

bool DockHearing::hears(std::string_view receiver, std::string_view signal) const
{
    const auto fits = [signal](DockSignal heard) {
        return signal == "Any" ? heard != DockSignal::None : toText(heard) == signal;
    };
    if (receiver == "Any") {
        const auto fits_held = [&fits](const Held& held) { return fits(held.signal); };
        // Nobody hears anything, or somebody hears this.
        return signal == "None" ? std::all_of(held_.begin(), held_.end(), fits_held)
                                : std::any_of(held_.begin(), held_.end(), fits_held);
    }
    for (std::size_t i = 0; i < kReceivers; ++i) {
        if (kNames[i] == receiver) {
            return fits(held_[i].signal);
        }
    }
    return false;
}

}  // namespace vemra::robot
