#pragma once

namespace vemra::robot {

/// Where an emitter stands as seen from the robot's centre.
struct DockBearing
{
    double deg = 0;  ///< to the left of straight ahead
    double away_mm = 0;
};

/// Of the strengths that the two front receivers hear (see Heard). Both receivers sit at the casing, so the
/// nearer one hears more: the two equations strength = cos(off axis) / way^2 are solved for bearing and
/// distance by Newton's method, from what they would give were both in the robot's centre:
/// tan(bearing) = (l - r) / (l + r) / tan(axis).
[[nodiscard]] DockBearing dockBearing(double left_strength, double right_strength);

}  // namespace vemra::robot
