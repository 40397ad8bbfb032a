#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "robot/geometry/points.h"
#include "robot/scenario/expectation.h"
#include "robot/vocabulary/escape_kinds.h"
#include "robot/vocabulary/mode.h"
#include "robot/vocabulary/panel_key.h"

namespace vemra::robot {

struct KeyPress
{
    PanelKey key = PanelKey::Start;
};

struct AreaMm
{
    PointMm low;
    PointMm high;
};

struct AppCommand
{
    Mode mode = Mode::Standby;
    bool timed_order = false;     ///< from the app's timetable, not from a person
    std::vector<int> rooms;       ///< of SelectAreaClean
    std::vector<AreaMm> areas;    ///< of DrawAreaClean
    std::vector<PointMm> points;  ///< of SelectPointClean
    int passes = 1;               ///< over each of them
};

/// An emptying asked for in the app or at the station's button.
struct EmptyNow
{};

/// The app locks or unlocks the panel.
struct AppChildLock
{
    bool on = true;
};

/// The answer of the network to a robot that is being set up.
struct WifiAnswer
{
    bool joined = true;
};

/// A mode entered from outside the trees, by the board or a tester.
struct EnterMode
{
    Mode mode = Mode::SelfTest;
};

enum class SelfTestStep : std::uint8_t
{
    Board,  ///< the next self-test runs by itself
    App,    ///< the app leads the next self-test
    Stop    ///< the app ends it
};

/// The app drives the robot by hand: so fast ahead and to the left, for so long; then it stands.
struct DriveByHand
{
    double forward_mm_s = 0;
    double turn_deg_s = 0;
    std::uint64_t frames = 0;
};

/// From now on the gyro tells so much too much.
struct GyroDrift
{
    double deg_s = 0;
};

/// How SLAM answers a robot that looks for its place, from now on.
enum class SlamMood : std::uint8_t
{
    Normal,
    Unsure,  ///< recognises no place
    Silent   ///< says nothing
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

/// Set down half a metre before the dock.
struct TakeOffDock
{};

/// Gets the robot stuck in a way of escape_kinds.h, or free of it.
struct Stuck
{
    EscapeKind kind = EscapeKind::Bump;
    bool stuck = true;
};

/// The share of the wheels' way that is lost: 0 on a good floor, 1 where they spin.
struct Slip
{
    double share = 0;
};

/// Somebody puts a thing down in the home.
struct PutDown
{
    std::string name;
    AreaMm box;
    bool low = false;   ///< below the laser's plane
    bool step = false;  ///< a sill: the robot can drive over it
};

struct TakeAway
{
    std::string name;
};

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

/// Do-not-disturb time.
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

using Happening = std::variant<KeyPress, AppCommand, EmptyNow, AppChildLock, WifiAnswer, EnterMode,
                               SelfTestStep, DriveByHand, GyroDrift, SlamMood, SetBattery, Lift, CarryTo,
                               Stuck, Slip, PutDown, TakeAway, PutOnDock, TakeOffDock, Fault, SetKeys,
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

/// How the dock of a run is, where it is not as docks are.
struct DockStart
{
    bool exchanged = false;          ///< its left and right emitters are built in the wrong way round
    bool backwards = false;          ///< the robot backs onto it
    std::optional<double> dropouts;  ///< share of a receiver's frames in which it misses the signal
    std::vector<AreaMm> mirrors;     ///< lines from low to high that throw its infrared back
};

struct StoredMap
{
    bool present = true;
    bool known = false;              ///< the robot has it in its head: the home as its laser sees it
    std::vector<PointMm> been = {};  ///< and places where it has been before
    double check = 0;                ///< what the check of the stored map comes to: 0, 0.5 or -1
};

/// How a run begins. What the file does not say is left open for the services' own defaults.
struct ScenarioStart
{
    bool on_dock = true;
    bool lost = false;           ///< it does not know where it is
    std::optional<PoseMm> pose;  ///< where the robot stands when it isn't on the dock
    int pose_line = 0;           ///< in the scenario file
    double battery = 80;         ///< percent
    bool child_lock = false;
    std::optional<double> charge_rate;  ///< percent an hour
    std::optional<double> drain_rate;   ///< percent an hour
    std::optional<bool> breakpoint_resume;
    std::optional<AnnoyTime> annoy;
    std::optional<std::uint64_t> parameters_confirmed_after;  ///< frames
    StoredMap map;
    DockStart dock;
    SetKeys keys;  ///< on the blackboard from the beginning
};

/// What happens when.
struct Scenario
{
    std::string file;
    std::string name;
    std::string about;
    std::string tree;             ///< the tree that is ticked; empty: the whole robot
    std::filesystem::path home;   ///< map of the home; empty: the caller's choice
    std::optional<PointMm> goal;  ///< a way there is searched before the tree is entered
    ScenarioStart start;
    std::uint64_t frames = 0;               ///< how long the run lasts
    std::vector<ScenarioEvent> events;      ///< by frame; those of one frame in the order of the file
    std::vector<Expectation> expectations;  ///< by their first frame, likewise
};

/// Reads a scenario file; scenarios/README.md tells its form. Throws InputError with file, line and what was
/// expected; for a word that is not known, the words that are.
Scenario readScenario(const std::filesystem::path& file);

/// A time as a scenario writes it, in frames: a count of frames ("500") or times with units ("20ms", "12s",
/// "3m", "1h30m"). No value where it is neither, does not fall on a frame, or lies beyond 200 days.
std::optional<std::uint64_t> framesOfText(std::string_view text);

}  // namespace vemra::robot
