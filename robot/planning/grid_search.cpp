#include "robot/planning/grid_search.h"

#include <algorithm>
#include <array>
#include <limits>

namespace vemra::robot {
namespace {

constexpr int kUnseen = std::numeric_limits<int>::max();

int octile(CellIndex a, CellIndex b)
{
    const int dx = std::abs(a.column - b.column);
    const int dy = std::abs(a.row - b.row);
    return kPlainStep * std::max(dx, dy) + 4 * std::min(dx, dy);
}

// One search over a cost grid. The grid gets a rim that cannot be entered, so that no step needs to look
// whether it leads outside. Costs are small whole numbers: the queue is a ring of buckets (Dial 1969).
class Search
{
public:
    Search(const CostGrid& costs, CellIndex from, std::optional<CellIndex> to)
        : window_(costs.window()),
          to_(to),
          width_(window_.columns() + 2),
          costs_(rimmed(costs)),
          known_(costs_.size(), kUnseen),
          came_(costs_.size(), 0),
          // Right, up, left, down, and the diagonals between them.
          steps_{1, width_, -1, -width_, width_ + 1, width_ - 1, -width_ - 1, -width_ + 1}
    {
        if (window_.contains(from)) {
            const int start = indexOf(from);
            known_[at(start)] = 0;
            push(start, 0);
        }
    }

    // The next cell in the order of costs; nothing when all are done.
    std::optional<CellIndex> next()
    {
        while (waiting_ > 0) {
            auto& bucket = ring_[turn_ % ring_.size()];
            if (bucket.empty()) {
                ++turn_;
                continue;
            }
            const int index = bucket.back();
            bucket.pop_back();
            --waiting_;
            if ((came_[at(index)] & kDone) != 0) {
                continue;
            }
            came_[at(index)] |= kDone;
            open(index);
            return cellOf(index);
        }
        return std::nullopt;
    }

    GridPath pathTo(CellIndex cell) const
    {
        GridPath path;
        int index = indexOf(cell);
        path.cost = known_[at(index)];
        path.cells.push_back(cell);
        while (known_[at(index)] != 0) {
            index -= steps_.at(came_[at(index)] & kFromMask);
            path.cells.push_back(cellOf(index));
        }
        std::reverse(path.cells.begin(), path.cells.end());
        return path;
    }

private:
    static constexpr std::uint8_t kDone = 0x80;
    static constexpr std::uint8_t kFromMask = 0x07;

    static std::size_t at(int index) { return static_cast<std::size_t>(index); }
    int indexOf(CellIndex cell) const
    {
        return (cell.row - window_.low.row + 1) * width_ + cell.column - window_.low.column + 1;
    }
    CellIndex cellOf(int index) const
    {
        return {index % width_ - 1 + window_.low.column, index / width_ - 1 + window_.low.row};
    }

    std::vector<std::uint8_t> rimmed(const CostGrid& costs) const
    {
        const int columns = window_.columns();
        std::vector<std::uint8_t> out(at(width_) * at(window_.rows() + 2), 0);
        for (int row = 0; row < window_.rows(); ++row) {
            std::copy_n(costs.cells().begin() + static_cast<std::ptrdiff_t>(row) * columns, columns,
                        out.begin() + static_cast<std::ptrdiff_t>(row + 1) * width_ + 1);
        }
        return out;
    }

    void push(int index, int cost)
    {
        const int rank = cost + (to_ ? octile(cellOf(index), *to_) : 0);
        if (first_) {
            turn_ = at(rank);
            first_ = false;
        }
        ring_[at(rank) % ring_.size()].push_back(index);
        ++waiting_;
    }

    void open(int index)
    {
        const int so_far = known_[at(index)];
        std::array<bool, 4> straight{};
        for (std::size_t i = 0; i < 4; ++i) {
            const int beside = index + steps_[i];
            const int cost = costs_[at(beside)];
            straight[i] = cost != 0;
            if (straight[i]) {
                reach(beside, so_far + cost, i);
            }
        }
        for (std::size_t i = 0; i < 4; ++i) {
            const int beside = index + steps_[i + 4];
            const int cost = costs_[at(beside)];
            if (cost != 0 && straight[i] && straight[(i + 1) % 4]) {
                reach(beside, so_far + cost * 14 / 10, i + 4);
            }
        }
    }

    void reach(int index, int total, std::size_t step)
    {
        if (total < known_[at(index)]) {
            known_[at(index)] = total;
            came_[at(index)] = static_cast<std::uint8_t>(step);
            push(index, total);
        }
    }

    CellWindow window_;
    std::optional<CellIndex> to_;
    int width_;
    std::vector<std::uint8_t> costs_;
    std::vector<int> known_;
    std::vector<std::uint8_t> came_;
    std::array<int, 8> steps_;
    // Wide enough for the dearest diagonal step and the change of the estimate with it.
    std::array<std::vector<int>, 256> ring_;
    std::size_t turn_ = 0;
    std::size_t waiting_ = 0;
    bool first_ = true;
};

}  // namespace

std::optional<GridPath> findPath(const CostGrid& costs, CellIndex from, CellIndex to)
{
    if (!costs.contains(to) || (costs.at(to) == 0 && !(from == to))) {
        return std::nullopt;
    }
    Search search(costs, from, to);
    while (const auto cell = search.next()) {
        if (*cell == to) {
            return search.pathTo(to);
        }
    }
    return std::nullopt;
}

std::optional<GridPath> findNearest(const CostGrid& costs, CellIndex from,
                                    const std::function<bool(CellIndex)>& wanted)
{
    Search search(costs, from, std::nullopt);
    while (const auto cell = search.next()) {
        if (wanted(*cell)) {
            return search.pathTo(*cell);
        }
    }
    return std::nullopt;
}

std::optional<GridPath> findWayCloseTo(const CostGrid& costs, CellIndex from, PointMm to, double radius_mm)
{
    // What can be hoped for: where there is no open cell so near, there is nothing to search.
    constexpr double kEverywhereMm = 1e8;
    const CellWindow around =
        intersection(cellsOf(squareAround(to, std::min(radius_mm, kEverywhereMm))), costs.window());
    double least_mm = std::numeric_limits<double>::infinity();
    for (int row = around.low.row; row < around.end.row; ++row) {
        for (int column = around.low.column; column < around.end.column; ++column) {
            const CellIndex cell{column, row};
            if (costs.at(cell) != 0 || cell == from) {
                least_mm = std::min(least_mm, distance(centreOf(cell), to));
            }
        }
    }
    if (least_mm > radius_mm) {
        return std::nullopt;
    }
    Search search(costs, from, std::nullopt);
    std::optional<CellIndex> best;
    double best_mm = radius_mm;
    while (const auto cell = search.next()) {
        const double away = distance(centreOf(*cell), to);
        if (best ? away < best_mm : away <= best_mm) {
            best = *cell;
            best_mm = away;
            if (best_mm <= least_mm) {
                break;
            }
        }
    }
    return best ? std::optional(search.pathTo(*best)) : std::nullopt;
}

std::size_t countReachable(const CostGrid& costs, CellIndex from, std::size_t enough)
{
    Search search(costs, from, std::nullopt);
    std::size_t count = 0;
    while (count < enough && search.next()) {
        ++count;
    }
    return count;
}

}  // namespace vemra::robot
