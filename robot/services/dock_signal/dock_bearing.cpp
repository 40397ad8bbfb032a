#include "robot/services/dock_signal/dock_bearing.h"

#include <algorithm>
#include <cmath>

#include "robot/body/dock_receivers.h"

namespace vemra::robot {
namespace {

constexpr int kRounds = 6;
constexpr double kCloseEnough = 1e-7;
constexpr double kLeastCos = 0.05;
constexpr double kMostStep = 0.4;
constexpr double kMostBearing = 1.3;  // radians

/// The logarithm of a receiver's strength and how it changes with the bearing of the emitter from the centre
/// and with the logarithm of its distance.
struct LogStrength
{
    double value = 0;
    double by_bearing = 0;
    double by_log_away = 0;
};

// A receiver sits on the casing and looks outwards along its axis.
class ReceiverModel
{
public:
    explicit ReceiverModel(double axis_deg)
        : cos_(std::cos(radians({axis_deg}))), sin_(std::sin(radians({axis_deg})))
    {}

    // The strength is the cosine of the angle off the axis over the square of the way. (emitter: metres from
    // the centre.)
    [[nodiscard]] LogStrength hears(PointMm emitter) const
    {
        constexpr double kRadiusM = kRobotRadiusMm / 1e3;
        const double x = emitter.x - kRadiusM * cos_;
        const double y = emitter.y - kRadiusM * sin_;
        const double way2 = std::max(x * x + y * y, 1e-4);
        const double along = x * cos_ + y * sin_;
        const bool aside = along < kLeastCos * std::sqrt(way2);
        // Far off its axis a receiver is taken to hear a twentieth, whatever the angle.
        const double x_slope = aside ? -2 * x / way2 : cos_ / along - 3 * x / way2;
        const double y_slope = aside ? -2 * y / way2 : sin_ / along - 3 * y / way2;
        return {aside ? std::log(kLeastCos / way2) : std::log(along / (way2 * std::sqrt(way2))),
                y_slope * emitter.x - x_slope * emitter.y, x_slope * emitter.x + y_slope * emitter.y};
    }

private:
    double cos_;
    double sin_;
};

}  // namespace

DockBearing dockBearing(double left_strength, double right_strength)
{
    const ReceiverModel left_model(kReceiverViews[1].axis_deg);
    const ReceiverModel right_model(kReceiverViews[2].axis_deg);
    const double balance = (left_strength - right_strength) / (left_strength + right_strength);
    const double left_heard = std::log(left_strength);
    const double right_heard = std::log(right_strength);
    double bearing = std::atan(balance / std::tan(radians({kReceiverViews[1].axis_deg})));
    double log_away = std::log(1 / std::sqrt((left_strength + right_strength) / 2) + kRobotRadiusMm / 1e3);
    for (int round = 0; round < kRounds; ++round) {
        const double away = std::exp(log_away);
        const PointMm emitter{away * std::cos(bearing), away * std::sin(bearing)};
        const LogStrength left = left_model.hears(emitter);
        const LogStrength right = right_model.hears(emitter);
        const double determinant = left.by_bearing * right.by_log_away - left.by_log_away * right.by_bearing;
        if (std::abs(determinant) < 1e-9) {
            break;
        }
        const double left_off = left_heard - left.value;
        const double right_off = right_heard - right.value;
        const double turn = (right.by_log_away * left_off - left.by_log_away * right_off) / determinant;
        const double further = (left.by_bearing * right_off - right.by_bearing * left_off) / determinant;
        bearing = std::clamp(bearing + std::clamp(turn, -kMostStep, kMostStep), -kMostBearing, kMostBearing);
        log_away += std::clamp(further, -kMostStep, kMostStep);
        if (std::abs(turn) < kCloseEnough && std::abs(further) < kCloseEnough) {
            break;
        }
    }
    return {degreesOfRadians(bearing).value, 1e3 * std::exp(log_away)};
}

}  // namespace vemra::robot
