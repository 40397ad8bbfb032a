#pragma once

#include <cstdint>
#include <vector>

#include "robot/geometry/points.h"

namespace vemra::robot {

/// Steps in the floor that the robot has met: sills and thresholds that it can climb and is not to climb
/// unasked. Each is known by the places where it was felt, and is open or closed.
class StepBook
{
public:
    /// Places so near to one another are of one step.
    static constexpr double kSameStepMm = 400;

    /// The step at a place stands open.
    [[nodiscard]] bool isOpen(PointMm at) const;
    /// A step was felt here. One that was not known is open or closed as told.
    void meet(PointMm at, bool open);
    /// The closed step that is nearest to a place is open from now on; false when none is left.
    bool openNearest(PointMm from);
    void reset();

    /// Where closed steps were felt: they hold the robot back as walls do.
    [[nodiscard]] const std::vector<PointMm>& closed() const { return closed_; }
    /// Grows with each change.
    [[nodiscard]] std::uint64_t version() const { return version_; }

private:
    std::vector<PointMm> closed_;
    std::vector<PointMm> open_;
    std::uint64_t version_ = 0;
};

}  // namespace vemra::robot
