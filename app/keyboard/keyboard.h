#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "app/keyboard/key_terminal.h"
#include "robot/host/robot.h"

namespace vemra::app {

/// Drives the robot from the keys of the terminal, in the time of the clock on the wall, and shows what the
/// robot knows around it. A key that is held down drives on; half a second after the last one it stands.
class Keyboard
{
public:
    /// Throws UserError where there is no terminal.
    Keyboard() = default;

    /// The beginning of a frame: waits for its time, takes what was typed, and shows where the robot is.
    void frame(robot::Robot& robot);
    /// The user has had enough, or the program is to end.
    [[nodiscard]] bool isToEnd() const { return quit_ || terminal_.isToEnd(); }

private:
    using Clock = std::chrono::steady_clock;

    void type(robot::Robot& robot, std::string_view key);
    void drive(robot::Robot& robot, double forward_m_s, double turn_deg_s);
    void show(const robot::Robot& robot) const;

    KeyTerminal terminal_;
    Clock::time_point due_ = Clock::now();
    bool quit_ = false;
    std::uint64_t driven_until_ = 0;  ///< frame
    double forward_m_s_ = 0;
    double turn_deg_s_ = 0;
};

/// What the robot knows around it, as lines of text: walls `#`, floor `.`, what was not seen blank, the robot
/// the head of an arrow in the middle. A character is 100 mm wide and 200 mm high; up is y.
[[nodiscard]] std::string textMap(const robot::Robot& robot, int columns, int rows);

}  // namespace vemra::app
