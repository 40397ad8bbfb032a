#include "app/keyboard/keyboard.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "robot/base/clock.h"
#include "robot/events/timeline_printer.h"

namespace vemra::app {
namespace {

using robot::Mode;
using robot::Robot;

constexpr std::chrono::milliseconds kFrame{robot::kFrameMs};
/// A key repeats itself after half a second at the latest.
constexpr std::uint64_t kDriveFrames = 30;
constexpr std::uint64_t kShowEvery = 5;
constexpr double kForward = 0.25;
constexpr double kTurn = 60;
constexpr double kArcTurn = 40;

struct DriveKey
{
    std::string_view key;
    double forward_m_s;
    double turn_deg_s;
};

constexpr std::array<DriveKey, 13> kDriveKeys{{{"\033[A", kForward, 0},
                                               {"\033[B", -kForward, 0},
                                               {"\033[C", 0, -kTurn},
                                               {"\033[D", 0, kTurn},
                                               {"w", kForward, 0},
                                               {"s", -kForward, 0},
                                               {"d", 0, -kTurn},
                                               {"a", 0, kTurn},
                                               {"q", kForward, kArcTurn},
                                               {"e", kForward, -kArcTurn},
                                               {"y", -kForward, -kArcTurn},
                                               {"c", -kForward, kArcTurn},
                                               {" ", 0, 0}}};

constexpr char kHelp[] =
    "arrows or w a s d: drive   q e: ahead in an arc   y c: back in one   space: stand\r\n"
    "1: start key   2: home key   p: pause   x: end";

robot::AppCommand commandFor(Mode mode)
{
    robot::AppCommand command;
    command.mode = mode;
    return command;
}

void happen(Robot& robot, robot::Happening what, std::string text)
{
    robot.happen({.frame = robot.frame(), .what = std::move(what), .line = 0, .text = std::move(text)});
}

/// The first key of what was typed; those of three bytes begin with an escape.
std::string_view firstKey(std::string_view typed)
{
    constexpr std::size_t kArrowBytes = 3;
    return typed.substr(0, typed.starts_with("\033[") ? kArrowBytes : 1);
}

char charOf(const Robot& robot, robot::PointMm low, double width_mm, double height_mm)
{
    constexpr double kCell = robot::Home::kCellMm;
    bool seen = false;
    for (double y = kCell / 2; y < height_mm; y += kCell)
        for (double x = kCell / 2; x < width_mm; x += kCell) {
            const robot::CellState state = robot.onItsMap({low.x + x, low.y + y});
            if (state == robot::CellState::Occupied)
                return '#';
            seen = seen || state == robot::CellState::Free;
        }
    return seen ? '.' : ' ';
}

char arrowOf(robot::Degrees yaw)
{
    constexpr std::string_view kHeads = ">^<v";
    const double turned = robot::wrapped({yaw.value - 45}).value + 180;
    // 45 to 135 degrees is up, and so on round.
    constexpr std::array<std::size_t, 4> kQuarters{3, 0, 1, 2};
    return kHeads[kQuarters[static_cast<std::size_t>(turned / 90) % 4]];
}

}  // namespace

std::string textMap(const Robot& robot, int columns, int rows)
{
    constexpr double kWidth = 100;
    constexpr double kHeight = 200;
    const robot::PoseMm pose = robot.believedPose();
    std::string map;
    for (int row = rows - 1; row >= 0; --row) {
        for (int column = 0; column < columns; ++column) {
            const int right = column - columns / 2;
            const int up = row - rows / 2;
            const robot::PointMm low = pose.at + robot::PointMm{kWidth * (right - 0.5), kHeight * (up - 0.5)};
            const bool here = right == 0 && up == 0;
            map += here ? arrowOf(pose.yaw) : charOf(robot, low, kWidth, kHeight);
        }
        map += "\033[K\r\n";
    }
    return map;
}

void Keyboard::drive(Robot& robot, double forward_m_s, double turn_deg_s)
{
    const std::uint64_t now = robot.frame();
    const bool same = forward_m_s == forward_m_s_ && turn_deg_s == turn_deg_s_;
    // A key that is held down is told again before its order ends, and not thirty times a second.
    if (same && now + kDriveFrames / 2 < driven_until_)
        return;
    if (robot.state().modes.current() != Mode::RemoteCtrl && now >= driven_until_)
        happen(robot, commandFor(Mode::RemoteCtrl), "app: remote");
    happen(robot, robot::DriveByHand{1e3 * forward_m_s, turn_deg_s, kDriveFrames},
           fmt::format("drive: [{}, {}]", forward_m_s, turn_deg_s));
    driven_until_ = now + kDriveFrames;
    forward_m_s_ = forward_m_s;
    turn_deg_s_ = turn_deg_s;
}

void Keyboard::type(Robot& robot, std::string_view key)
{
    const auto drives = std::find_if(kDriveKeys.begin(), kDriveKeys.end(),
                                     [key](const DriveKey& known) { return known.key == key; });
    if (drives != kDriveKeys.end())
        drive(robot, drives->forward_m_s, drives->turn_deg_s);
    else if (key == "1")
        happen(robot, robot::KeyPress{robot::PanelKey::Start}, "key: start");
    else if (key == "2")
        happen(robot, robot::KeyPress{robot::PanelKey::Home}, "key: home");
    else if (key == "p")
        happen(robot, commandFor(Mode::PauseAndStop), "app: pause");
    else
        quit_ = quit_ || key == "x";
}

void Keyboard::frame(Robot& robot)
{
    due_ += kFrame;
    // A computer that is too slow for a frame does not make up for it later.
    due_ = std::max(due_, Clock::now());
    const std::string typed = terminal_.read(due_);
    for (std::string_view rest = typed; !rest.empty();) {
        const std::string_view key = firstKey(rest);
        type(robot, key);
        rest.remove_prefix(key.size());
    }
    if (robot.frame() % kShowEvery == 0)
        show(robot);
}

void Keyboard::show(const Robot& robot) const
{
    constexpr int kOtherRows = 4;
    const KeyTerminal::Size size = terminal_.size();
    const robot::PointMm at = robot.believedPose().at;
    std::string text = textMap(robot, std::max(1, size.columns - 1), std::max(1, size.rows - kOtherRows));
    text += fmt::format("{}   {}, battery {:.0f} %, at {:.2f}, {:.2f} m{}\033[K\r\n{}",
                        robot::timeOfFrame(robot.frame()).substr(0, 7), toText(robot.state().modes.current()),
                        robot.state().battery_percent, at.x / 1e3, at.y / 1e3,
                        robot.body().bumper().any() ? ", bump" : "", kHelp);
    terminal_.show(text);
}

}  // namespace vemra::app
