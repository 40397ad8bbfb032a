#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <utility>

#include "robot/vocabulary/mode.h"

namespace vemra::robot {

/// The one current mode and the change that is asked for.
class ModeSwitch
{
public:
    /// A later request takes the place of one that waits. The first of all is in force at once: there is no
    /// mode to end.
    void request(Mode mode)
    {
        requested_ = mode;
        if (current_ == Mode::None)
            update(false);
    }
    /// The beginning of a frame: a request comes into force, unless changes are locked.
    void update(bool locked)
    {
        if (!requested_ || locked)
            return;
        const Mode next = *std::exchange(requested_, std::nullopt);
        if (next == current_)
            return;
        current_ = next;
        ++changes_;
    }

    [[nodiscard]] Mode current() const { return current_; }
    /// How often the mode has changed.
    [[nodiscard]] std::uint64_t changes() const { return changes_; }

private:
    Mode current_ = Mode::None;
    std::optional<Mode> requested_;
    std::uint64_t changes_ = 0;
};

/// What the robot feels of its dock: the charging contacts, and the frames in which they are made and lost.
class DockContacts
{
public:
    /// The beginning of a frame: do the contacts touch? A robot that comes up on its dock has not just
    /// landed.
    void update(bool touching)
    {
        before_ = first_ ? touching : touching_;
        touching_ = touching;
        first_ = false;
    }

    [[nodiscard]] bool touching() const { return touching_; }
    [[nodiscard]] bool justTouched() const { return touching_ && !before_; }
    [[nodiscard]] bool justLost() const { return !touching_ && before_; }

private:
    bool touching_ = false;
    bool before_ = false;
    bool first_ = true;
};

/// What more than one service needs to know. The host brings it up to date before the services' update(), so
/// that their order does not matter.
struct RobotState
{
    std::uint64_t frame = 0;
    ModeSwitch modes;
    DockContacts contacts;
    double battery_percent = 0;                 ///< the power service's
    bool powered_off = false;                   ///< the mode service's: the run is over
    bool brushes_on = false;                    ///< the cleaning system's
    bool fan_on = false;                        ///< the cleaning system's
    bool laser_on = true;                       ///< the cleaning system's
    bool quiet_hours = false;                   ///< do-not-disturb time; the command service's
    std::set<std::string, std::less<>> errors;  ///< health codes without their prefix; the health service's
};

}  // namespace vemra::robot
