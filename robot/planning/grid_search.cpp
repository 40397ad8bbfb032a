#include "robot/planning/grid_search.h"

#include <array>
#include <limits>

namespace vemra::robot {
namespace {

constexpr int kUnseen = std::numeric_limits<int>::max();

struct Step
{
    int column;
    int row;
};
constexpr std::array<Step, 8> kSteps = {
    {{1, 0}, {0, 1}, {-1, 0}, {0, -1}, {1, 1}, {-1, 1}, {-1, -1}, {1, -1}}};

int octile(CellIndex a, CellIndex b)
{
    const int dx = std::abs(a.column - b.column);
    const int dy = std::abs(a.row - b.row);
    return kPlainStep * std::max(dx, dy) + 4 * std::min(dx, dy);
}

// One search over a cost grid. Costs are small whole numbers, so that the queue is a ring of buckets
// (Dial 1969).
class Search
{
public:
    Search(const CostGrid& costs, CellIndex from, std::optional<CellIndex> to)
        : costs_(costs),
          window_(costs.window()),
          to_(to),
          known_(window_.cells(), kUnseen),
          came_(known_.size())
    {
        if (window_.contains(from)) {
            known_[window_.indexOf(from)] = 0;
            push(from, 0);
        }
    }

    // The next cell in the order of costs; nothing when all are done.
    std::optional<CellIndex> next()
    {
        while (waiting_ > 0) {
            auto& bucket = ring_[at_ % ring_.size()];
            if (bucket.empty()) {
                ++at_;
                continue;
            }
            const std::size_t index = bucket.back();
            bucket.pop_back();
            --waiting_;
            if ((came_[index] & kDone) != 0) {
                continue;
            }
            came_[index] |= kDone;
            const CellIndex cell = window_.cellOf(index);
            open(cell, index);
            return cell;
        }
        return std::nullopt;
    }

    GridPath pathTo(CellIndex cell) const
    {
        GridPath path;
        path.cost = known_[window_.indexOf(cell)];
        path.cells.push_back(cell);
        while (known_[window_.indexOf(cell)] != 0) {
            const Step& step = kSteps[came_[window_.indexOf(cell)] & kFromMask];
            cell = {cell.column - step.column, cell.row - step.row};
            path.cells.push_back(cell);
        }
        std::reverse(path.cells.begin(), path.cells.end());
        return path;
    }

private:
    static constexpr std::uint8_t kDone = 0x80;
    static constexpr std::uint8_t kFromMask = 0x07;

    void push(CellIndex cell, int cost)
    {
        const int rank = cost + (to_ ? octile(cell, *to_) : 0);
        if (first_) {
            at_ = static_cast<std::size_t>(rank);
            first_ = false;
        }
        ring_[static_cast<std::size_t>(rank) % ring_.size()].push_back(window_.indexOf(cell));
        ++waiting_;
    }

    void open(CellIndex cell, std::size_t index)
    {
        const int so_far = known_[index];
        for (std::size_t i = 0; i < kSteps.size(); ++i) {
            const Step& step = kSteps[i];
            const CellIndex beside{cell.column + step.column, cell.row + step.row};
            const int cost = costs_.at(beside);
            if (cost == 0) {
                continue;
            }
            const bool diagonal = i >= 4;
            if (diagonal && (costs_.at({cell.column + step.column, cell.row}) == 0 ||
                             costs_.at({cell.column, cell.row + step.row}) == 0)) {
                continue;
            }
            const int total = so_far + (diagonal ? cost * 14 / 10 : cost);
            const std::size_t there = window_.indexOf(beside);
            if (total < known_[there]) {
                known_[there] = total;
                came_[there] = static_cast<std::uint8_t>(i);
                push(beside, total);
            }
        }
    }

    const CostGrid& costs_;
    CellWindow window_;
    std::optional<CellIndex> to_;
    std::vector<int> known_;
    std::vector<std::uint8_t> came_;
    // Wide enough for the dearest diagonal step and the change of the estimate with it.
    std::array<std::vector<std::size_t>, 256> ring_;
    std::size_t at_ = 0;
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
    Search search(costs, from, std::nullopt);
    std::optional<CellIndex> best;
    double best_mm = radius_mm;
    while (const auto cell = search.next()) {
        const double away = distance(centreOf(*cell), to);
        if (best ? away < best_mm : away <= best_mm) {
            best = *cell;
            best_mm = away;
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
