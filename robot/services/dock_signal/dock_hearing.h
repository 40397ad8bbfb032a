#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

#include "robot/body/body.h"

namespace vemra::robot {

/// The signal's word in the trees: "Middle", "CentralLeft", ..., "None".
[[nodiscard]] std::string_view toText(DockSignal signal);
[[nodiscard]] constexpr bool isLeftHand(DockSignal signal)
{
    return signal == DockSignal::Left || signal == DockSignal::CentralLeft;
}
[[nodiscard]] constexpr bool isRightHand(DockSignal signal)
{
    return signal == DockSignal::Right || signal == DockSignal::CentralRight;
}

/// What the robot makes of its receivers: the signals without their dropouts, how long ago something was
/// heard, and where the dock stands by that.
///
/// The left front receiver hears further left in the row of sectors than the right one. What is heard
/// crosswise for half a second is the image of a dock in a mirror: nothing of it is believed until the front
/// receivers have been silent for two seconds, or hear the sectors in their order again.
class DockHearing
{
public:
    static constexpr std::uint64_t kNever = 1U << 30U;

    /// The beginning of a frame. On the contacts the dock counts as heard, though it is too near for that.
    void update(const Body& body, bool docked);

    /// A signal holds for 6 frames after it was last heard, unless the receiver hears another.
    [[nodiscard]] DockSignal at(Receiver receiver) const
    {
        return held_[static_cast<std::size_t>(receiver)].signal;
    }
    /// By the words of the trees: receiver "Any" and signals "Any" and "None" too.
    [[nodiscard]] bool hears(std::string_view receiver, std::string_view signal) const;
    [[nodiscard]] bool hearsAny() const { return silent_frames_ == 0; }
    [[nodiscard]] bool frontHears() const { return front_silent_frames_ == 0; }
    /// The robot stands astride of the dock's middle line: a front receiver hears Middle or, close to the
    /// face, the left one a left-hand signal and the right one a right-hand signal.
    [[nodiscard]] bool onMiddle() const { return off_middle_frames_ == 0; }

    // Frames since something was last so; kNever if it never was.
    [[nodiscard]] std::uint64_t silentFrames() const { return silent_frames_; }
    [[nodiscard]] std::uint64_t frontSilentFrames() const { return front_silent_frames_; }
    [[nodiscard]] std::uint64_t offMiddleFrames() const { return off_middle_frames_; }
    [[nodiscard]] std::uint64_t outOfFieldFrames() const { return out_of_field_frames_; }

    /// Left-hand signals count -1 for Central and -2 for the outer ones, right-hand ones likewise upwards,
    /// summed over the front receivers: the side of the middle line on which the robot stands, as it faces
    /// the dock.
    [[nodiscard]] int side() const;

    /// Which way the dock lies from straight ahead, to the left positive, by the balance of the receivers
    /// (dock_bearing.h). While nothing is heard it is carried on by the gyro. No value before the dock was
    /// ever heard.
    [[nodiscard]] std::optional<double> bearingDeg() const { return bearing_deg_; }
    /// Both front receivers heard in this very frame: the bearing is as good as it gets.
    [[nodiscard]] bool located() const { return since_both_ == 0 && bearing_deg_.has_value(); }
    /// From the robot's centre to the emitter, by the strength; as bearingDeg().
    [[nodiscard]] std::optional<double> awayMm() const { return away_mm_; }
    /// The emitter's place in the frame of the odometry, smoothed; as bearingDeg().
    [[nodiscard]] std::optional<PointMm> emitter() const { return emitter_; }
    /// Which way the dock looks, in the frame of the odometry: as the wall told it, or else known when the
    /// robot was on its middle line.
    [[nodiscard]] std::optional<Degrees> looks() const { return looks_; }
    void setLooks(Degrees looks)
    {
        looks_ = looks;
        looks_by_wall_ = true;
    }

    /// What it hears is an image of the dock, and counts for nothing.
    [[nodiscard]] bool isImage() const { return image_; }

private:
    static constexpr int kHoldFrames = 6;
    struct Held
    {
        DockSignal signal = DockSignal::None;
        double strength = 0;
        int frames_left = 0;
        [[nodiscard]] bool fresh() const { return frames_left == kHoldFrames; }
    };
    [[nodiscard]] const Held& held(Receiver receiver) const
    {
        return held_[static_cast<std::size_t>(receiver)];
    }
    void hold(const Hearing& hearing);
    void judgeOrder(const Hearing& hearing);
    /// Where views overlap, what the front receiver hears is ahead, not at the side: else a robot that turns
    /// to what it hears at its side would have arrived before it began.
    void yieldToFront(Receiver side, Receiver front);
    void locate(const PoseMm& odometry);

    std::array<Held, kReceivers> held_;
    int crosswise_frames_ = 0;  ///< less those in which the sectors were heard in their order
    std::uint64_t quiet_frames_ = 0;
    bool image_ = false;
    std::uint64_t silent_frames_ = kNever;
    std::uint64_t front_silent_frames_ = kNever;
    std::uint64_t off_middle_frames_ = kNever;
    std::uint64_t out_of_field_frames_ = kNever;
    std::uint64_t since_left_alone_ = kNever;
    std::uint64_t since_right_alone_ = kNever;
    std::uint64_t since_both_ = 0;  ///< frames since both front receivers heard
    std::optional<double> bearing_deg_;
    std::optional<double> away_mm_;
    std::optional<PointMm> emitter_;
    std::optional<Degrees> looks_;
    bool looks_by_wall_ = false;
    std::optional<double> last_yaw_deg_;
};

}  // namespace vemra::robot
