#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "robot/world/geometry.h"

namespace vemra::robot {

enum class PanelKey : std::uint8_t
{
    Key1,  ///< start
    Key2,  ///< home
    Key1Long,
    Key2Long,
    SetUp,
    Reset  ///< held down
};

struct KeyPress
{
    PanelKey key = PanelKey::Key1;
    std::optional<int> value;  ///< the value that the panel reports, where it is not the key's usual one
};

enum class AppMode : std::uint8_t
{
    Pause,
    Standby,
    Auto,
    BackHome,
    Remote,
    Ota,
    SelectArea,
    DrawArea,
    SelectPoint,
    FastMap
};

struct AreaMm
{
    PointMm low;
    PointMm high;
};

struct AppCommand
{
    AppMode mode = AppMode::Standby;
    bool timed_order = false;
    std::vector<int> rooms;       ///< of SelectArea
    std::vector<AreaMm> areas;    ///< of DrawArea
    std::vector<PointMm> points;  ///< of SelectPoint
};

struct SetBattery
{
    double percent = 0;
};

/// Lifted off the floor, or set down where it is.
struct Lift
{
    bool up = true;
};

struct CarryTo
{
    PoseMm pose;
};

struct PutOnDock
{};

enum class FaultKind : std::uint8_t
{
    Error,
    Warning,
    StationError,
    StationWarning
};

struct Fault
{
    FaultKind kind = FaultKind::Error;
    std::string code;  ///< without the common prefix
    bool raised = true;
};

/// Blackboard keys, written as text in the order of the file.
struct SetKeys
{
    std::vector<std::pair<std::string, std::string>> values;
};

struct EraseKeys
{
    std::vector<std::string> keys;
};

enum class StationPart : std::uint8_t
{
    Cap,    ///< closed
    Bag,    ///< in place
    Block,  ///< the duct is blocked
    Lock,   ///< locked
    Link,   ///< the robot's infrared reaches the station
    Full    ///< the bag is full
};

struct StationChange
{
    std::vector<std::pair<StationPart, bool>> parts;
};

struct ChildLock
{
    bool on = true;
};

struct Annoy
{
    bool on = true;
};

struct FindRobot
{};

struct Wheels
{
    bool dropped = true;
};

enum class Fitting : std::uint8_t
{
    DustBox,
    WaterBox,
    Mop
};

struct FittingChange
{
    Fitting fitting = Fitting::DustBox;
    bool installed = true;
};

using Happening = std::variant<KeyPress, AppCommand, SetBattery, Lift, CarryTo, PutOnDock, Fault, SetKeys,
                               EraseKeys, StationChange, ChildLock, Annoy, FindRobot, Wheels, FittingChange>;

struct ScenarioEvent
{
    std::uint64_t frame = 0;
    Happening what;
    int line = 0;      ///< in the scenario file
    std::string text;  ///< as the time line tells it: "key: start"
};

/// Do-not-disturb time, in frames from the start of the run.
struct AnnoyTime
{
    std::uint64_t from = 0;
    std::uint64_t to = 0;
};

struct StoredMap
{
    bool present = true;
    double check = 0;  ///< what the check of the stored map comes to: 0, 0.5 or -1
};

/// How a run begins. What the file does not say is left open for the services' own defaults.
struct ScenarioStart
{
    bool on_dock = true;
    std::optional<PoseMm> pose;  ///< where the robot stands when it isn't on the dock
    double battery = 80;         ///< percent
    bool child_lock = false;
    std::optional<double> charge_rate;  ///< percent an hour
    std::optional<double> drain_rate;   ///< percent an hour
    std::optional<bool> breakpoint_resume;
    std::optional<AnnoyTime> annoy;
    std::optional<std::uint64_t> parameters_confirmed_after;  ///< frames
    StoredMap map;
};

/// What happens when.
struct Scenario
{
    std::string name;
    std::string about;
    ScenarioStart start;
    std::uint64_t frames = 0;           ///< how long the run lasts
    std::vector<ScenarioEvent> events;  ///< by frame; those of one frame in the order of the file
};

/// Reads a scenario file; scenarios/README.md tells its form. Throws InputError with file, line and what was
/// expected; for a word that is not known, the words that are.
Scenario readScenario(const std::filesystem::path& file);

/// A time as a scenario writes it, in frames: a count of frames ("500") or times with units ("20ms", "12s",
/// "3m", "1h30m"). No value where it is neither, does not fall on a frame, or lies beyond 200 days.
std::optional<std::uint64_t> framesOfText(std::string_view text);

}  // namespace vemra::robot
