#include "robot/services/dock_signal/dock_bearing.h"

#include <algorithm>
#include <cmath>

#include "robot/body/dock_receivers.h"

namespace vemra::robot {
namespace {

constexpr int kRounds = 6;
constexpr double kLeastCos = 0.05;
constexpr double kMostStep = 0.4;
constexpr double kMostBearing = 1.3;  // radians

struct Logs
{
    double left = 0;
    double right = 0;
};

// The logarithm of a receiver's strength for an emitter at (bearing, distance) from the centre.
double logStrength(double axis_deg, double bearing, double away_m)
{
    const double radius_m = kRobotRadiusMm / 1e3;
    const double axis = radians({axis_deg});
    const double x = away_m * std::cos(bearing) - radius_m * std::cos(axis);
    const double y = away_m * std::sin(bearing) - radius_m * std::sin(axis);
    const double way2 = std::max(x * x + y * y, 1e-4);
    return std::log(std::max(std::cos(std::atan2(y, x) - axis), kLeastCos)) - std::log(way2);
}

Logs logStrengths(double bearing, double log_away)
{
    const double away = std::exp(log_away);
    return {logStrength(kReceiverViews[1].axis_deg, bearing, away),
            logStrength(kReceiverViews[2].axis_deg, bearing, away)};
}

}  // namespace

DockBearing dockBearing(double left_strength, double right_strength)
{
    const double axis = radians({kReceiverViews[1].axis_deg});
    const double balance = (left_strength - right_strength) / (left_strength + right_strength);
    const Logs heard{std::log(left_strength), std::log(right_strength)};
    double bearing = std::atan(balance / std::tan(axis));
    double log_away = std::log(1 / std::sqrt((left_strength + right_strength) / 2) + kRobotRadiusMm / 1e3);
    for (int round = 0; round < kRounds; ++round) {
        const double h = 1e-4;
        const Logs now = logStrengths(bearing, log_away);
        const Logs turned = logStrengths(bearing + h, log_away);
        const Logs further = logStrengths(bearing, log_away + h);
        const double a = (turned.left - now.left) / h;
        const double b = (further.left - now.left) / h;
        const double c = (turned.right - now.right) / h;
        const double d = (further.right - now.right) / h;
        const double determinant = a * d - b * c;
        if (std::abs(determinant) < 1e-9) {
            break;
        }
        const double left = heard.left - now.left;
        const double right = heard.right - now.right;
        bearing += std::clamp((d * left - b * right) / determinant, -kMostStep, kMostStep);
        log_away += std::clamp((a * right - c * left) / determinant, -kMostStep, kMostStep);
        bearing = std::clamp(bearing, -kMostBearing, kMostBearing);
    }
    return {degreesOfRadians(bearing).value, 1e3 * std::exp(log_away)};
}

}  // namespace vemra::robot
