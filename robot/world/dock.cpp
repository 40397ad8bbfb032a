#include "robot/world/dock.h"

#include <fmt/format.h>

#include <array>
#include <cmath>
#include <numbers>

#include "robot/base/input_error.h"
#include "robot/base/number_list.h"
#include "robot/world/reach.h"
#include "robot/world/walls.h"

namespace vemra::robot {
namespace {

constexpr double kWayOutMm = 500;

PointMm before(const Dock& dock, double distance_mm)
{
    return dock.face.at + distance_mm * direction(dock.face.yaw);
}

// An offer that helps where a dock is refused.
std::string proposal(const Home& home)
{
    const auto place = placeDock(home);
    return place ? fmt::format("; --dock {} would do", toText(*place)) : "";
}

}  // namespace

PoseMm dockedPose(const Dock& dock)
{
    return {before(dock, kRobotRadiusMm), wrapped({dock.face.yaw.value + (dock.backwards ? 0 : 180)})};
}

namespace {

// What is wrong with a dock; empty when nothing is.
std::string faultOf(const Home& home, const Dock& dock)
{
    if (!home.contains(home.cellOf(before(dock, Home::kCellMm / 2)))) {
        const PointMm low = home.origin();
        const PointMm high = home.farCorner();
        return fmt::format(
            "lies outside the map: expected x from {:.2f} to {:.2f} m, y from {:.2f} to {:.2f} m",
            low.x / 1e3, high.x / 1e3, low.y / 1e3, high.y / 1e3);
    }
    if (home.at(before(dock, Home::kCellMm / 2)) == CellState::Occupied) {
        return "stands inside a wall or looks into one: expected its face at the wall, looking into the room";
    }
    if (!home.isDiscFree(dockedPose(dock).at, kRobotRadiusMm - Home::kCellMm)) {
        return fmt::format("has no room for the robot: expected {:.0f} mm of free floor before it",
                           2 * kRobotRadiusMm);
    }
    for (int step = 2; step * Home::kCellMm <= kWayOutMm; ++step) {
        if (!home.isDiscFree(before(dock, kRobotRadiusMm + step * Home::kCellMm), kRobotRadiusMm)) {
            return fmt::format("has no way out: expected {:.0f} mm of free floor before the docked robot",
                               kWayOutMm);
        }
    }
    return {};
}

}  // namespace

void checkDock(const Home& home, const Dock& dock, const std::string& file, int line)
{
    if (const std::string fault = faultOf(home, dock); !fault.empty()) {
        throw InputError(file, line, fmt::format("the dock at {} {}{}", toText(dock), fault, proposal(home)));
    }
}

std::optional<Dock> placeDock(const Home& home)
{
    const Reach reach(home, kRobotRadiusMm);
    const int floor = reach.largest();
    if (floor == Reach::kNone) {
        return std::nullopt;
    }
    const auto serves = [&](const Dock& dock) {
        return reach.regionOf(home.cellOf(before(dock, kRobotRadiusMm + kWayOutMm / 2))) == floor;
    };
    // The last steps are for homes with hardly a straight wall: the dock then stands at a corner of the
    // jagged line.
    constexpr std::array<WallNeeds, 5> steps{{
        {600, 1000, 0},
        {600, 1000, 1},
        {600, 1000, 3},
        {400, 700, 3},
        {400, 700, 12},
    }};
    std::optional<Dock> best;
    double longest = 0;
    bool even = true;
    for (const WallNeeds& needs : steps) {
        for (const WallStretch& wall : freeWalls(home, needs)) {
            const Dock dock{{wall.middle, wrapped(wall.looks)}};
            if (wall.length_mm > longest && serves(dock)) {
                best = dock;
                longest = wall.length_mm;
            }
        }
        if (best) {
            break;
        }
        even = false;
    }
    // Where the walls stand at an angle, the face of a column is no match for them.
    constexpr double kClearlyLonger = 1.25;
    longest *= even ? kClearlyLonger : 0;
    for (const WallStretch& wall : slantedWalls(home, steps.front())) {
        if (wall.length_mm <= longest) {
            continue;
        }
        for (double off_mm = 0; off_mm <= Home::kCellMm; off_mm += Home::kCellMm / 10) {
            const Dock dock{{wall.middle + off_mm * direction(wall.looks), wall.looks}};
            if (home.isDiscFree(dockedPose(dock).at, kRobotRadiusMm) && faultOf(home, dock).empty() &&
                serves(dock)) {
                best = dock;
                longest = wall.length_mm;
                break;
            }
        }
    }
    return best;
}

bool canOnlyBeRadians(double yaw)
{
    // Nobody measures a dock's yaw to ten-thousandths of a degree.
    const double thousands = yaw * 1e3;
    return std::abs(yaw) <= 2 * std::numbers::pi + 0.01 && std::abs(thousands - std::round(thousands)) > 1e-6;
}

bool looksLikeRadians(const Dock& dock)
{
    // Docks stand by quarters of a turn.
    const double yaw = dock.face.yaw.value;
    const double eighths = yaw / (std::numbers::pi / 4);
    return canOnlyBeRadians(yaw) || (std::abs(eighths) > 0.5 && std::abs(eighths) < 8.5 &&
                                     std::abs(eighths - std::round(eighths)) < 0.003);
}

Dock parseDock(const std::string& text)
{
    const auto values = numbersOfText(text, 3);
    if (!values) {
        throw InputError(
            "--dock", 0,
            fmt::format("\"{}\": expected X,Y,DEG in metres and degrees, as in 1.25,-0.4,90", text));
    }
    return {{{values->at(0) * 1e3, values->at(1) * 1e3}, wrapped({values->at(2)})}};
}

std::string toText(const Dock& dock)
{
    // Millimetres and hundredths of a degree are as much as is ever said; zeros at the end are not.
    const auto round = [](double value, double unit) { return std::round(value / unit) * unit + 0.0; };
    return fmt::format("{:.10g},{:.10g},{:.10g}", round(dock.face.at.x / 1e3, 1e-3),
                       round(dock.face.at.y / 1e3, 1e-3), round(dock.face.yaw.value, 1e-2));
}

}  // namespace vemra::robot
