#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "robot/belief/grid.h"

namespace vemra::robot {

/// Where the robot has been, cell by cell, and the floor that its body has passed over.
class Track
{
public:
    /// The pose of this frame. A new point is kept when the robot comes into another cell; a jump, as after
    /// a relocalisation, leaves a gap.
    void follow(PointMm at);
    void reset();

    const std::vector<CellIndex>& points() const { return points_; }
    std::size_t size() const { return points_.size(); }
    bool empty() const { return points_.empty(); }
    bool passed(CellIndex cell) const { return passed_.at(cell) == kCentre; }
    /// The body has been over the cell.
    bool covered(CellIndex cell) const { return passed_.at(cell) != kNever; }

    using Usable = std::function<bool(CellIndex)>;
    /// The point of the track that is usable and lies nearest to a place; of two equal ones the later.
    std::optional<CellIndex> nearest(PointMm place, const Usable& usable) const;
    /// The usable point that was visited last.
    std::optional<CellIndex> last(const Usable& usable) const;
    /// The usable point that was visited last of those within a radius of a place.
    std::optional<CellIndex> lastWithin(PointMm place, double radius_mm, const Usable& usable) const;

private:
    enum : unsigned char
    {
        kNever,
        kUnder,
        kCentre
    };

    void cover(CellIndex cell);

    std::vector<CellIndex> points_;
    Grid<unsigned char> passed_{kNever};
};

}  // namespace vemra::robot
