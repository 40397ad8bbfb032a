#include "robot/services/slam/place_search.h"

#include <algorithm>
#include <cmath>

#include "robot/geometry/frames.h"
#include "robot/planning/planner.h"
#include "robot/services/maps/grid_maps.h"

namespace vemra::robot {
namespace {

constexpr std::size_t kBeamsOfAView = 90;
constexpr double kNewViewMm = 400;
constexpr std::size_t kMostViews = 4;
constexpr double kMostAwayMm = 4000;
constexpr double kApartMm = 1000;

View viewFrom(Body& body)
{
    const LaserScan& scan = body.scan();
    View view{body.odometry(), {}};
    const std::size_t step = std::max<std::size_t>(1, scan.ranges_mm.size() / kBeamsOfAView);
    for (std::size_t beam = 0; beam < scan.ranges_mm.size(); beam += step) {
        if (scan.ranges_mm[beam]) {
            view.points.push_back(*scan.ranges_mm[beam] * direction(scan.bearing(beam)));
        }
    }
    return view;
}

}  // namespace

void PlaceSearch::begin()
{
    views_.clear();
    points_ = {map_.pose().at};
    sure_.reset();
}

bool PlaceSearch::look(const OccupancyMap& known)
{
    View view = viewFrom(body_);
    // From about the same place it sees the same: the newer view stands for both.
    if (!views_.empty() && distance(views_.back().odometry.at, view.odometry.at) < kNewViewMm) {
        views_.pop_back();
    }
    views_.push_back(std::move(view));
    if (views_.size() > kMostViews) {
        views_.erase(views_.begin());
    }
    const std::vector<PlaceGuess> guesses = PlaceMatcher(known.states(known.window())).search(views_);
    if (const PlaceGuess* sure = PlaceMatcher::sureOf(guesses)) {
        sure_ = *sure;
        sure_odometry_ = views_.back().odometry;
    }
    return sure_.has_value();
}

std::optional<PoseMm> PlaceSearch::pose() const
{
    if (!sure_) {
        return std::nullopt;
    }
    return placed(sure_->pose, seenFrom(sure_odometry_, body_.odometry()));
}

// The farthest place: from there the robot sees what it has not seen yet.
std::optional<PointMm> PlaceSearch::nextPoint()
{
    if (points_.size() > kMostPoints) {
        return std::nullopt;
    }
    const PlanningMap plan = planningMapOf(map_, switches_);
    const PointMm at = map_.pose().at;
    const CellIndex from = cellAt(at);
    std::optional<PointMm> farthest;
    double farthest_mm = 0;
    findNearest(costsFor(plan, from, {.unknown = false}), from, [&](CellIndex cell) {
        const PointMm place = centreOf(cell);
        const double away = distance(place, at);
        const bool apart = std::all_of(points_.begin(), points_.end(),
                                       [place](PointMm other) { return distance(place, other) >= kApartMm; });
        if (isOpenAround(plan, cell) && apart && away <= kMostAwayMm && away > farthest_mm) {
            farthest = place;
            farthest_mm = away;
        }
        return false;
    });
    if (farthest) {
        points_.push_back(*farthest);
    }
    return farthest;
}

}  // namespace vemra::robot
