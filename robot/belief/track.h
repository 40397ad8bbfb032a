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

    struct Point
    {
        CellIndex cell;
        std::size_t number;  ///< how many points came before it
    };
    /// In the order in which they were passed. Of what lies long back each cell is kept once, where it was
    /// passed last, so that a track of many hours needs no more room than the floor has cells.
    const std::vector<Point>& points() const { return points_; }
    /// The points ever passed, those that were dropped among them.
    std::size_t size() const { return points_.empty() ? 0 : points_.back().number + 1; }
    bool empty() const { return points_.empty(); }
    bool passed(CellIndex cell) const { return passed_.at(cell) == kCentre; }
    /// The body has been over the cell.
    bool covered(CellIndex cell) const { return passed_.at(cell) != kNever; }

    /// So many points at the end are always all there.
    static constexpr std::size_t kRecent = 4096;

    using Usable = std::function<bool(CellIndex)>;
    /// The point of the track that is usable and lies nearest to a place; of two equal ones the later.
    std::optional<CellIndex> nearest(PointMm place, const Usable& usable) const;
    /// The usable point that was visited last.
    std::optional<CellIndex> last(const Usable& usable) const;
    /// The usable point that was visited last of those within a radius of a place.
    std::optional<CellIndex> lastWithin(PointMm place, double radius_mm, const Usable& usable) const;

private:
    static constexpr std::size_t kDropEvery = 4 * kRecent;

    enum : unsigned char
    {
        kNever,
        kUnder,
        kCentre
    };

    void cover(CellIndex cell);
    void dropEarlierVisits();

    std::vector<Point> points_;
    std::size_t drop_at_ = kDropEvery;
    Grid<unsigned char> passed_{kNever};
};

}  // namespace vemra::robot
