#include "robot/services/sensing/sensing_review.h"

#include <algorithm>
#include <utility>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

constexpr double kWireReachMm = 100;
/// What the laser sees this much farther off is another thing.
constexpr double kApartMm = 120;
constexpr double kHalfWidthDeg = 20;
/// Middle of a side arc of the bumper.
constexpr double kSideDeg = 50;
constexpr double kSamePlaceMm = 300;
constexpr std::size_t kPlacesKept = 100;

}  // namespace

void ReviewService::install(leaf::LeafHost& host)
{
    host.condition("SuspectWireDetect", [this](BT::TreeNode&) {
        const auto thing = lowThingAhead();
        return passed(thing && lookAt(*thing));
    });
    host.condition("BlindZoneDetected", [this](BT::TreeNode&) {
        const auto thing = std::exchange(ran_into_, std::nullopt);
        return passed(thing && lookAt(*thing));
    });
}

void ReviewService::update()
{
    const Sides& bumper = parts_.body.bumper();
    if (bumper.any() && !bumped_before_) {
        const Degrees side{bumper.middle || bumper.left == bumper.right ? 0
                           : bumper.left                                ? kSideDeg
                                                                        : -kSideDeg};
        if (laserSeesNothing(side, kRobotRadiusMm + kApartMm)) {
            ran_into_ = besideBody(side, 0);
        }
    }
    bumped_before_ = bumper.any();
}

std::optional<PointMm> ReviewService::lowThingAhead() const
{
    const auto near = parts_.body.nearAhead();
    if (!near || *near > kWireReachMm || !laserSeesNothing({0}, kRobotRadiusMm + *near + kApartMm)) {
        return std::nullopt;
    }
    return besideBody({0}, *near);
}

bool ReviewService::laserSeesNothing(Degrees bearing, double within_mm) const
{
    const auto seen = parts_.body.recentScan().nearest(bearing, {kHalfWidthDeg});
    return !seen || *seen > within_mm;
}

PointMm ReviewService::besideBody(Degrees bearing, double away_mm) const
{
    const PoseMm pose = pose_.pose();
    return pose.at + (kRobotRadiusMm + away_mm) * direction({pose.yaw.value + bearing.value});
}

bool ReviewService::lookAt(PointMm place)
{
    const bool known = std::any_of(looked_at_.begin(), looked_at_.end(),
                                   [place](PointMm other) { return distance(place, other) <= kSamePlaceMm; });
    if (known) {
        return false;
    }
    looked_at_.push_back(place);
    if (looked_at_.size() > kPlacesKept) {
        looked_at_.pop_front();
    }
    return true;
}

}  // namespace vemra::robot
