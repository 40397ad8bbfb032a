#include "robot/planning/lines.h"

#include <limits>

namespace vemra::robot {

bool walkLine(CellIndex from, CellIndex to, const std::function<bool(CellIndex)>& visit)
{
    const int across = std::abs(to.column - from.column);
    const int up = std::abs(to.row - from.row);
    const int step_column = to.column > from.column ? 1 : -1;
    const int step_row = to.row > from.row ? 1 : -1;
    CellIndex cell = from;
    if (!visit(cell)) {
        return false;
    }
    // Which border comes next is told by comparing (2i+1) / 2across with (2j+1) / 2up.
    for (int i = 0, j = 0; i < across || j < up;) {
        const long ahead = static_cast<long>(2 * i + 1) * up - static_cast<long>(2 * j + 1) * across;
        if (ahead == 0) {
            if (!visit({cell.column + step_column, cell.row}) || !visit({cell.column, cell.row + step_row})) {
                return false;
            }
        }
        if (ahead <= 0) {
            cell.column += step_column;
            ++i;
        }
        if (ahead >= 0) {
            cell.row += step_row;
            ++j;
        }
        if (!visit(cell)) {
            return false;
        }
    }
    return true;
}

bool lineCosts(const CostGrid& costs, CellIndex from, CellIndex to, int most)
{
    return walkLine(from, to, [&](CellIndex cell) { return costs.at(cell) != 0 && costs.at(cell) <= most; });
}

std::vector<CellIndex> straightened(const CostGrid& costs, std::span<const CellIndex> path)
{
    std::vector<CellIndex> corners;
    if (path.empty()) {
        return corners;
    }
    corners.push_back(path.front());
    std::size_t at = 0;
    while (at + 1 < path.size()) {
        // The next cell is always in reach; further ones as long as the line to them spares nothing dearer.
        std::size_t reached = at + 1;
        int dearest = costs.at(path[reached]);
        std::size_t missed = 0;
        for (std::size_t next = at + 2; next < path.size() && missed < 40; ++next) {
            dearest = std::max<int>(dearest, costs.at(path[next]));
            const bool open = walkLine(path[at], path[next], [&](CellIndex cell) {
                return cell == path[at] || (costs.at(cell) != 0 && costs.at(cell) <= dearest);
            });
            if (open) {
                reached = next;
                missed = 0;
            } else {
                ++missed;
            }
        }
        corners.push_back(path[reached]);
        at = reached;
    }
    return corners;
}

PlaceOnLine nearestOnLine(std::span<const PointMm> line, PointMm point, double from_mm, double to_mm)
{
    PlaceOnLine best;
    best.away_mm = std::numeric_limits<double>::infinity();
    const auto consider = [&](PointMm at, double along) {
        if (const double away = distance(at, point); away < best.away_mm) {
            best = {at, along, away};
        }
    };
    double before = 0;
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const PointMm way = line[i + 1] - line[i];
        const double length = distance(line[i], line[i + 1]);
        const double low = std::max(0.0, from_mm - before);
        const double high = std::min(length, to_mm - before);
        if (length > 0 && low <= high) {
            const PointMm off = point - line[i];
            const double along = std::clamp((off.x * way.x + off.y * way.y) / length, low, high);
            consider(line[i] + (along / length) * way, before + along);
        }
        before += length;
    }
    if (std::isinf(best.away_mm)) {
        consider(pointAlong(line, from_mm), std::min(from_mm, before));
    }
    return best;
}

PointMm pointAlong(std::span<const PointMm> line, double along_mm)
{
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        const double length = distance(line[i], line[i + 1]);
        if (length > 0 && along_mm <= length) {
            return line[i] + (std::max(0.0, along_mm) / length) * (line[i + 1] - line[i]);
        }
        along_mm -= length;
    }
    return line.back();
}

double lengthOf(std::span<const PointMm> line)
{
    double length = 0;
    for (std::size_t i = 0; i + 1 < line.size(); ++i) {
        length += distance(line[i], line[i + 1]);
    }
    return length;
}

}  // namespace vemra::robot
