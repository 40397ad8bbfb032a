#pragma once

#include <array>
#include <cstdint>
#include <deque>
#include <string_view>

#include "robot/body/body.h"
#include "robot/vocabulary/escape_kinds.h"

namespace vemra::robot {

/// Watches the senses for signs that the robot is stuck. A sign must hold for a while before it is a warning,
/// most of them while the wheels have an order to move.
class EscapeWatch
{
public:
    /// One frame. `contact` is the direction of the contact there is.
    void update(const Body& body, std::string_view contact);

    /// The sign is there now.
    [[nodiscard]] bool shows(EscapeKind kind) const { return signs_[index(kind)]; }
    /// The sign has held long enough.
    [[nodiscard]] bool warns(EscapeKind kind) const;

    /// An escape is over: every sign has to show itself anew.
    void settle();
    /// The robot is somewhere else: nothing of what was felt holds any more.
    void forget();

private:
    struct Onset
    {
        std::uint64_t frame;
        PointMm at;  ///< by odometry
    };

    static std::size_t index(EscapeKind kind) { return static_cast<std::size_t>(kind); }
    void count(EscapeKind kind, bool sign, bool counts);
    void countProgress(const Body& body);
    static void note(std::deque<Onset>& onsets, bool began, const Onset& onset, std::uint64_t memory_frames);
    [[nodiscard]] static bool repeats(const std::deque<Onset>& onsets, std::size_t times);

    std::uint64_t frame_ = 0;
    std::array<bool, kEscapeKinds> signs_{};
    std::array<int, kEscapeKinds> frames_{};
    std::deque<Onset> bumps_;
    std::deque<Onset> drops_;
    bool bumped_before_ = false;
    bool dropped_before_ = false;
};

}  // namespace vemra::robot
