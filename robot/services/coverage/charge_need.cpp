#include "robot/services/coverage/charge_need.h"

#include <algorithm>
#include <cmath>

namespace vemra::robot {
namespace {

/// A clean goes home at 16 percent, and the way there takes some too.
constexpr double kKept = 20;
constexpr double kLeast = 40;
constexpr double kFull = 100;
/// What a square metre takes before the task has shown it, and how much floor it takes to show.
constexpr double kFirstPerM2 = 0.8;
constexpr double kShownM2 = 3;
constexpr double kSpare = 1.1;

}  // namespace

void ChargeNeed::follow(double battery_percent, double swept_m2)
{
    if (swept_m2 < swept_m2_)
        spent_percent_ = 0;
    swept_m2_ = swept_m2;
    spent_percent_ += std::max(0.0, battery_percent_.value_or(battery_percent) - battery_percent);
    battery_percent_ = battery_percent;
}

int ChargeNeed::forFloor(double left_m2) const
{
    const double per_m2 = swept_m2_ < kShownM2 ? kFirstPerM2 : spent_percent_ / swept_m2_;
    return static_cast<int>(std::lround(std::clamp(kKept + kSpare * per_m2 * left_m2, kLeast, kFull)));
}

}  // namespace vemra::robot
