#pragma once

#include <array>
#include <cstdint>

#include "robot/base/chance.h"
#include "robot/world/dock_field.h"

namespace vemra::robot {

enum class Receiver : std::uint8_t
{
    Left,
    MiddleLeft,
    MiddleRight,
    Right
};
inline constexpr std::size_t kReceivers = 4;

/// Where a receiver looks, in degrees to the left of straight ahead, and how far to each side.
struct ReceiverView
{
    double axis_deg;
    double half_deg;
};
inline constexpr std::array<ReceiverView, kReceivers> kReceiverViews{
    {{90, 60}, {14, 55}, {-14, 55}, {-90, 60}}};

/// What one receiver hears: a single signal, the strongest.
struct Heard
{
    DockSignal signal = DockSignal::None;
    /// cos(angle off the receiver's axis) / (way in m)^2, with 2 % noise; 0 for none.
    double strength = 0;
};
using Hearing = std::array<Heard, kReceivers>;

/// What the four receivers at the casing hear of a dock in one frame.
[[nodiscard]] Hearing hear(const DockField& field, const Home& visible, const PoseMm& at, Chance& chance);

}  // namespace vemra::robot
