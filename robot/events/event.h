#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "robot/vocabulary/escape_kinds.h"
#include "robot/vocabulary/mode.h"

namespace vemra::robot {

/// What can happen in a run, a type each.
namespace event {

struct ModeChange
{
    Mode from;
    Mode to;
};

/// A key of the blackboard that everybody follows has another text.
struct KeyChange
{
    enum class Key : std::uint8_t
    {
        TaskState,
        RobotStatus
    };
    Key key;
    std::string from;
    std::string to;
};

/// The panel shows another light.
struct Light
{
    std::string shown;
};

struct StationLight
{
    std::string shown;
};

struct Music
{
    int number;
    bool interrupt;  ///< it did not wait for what was played before
};

/// A tree says something.
struct Message
{
    std::string text;
};

/// A tree says something of a level.
struct LevelMessage
{
    std::string text;
    std::string level;
};

/// What somebody does to the robot or to its home.
struct UserAct
{
    std::string text;
};

struct DockContact
{
    bool on;
};

/// A final approach to the dock begins.
struct Approach
{
    std::uint64_t number;  ///< from 1, within the run
};

struct BatteryLevel
{
    int percent;
};

struct BatteryEmpty
{};

struct ChargeBegins
{
    std::uint64_t number;  ///< from 1, within the run
    int percent;
};

/// A health code comes or goes.
struct HealthCode
{
    std::string code;
    bool raised;
    bool warning;
};

/// An error of a robot that does not get free.
struct EscapeError
{
    std::string code;
    bool raised;
};

struct StationCode
{
    std::string code;
    bool raised;
    bool warning;
};

/// What the robot is about to do.
struct Motion
{
    std::string text;
    std::string account;  ///< the key that is accounted to; "" for none
};

struct EscapeBegins
{
    EscapeKind kind;
};

struct EscapeEnds
{
    EscapeKind kind;
    bool free;
};

/// The robot tells that it is shut in.
struct TrapReport
{
    std::string text;
    std::string key;  ///< under which the trees told it
};

/// The floor is cleaned once more in the same task.
struct PassBegins
{};

/// A task has ended that is worth a record.
struct CleaningLog
{
    std::string mode;
    int seconds;
    double area_m2;
    bool done;                             ///< it was not broken off
    std::map<std::string, double> way_mm;  ///< by what the way was driven for; "" for all else
};

/// What the scenario expects has not come true.
struct Unmet
{
    std::string text;
    int line;  ///< in its file
};

/// For people, and for scripts that look for `what`: nothing in the program depends on it.
struct Note
{
    using Value = std::variant<bool, std::int64_t, double, std::string, std::vector<std::int64_t>>;

    std::string text;
    std::string what = {};  ///< "map", "slam", ...; "" for what belongs to nothing
    std::vector<std::pair<std::string, Value>> fields = {};
};

}  // namespace event

using Event = std::variant<event::ModeChange, event::KeyChange, event::Light, event::StationLight,
                           event::Music, event::Message, event::LevelMessage, event::UserAct,
                           event::DockContact, event::Approach, event::BatteryLevel, event::BatteryEmpty,
                           event::ChargeBegins, event::HealthCode, event::EscapeError, event::StationCode,
                           event::Motion, event::EscapeBegins, event::EscapeEnds, event::TrapReport,
                           event::PassBegins, event::CleaningLog, event::Unmet, event::Note>;

/// The word under which a log files it: "mode", "task_state", "body", ... Several types share one.
[[nodiscard]] std::string_view kindOf(const Event& event);

/// What a person reads in the time line.
[[nodiscard]] std::string toText(const Event& event);

/// For std::visit: a function for each type, or for all others.
template <class... Functions>
struct Cases : Functions...
{
    using Functions::operator()...;
};
template <class... Functions>
Cases(Functions...) -> Cases<Functions...>;

}  // namespace vemra::robot
