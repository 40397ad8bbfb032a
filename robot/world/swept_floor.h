#pragma once

#include <cstdint>
#include <vector>

#include "robot/world/home.h"

namespace vemra::robot {

/// The floor of a home that the robot has passed over with its brushes on: ground truth.
class SweptFloor
{
public:
    /// Keeps the home by reference.
    explicit SweptFloor(const Home& home);

    /// The robot has swept where it stands: the free cells whose middle lies below its body.
    void sweep(PointMm at);

    [[nodiscard]] double areaM2() const { return static_cast<double>(count_) * kCellM2; }
    /// Percent of the floor that the robot can get its body over from a place on it; 0 where it has no room.
    /// What was put down in the home is left out as well. It takes a look at the whole home.
    [[nodiscard]] double percentOfReach(PointMm from) const;

private:
    static constexpr double kCellM2 = Home::kCellMm * Home::kCellMm / 1e6;

    const Home& home_;
    std::vector<bool> swept_;
    std::uint64_t count_ = 0;
    PointMm last_;
    bool begun_ = false;
};

}  // namespace vemra::robot
