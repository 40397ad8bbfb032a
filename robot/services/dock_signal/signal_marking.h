#pragma once

#include <array>
#include <cstdint>

#include "robot/services/dock_signal/dock_hearing.h"

namespace vemra::robot {

/// What a robot learns of the dock while it turns on the spot.
///
/// The direction is the mean of the bearings that the front receivers gave while one of them heard the best
/// kind of signal; were they never in hearing together, the mean of where they looked. Middle is better than
/// the Central ones, and these better than Left and Right; a kind counts from ten frames on. "Mixed": of that
/// rank the weaker side was heard more than half as often as the stronger one.
class SignalMarking
{
public:
    /// One frame of the turn.
    void listen(const DockHearing& hearing, double yaw_deg, bool near_dock);

    [[nodiscard]] std::string_view type() const;
    /// Within 180 degrees of a heading.
    [[nodiscard]] double directionDeg(double near_yaw_deg) const;
    [[nodiscard]] bool inDockField() const { return in_dock_field_; }

private:
    struct Tally
    {
        std::uint64_t frames = 0;
        PointMm looked;   ///< sum of the headings' unit vectors
        PointMm located;  ///< sum of those of the dock's bearings
    };
    [[nodiscard]] const Tally& of(DockSignal signal) const
    {
        return tallies_[static_cast<std::size_t>(signal)];
    }

    std::array<Tally, 6> tallies_;
    bool in_dock_field_ = false;
};

}  // namespace vemra::robot
