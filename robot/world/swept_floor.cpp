#include "robot/world/swept_floor.h"

#include <algorithm>
#include <cmath>
#include <deque>

#include "robot/world/distances.h"
#include "robot/world/dock.h"
#include "robot/world/sweeping.h"

namespace vemra::robot {
namespace {

constexpr std::uint32_t kAgainAfter = 10;  // tenths of a metre
constexpr double kTenthMm = 100;
constexpr double kSpareMm = 5;

// 10 mm, coarser where a home is so large that this takes hundreds of megabytes.
double rasterOf(const Home& home)
{
    constexpr double kMost = 4e7;
    const double cells = static_cast<double>(home.columns()) * home.rows();
    for (const double edge : {10.0, 25.0}) {
        const double per = Home::kCellMm / edge;
        if (cells * per * per <= kMost) {
            return edge;
        }
    }
    return Home::kCellMm;
}

}  // namespace

SweptFloor::SweptFloor(const Home& home)
    : home_(home),
      cell_mm_(rasterOf(home)),
      columns_(static_cast<int>(std::lround(home.columns() * Home::kCellMm / cell_mm_))),
      rows_(static_cast<int>(std::lround(home.rows() * Home::kCellMm / cell_mm_))),
      swept_at_(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_)),
      first_in_(swept_at_.size(), kNever),
      swept_again_(swept_at_.size()),
      again_in_pass_(swept_at_.size())
{}

PointMm SweptFloor::centreOf(std::size_t index) const
{
    const auto width = static_cast<std::size_t>(columns_);
    const std::size_t row = index / width;
    return home_.origin() + PointMm{(static_cast<double>(index % width) + 0.5) * cell_mm_,
                                    (static_cast<double>(row) + 0.5) * cell_mm_};
}

void SweptFloor::sweepAt(std::uint32_t frame, const PoseMm& pose)
{
    const auto now = static_cast<std::uint32_t>(driven_mm_ / kTenthMm) + 1;
    forSweptPoints(pose, cell_mm_ / 2, [&](PointMm point) {
        const PointMm in = point - home_.origin();
        const int column = static_cast<int>(std::floor(in.x / cell_mm_));
        const int row = static_cast<int>(std::floor(in.y / cell_mm_));
        if (column < 0 || row < 0 || column >= columns_ || row >= rows_) {
            return;
        }
        const std::size_t index = static_cast<std::size_t>(row) * static_cast<std::size_t>(columns_) +
                                  static_cast<std::size_t>(column);
        const auto again = [index](std::vector<bool>& marks, std::uint64_t& count) {
            count += marks[index] ? 0U : 1U;
            marks[index] = true;
        };
        if (swept_at_[index] != 0) {
            if (now - swept_at_[index] >= kAgainAfter) {
                again(swept_again_, again_);
                again(again_in_pass_, pass_again_);
            }
        } else if (isSwept(index)) {
            again(swept_again_, again_);
            ++pass_count_;
        } else if (home_.at(point) == CellState::Free) {
            ++count_;
            ++pass_count_;
            first_in_[index] = frame;
        } else {
            return;
        }
        swept_at_[index] = now;
    });
}

void SweptFloor::beginPass()
{
    std::fill(swept_at_.begin(), swept_at_.end(), 0);
    std::fill(again_in_pass_.begin(), again_in_pass_.end(), false);
    pass_count_ = 0;
    pass_again_ = 0;
}

void SweptFloor::follow(const PoseMm& pose, bool brushes_on, std::uint64_t frame)
{
    const PoseMm from = last_.value_or(pose);
    if (last_ && *last_ == pose) {
        return;
    }
    last_ = pose;
    driven_mm_ += distance(from.at, pose.at) > kCarriedMm ? 0 : distance(from.at, pose.at);
    if (brushes_on) {
        forPosesBetween(from, pose, cell_mm_,
                        [&](const PoseMm& between) { sweepAt(static_cast<std::uint32_t>(frame), between); });
    }
}

// A gap as wide as the body lets it through on paper only.
std::vector<bool> SweptFloor::reachable(PointMm from) const
{
    std::vector<bool> blocked(swept_at_.size());
    std::vector<bool> open(swept_at_.size());
    for (std::size_t i = 0; i < open.size(); ++i) {
        const CellState state = home_.at(centreOf(i));
        open[i] = state == CellState::Free;
        blocked[i] = state != CellState::Free;
    }
    // The middle of the body keeps its radius from the nearest edge; edges lie half a cell before middles.
    const std::vector<float> to_blocked = squaredDistancesTo(blocked, columns_, rows_);
    const double needed = (kRobotRadiusMm + kSpareMm) / cell_mm_ + 0.5 - 1e-3;
    const auto stands = [&](std::size_t i) { return to_blocked[i] >= needed * needed; };

    std::vector<bool> reached(open.size());
    std::deque<std::size_t> front;
    // The start is believed to within a body's width: a docked robot touches what is behind the dock.
    for (std::size_t i = 0; i < open.size(); ++i) {
        if (stands(i) && distance(centreOf(i), from) <= kRobotRadiusMm) {
            reached[i] = true;
            front.push_back(i);
        }
    }
    const auto width = static_cast<std::size_t>(columns_);
    while (!front.empty()) {
        const std::size_t i = front.front();
        front.pop_front();
        const auto visit = [&](std::size_t next) {
            if (!reached[next] && stands(next)) {
                reached[next] = true;
                front.push_back(next);
            }
        };
        if (i % width > 0)
            visit(i - 1);
        if (i % width + 1 < width)
            visit(i + 1);
        if (i >= width)
            visit(i - width);
        if (i + width < open.size())
            visit(i + width);
    }
    const std::vector<float> to_reached = squaredDistancesTo(reached, columns_, rows_);
    const double sweep = kSweepReachMm / cell_mm_;
    for (std::size_t i = 0; i < open.size(); ++i) {
        open[i] = open[i] && to_reached[i] <= sweep * sweep;
    }
    return open;
}

template <class Done>
SweptFloor::Share SweptFloor::shareOfFloor(const std::vector<bool>& floor, const Done& done) const
{
    std::uint64_t all = 0;
    std::uint64_t cleaned = 0;
    for (std::size_t i = 0; i < floor.size(); ++i) {
        all += floor[i] ? 1U : 0U;
        cleaned += floor[i] && done(i) ? 1U : 0U;
    }
    return {areaOf(all), areaOf(cleaned)};
}

SweptFloor::Share SweptFloor::shareOf(PointMm from, const std::optional<BoxMm>& box) const
{
    std::vector<bool> floor = reachable(from);
    for (std::size_t i = 0; box && i < floor.size(); ++i)
        floor[i] = floor[i] && contains(*box, centreOf(i));
    return shareOfFloor(floor, [this](std::size_t i) { return isSwept(i); });
}

SweptFloor::Share SweptFloor::passShareOf(PointMm from) const
{
    return shareOfFloor(reachable(from), [this](std::size_t i) { return swept_at_[i] != 0; });
}

std::vector<std::optional<std::uint64_t>> SweptFloor::sweptBy(PointMm from,
                                                              const std::vector<double>& shares) const
{
    const std::vector<bool> floor = reachable(from);
    std::vector<std::uint32_t> frames;
    std::size_t all = 0;
    for (std::size_t i = 0; i < floor.size(); ++i) {
        all += floor[i] ? 1U : 0U;
        if (floor[i] && isSwept(i)) {
            frames.push_back(first_in_[i]);
        }
    }
    std::sort(frames.begin(), frames.end());
    std::vector<std::optional<std::uint64_t>> by;
    for (const double share : shares) {
        const auto needed = static_cast<std::size_t>(std::ceil(share * static_cast<double>(all)));
        by.push_back(needed > 0 && needed <= frames.size() ? std::optional<std::uint64_t>(frames[needed - 1])
                                                           : std::nullopt);
    }
    return by;
}

std::vector<PointMm> SweptFloor::missed(PointMm from) const
{
    const std::vector<bool> floor = reachable(from);
    std::vector<PointMm> places;
    for (std::size_t i = 0; i < floor.size(); ++i) {
        if (floor[i] && !isSwept(i)) {
            places.push_back(centreOf(i));
        }
    }
    return places;
}

}  // namespace vemra::robot
