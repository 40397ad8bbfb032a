#include "robot/services/escape/escape_path.h"

#include <algorithm>
#include <cmath>

#include "robot/base/clock.h"

namespace vemra::robot {
namespace {

constexpr double kBack = -120;  // mm/s
constexpr double kTurn = 120;   // mm/s of either wheel, on the spot
constexpr double kRock = 200;   // mm/s
constexpr double kWork = 100;   // mm/s

WheelStep straight(double mm_s, int frames)
{
    return {{mm_s, mm_s}, frames};
}

// On the spot, to the left if positive.
WheelStep spin(double mm_s, int frames)
{
    return {{-mm_s, mm_s}, frames};
}

int framesOfTurn(double degrees)
{
    const double rim_mm = radians({degrees}) * BodyConfig{}.track_mm / 2;
    return static_cast<int>(rim_mm / kTurn * 1000 / kFrameMs);
}

// Away from where something is felt: to the right of what is on the left.
double away(const Sides& felt)
{
    return felt.left && !felt.right ? -kTurn : kTurn;
}

std::vector<WheelStep> backAndTurn(int back_frames, double turn_deg, const Sides& felt)
{
    return {straight(kBack, back_frames), spin(away(felt), framesOfTurn(turn_deg))};
}

// Loose by rocking: to and fro, then left and right, harder each time.
std::vector<WheelStep> rock(int rounds)
{
    std::vector<WheelStep> path;
    for (int round = 1; round <= rounds; ++round) {
        const int frames = 15 * round;
        path.push_back(straight(-kRock, frames));
        path.push_back(straight(kRock, frames));
        path.push_back(spin(kRock, frames));
        path.push_back(spin(-kRock, frames));
    }
    path.push_back(straight(kBack, 40));
    return path;
}

// One wheel to and fro, then backwards on both.
std::vector<WheelStep> workWheel(bool left)
{
    const WheelSpeeds forward = left ? WheelSpeeds{kWork, 0} : WheelSpeeds{0, kWork};
    const WheelSpeeds back = left ? WheelSpeeds{-kWork, 0} : WheelSpeeds{0, -kWork};
    return {{back, 40}, {forward, 40}, {back, 40}, {forward, 40}, straight(kBack, 60)};
}

// How far the body gets in a direction before it meets what the laser sees; along a gap as wide as itself
// too.
double freeRun(const LaserScan& scan, double bearing_deg, double most_mm)
{
    constexpr double kHalfBodyMm = kRobotRadiusMm - 15;
    double run = most_mm;
    for (std::size_t beam = 0; beam < scan.ranges_mm.size(); ++beam) {
        if (!scan.ranges_mm[beam]) {
            continue;
        }
        const PointMm point = *scan.ranges_mm[beam] * direction({scan.bearing(beam).value - bearing_deg});
        if (point.x > 0 && std::abs(point.y) < kHalfBodyMm) {
            run = std::min(run, point.x - std::sqrt(kHalfBodyMm * kHalfBodyMm - point.y * point.y));
        }
    }
    return std::max(run, 0.0);
}

}  // namespace

std::vector<WheelStep> escapePath(EscapeKind kind, const Sides& felt)
{
    switch (kind) {
        case EscapeKind::Cliff:
            return {straight(kBack, 80), spin(away(felt), framesOfTurn(90)), straight(kBack, 40)};
        case EscapeKind::Drop:
            // Where backwards does not help forwards may.
            return {straight(kBack * 1.5, 120), straight(-kBack * 1.5, 160), straight(kBack * 1.5, 120)};
        case EscapeKind::Virtual:
            return {straight(kBack, 60), spin(away(felt), framesOfTurn(180))};
        case EscapeKind::Bump:
            // Straight, then wriggling.
            return {straight(kBack, 40),
                    {{kBack, kBack / 3}, 40},
                    {{kBack / 3, kBack}, 40},
                    straight(kBack, 40),
                    spin(away(felt), framesOfTurn(45))};
        case EscapeKind::Immovable:
            return rock(4);
        case EscapeKind::LeftWheelCurrent:
            return workWheel(true);
        case EscapeKind::RightWheelCurrent:
            return workWheel(false);
        case EscapeKind::BrushCurrent:
        case EscapeKind::SideCurrent:
            // Off what the brush has caught.
            return {straight(kBack / 2, 150)};
        case EscapeKind::Gesture:
            return {straight(kBack, 100), straight(-kBack, 50), straight(kBack, 100)};
        case EscapeKind::BumpRepeat:
            return backAndTurn(40, 120, felt);
        case EscapeKind::DropRepeat:
            return backAndTurn(80, 150, felt);
        case EscapeKind::TurnSuffocate:
        case EscapeKind::ForwardSuffocate:
            return rock(2);
        case EscapeKind::LdsBump:
            // Out from under what presses on the cap.
            return {straight(kBack, 100), straight(-kBack, 60), straight(kBack, 100)};
    }
    return {};
}

std::vector<WheelStep> pathIntoTheOpen(const LaserScan& scan, std::size_t turn)
{
    constexpr int kStepDeg = 5;
    constexpr double kFarMm = 1500;
    constexpr double kApartDeg = 60;
    constexpr double kMostRunMm = 700;
    struct Opening
    {
        double bearing;
        double run_mm;
    };
    std::vector<Opening> openings;
    for (int bearing = -180; bearing < 180; bearing += kStepDeg) {
        openings.push_back({static_cast<double>(bearing), freeRun(scan, bearing, kFarMm)});
    }
    std::stable_sort(openings.begin(), openings.end(),
                     [](const Opening& a, const Opening& b) { return a.run_mm > b.run_mm; });
    std::vector<Opening> chosen;
    for (const Opening& opening : openings) {
        const bool apart = std::all_of(chosen.begin(), chosen.end(), [&](const Opening& other) {
            return std::abs(wrapped({opening.bearing - other.bearing}).value) >= kApartDeg;
        });
        if (apart) {
            chosen.push_back(opening);
        }
    }
    const Opening& to = chosen[turn % chosen.size()];
    const double run_mm = std::min(to.run_mm, kMostRunMm);
    return {spin(to.bearing >= 0 ? kTurn : -kTurn, framesOfTurn(std::abs(to.bearing))),
            straight(-kBack, static_cast<int>(run_mm / -kBack * 1000 / kFrameMs))};
}

bool leadsAway(EscapeKind kind)
{
    return kind == EscapeKind::BumpRepeat || kind == EscapeKind::DropRepeat;
}

}  // namespace vemra::robot
