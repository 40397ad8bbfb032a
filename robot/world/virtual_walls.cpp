#include "robot/world/virtual_walls.h"

#include <algorithm>

namespace vemra::robot {
namespace {

// Keeps the nearer of two points within reach.
struct Nearest
{
    PointMm to;
    double reach;
    std::optional<PointMm> found = {};

    void offer(PointMm candidate)
    {
        const double away = distance(to, candidate);
        if (away <= reach) {
            reach = away;
            found = candidate;
        }
    }
};

}  // namespace

PointMm nearestOn(const SegmentMm& segment, PointMm point)
{
    const PointMm along = segment.to - segment.from;
    const PointMm offset = point - segment.from;
    const double square = along.x * along.x + along.y * along.y;
    const double share =
        square > 0 ? std::clamp((offset.x * along.x + offset.y * along.y) / square, 0.0, 1.0) : 0.0;
    return segment.from + share * along;
}

bool isInside(const PolygonMm& polygon, PointMm point)
{
    // Even-odd rule: how often does a ray to the right cross the outline?
    bool inside = false;
    for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
        const PointMm a = polygon[i];
        const PointMm b = polygon[j];
        if ((a.y > point.y) != (b.y > point.y) &&
            point.x < (b.x - a.x) * (point.y - a.y) / (b.y - a.y) + a.x) {
            inside = !inside;
        }
    }
    return inside;
}

PointMm nearestOn(const PolygonMm& polygon, PointMm point)
{
    Nearest nearest{point, distance(point, polygon.front()), polygon.front()};
    for (std::size_t i = 0, j = polygon.size() - 1; i < polygon.size(); j = i++) {
        nearest.offer(nearestOn(SegmentMm{polygon[j], polygon[i]}, point));
    }
    return *nearest.found;
}

const PolygonMm* VirtualWalls::areaAt(PointMm point) const
{
    const auto at = std::find_if(areas.begin(), areas.end(),
                                 [point](const PolygonMm& area) { return isInside(area, point); });
    return at == areas.end() ? nullptr : &*at;
}

std::optional<PointMm> VirtualWalls::nearestOfLines(PointMm point, double max_mm) const
{
    Nearest nearest{point, max_mm};
    for (const SegmentMm& line : lines) {
        nearest.offer(nearestOn(line, point));
    }
    return nearest.found;
}

std::optional<PointMm> VirtualWalls::nearestOfAreas(PointMm point, double max_mm) const
{
    Nearest nearest{point, max_mm};
    for (const PolygonMm& area : areas) {
        nearest.offer(nearestOn(area, point));
    }
    return nearest.found;
}

}  // namespace vemra::robot
