#include "robot/body/dock_receivers.h"

#include <cmath>

namespace vemra::robot {
namespace {

constexpr double kNoise = 0.02;
/// Closer than this a receiver is driven to its limit.
constexpr double kNearestM = 0.05;

}  // namespace

Hearing hear(const DockField& field, const Home& visible, const PoseMm& at, Chance& chance)
{
    Hearing hearing;
    if (distance(at.at, field.emitter()) > DockField::rangeMm(DockSignal::Middle) + kRobotRadiusMm) {
        return hearing;
    }
    for (std::size_t i = 0; i < kReceivers; ++i) {
        const ReceiverView& view = kReceiverViews[i];
        const double axis = at.yaw.value + view.axis_deg;
        const PointMm place = at.at + kRobotRadiusMm * direction({axis});
        Heard& best = hearing[i];
        for (std::size_t way = 0; way < field.ways(); ++way) {
            const auto ray = field.rayBy(way, place, visible);
            if (!ray) {
                continue;
            }
            const PointMm to = ray->from - place;
            const double bearing = degreesOfRadians(std::atan2(to.y, to.x)).value;
            const double off = std::abs(wrapped({bearing - axis}).value);
            const double way_m = std::max(ray->way_mm / 1e3, kNearestM);
            const double strength = std::cos(radians({off})) / (way_m * way_m);
            if (off <= view.half_deg && strength > best.strength) {
                best = {ray->signal, strength};
            }
        }
        if (best.signal == DockSignal::None) {
            continue;
        }
        best.strength *= std::max(0.1, 1 + kNoise * chance.gaussian());
        if (chance.uniform() < field.dropouts()) {
            best = {};
        }
    }
    return hearing;
}

}  // namespace vemra::robot
