#pragma once

#include <cstdint>
#include <optional>

#include "robot/belief/grid.h"

namespace vemra::robot {

/// The floor that the robot believes it has swept: what brush and side brush touched at the poses that it
/// believed in, on a raster of 25 mm, with the number of the last pass. The planner goes by it.
class CleanedFloor
{
public:
    static constexpr double kRasterMm = kCellMm / 2;

    /// A frame has brought the robot to a pose; true if floor was swept that was not swept in this pass.
    bool follow(const PoseMm& pose, bool brushes_on);
    /// The next pass: all floor is to be swept again. Numbered from 1.
    void setPass(std::uint8_t pass) { pass_ = pass; }
    [[nodiscard]] std::uint8_t pass() const { return pass_; }
    void reset();

    /// How many of the four raster cells of a map cell were swept in a pass or a later one; without one, in
    /// this pass.
    [[nodiscard]] int sweptQuarters(CellIndex cell, std::optional<std::uint8_t> pass = {}) const;
    /// Swept in any pass.
    [[nodiscard]] double areaM2() const { return static_cast<double>(count_) * kRasterMm * kRasterMm / 1e6; }

private:
    bool mark(PointMm point);

    Grid<std::uint8_t> swept_{0};  ///< indexed by raster cells, not map cells
    std::uint64_t count_ = 0;
    std::uint8_t pass_ = 1;
    std::optional<PoseMm> last_;
};

}  // namespace vemra::robot
