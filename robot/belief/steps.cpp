#include "robot/belief/steps.h"

#include <algorithm>

namespace vemra::robot {
namespace {

// Places nearer than this tell nothing new.
constexpr double kSamePlaceMm = 40;

bool hasWithin(const std::vector<PointMm>& places, PointMm at, double within_mm)
{
    return std::any_of(places.begin(), places.end(),
                       [&](PointMm place) { return distance(place, at) <= within_mm; });
}

}  // namespace

bool StepBook::isOpen(PointMm at) const
{
    return hasWithin(open_, at, kSameStepMm);
}

void StepBook::meet(PointMm at, bool open)
{
    const bool opens = isOpen(at) || (open && !hasWithin(closed_, at, kSameStepMm));
    std::vector<PointMm>& places = opens ? open_ : closed_;
    if (!hasWithin(places, at, kSamePlaceMm)) {
        places.push_back(at);
        ++version_;
    }
}

bool StepBook::openNearest(PointMm from)
{
    const auto nearest = std::min_element(closed_.begin(), closed_.end(), [from](PointMm a, PointMm b) {
        return distance(a, from) < distance(b, from);
    });
    if (nearest == closed_.end()) {
        return false;
    }
    // From place to place along the step.
    std::vector<PointMm> opened{*nearest};
    closed_.erase(nearest);
    for (std::size_t i = 0; i < opened.size(); ++i) {
        const auto beside = std::partition(closed_.begin(), closed_.end(), [&](PointMm place) {
            return distance(place, opened[i]) > kSameStepMm;
        });
        opened.insert(opened.end(), beside, closed_.end());
        closed_.erase(beside, closed_.end());
    }
    open_.insert(open_.end(), opened.begin(), opened.end());
    ++version_;
    return true;
}

void StepBook::reset()
{
    closed_.clear();
    open_.clear();
    ++version_;
}

}  // namespace vemra::robot
