#pragma once

#include <optional>
#include <vector>

#include "robot/geometry/points.h"

namespace vemra::robot {

struct SegmentMm
{
    PointMm from;
    PointMm to;
};

/// The point of a segment that lies nearest.
PointMm nearestOn(const SegmentMm& segment, PointMm point);

/// Corners in order; the last is joined to the first. Three at least.
using PolygonMm = std::vector<PointMm>;

bool isInside(const PolygonMm& polygon, PointMm point);
/// The point of the outline that lies nearest. The polygon is not empty.
PointMm nearestOn(const PolygonMm& polygon, PointMm point);

/// What the user forbade, in the frame of the map: lines that are not to be crossed and areas that are not
/// to be entered.
struct VirtualWalls
{
    std::vector<SegmentMm> lines;
    std::vector<PolygonMm> areas;

    /// The area that the point stands in.
    [[nodiscard]] const PolygonMm* areaAt(PointMm point) const;
    /// The nearest point of a line, or of the outline of an area; nothing beyond max_mm.
    [[nodiscard]] std::optional<PointMm> nearestOfLines(PointMm point, double max_mm) const;
    [[nodiscard]] std::optional<PointMm> nearestOfAreas(PointMm point, double max_mm) const;
};

}  // namespace vemra::robot
