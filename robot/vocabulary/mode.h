#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vemra::robot {

/// The robot's modes. The numbers are those of the key `LastRobotMode`.
enum class Mode : std::uint8_t
{
    None = 0,  ///< before the start-up has chosen one
    AutoClean = 1,
    PartClean = 2,
    BackHome = 3,
    SelectAreaClean = 4,
    DrawAreaClean = 5,
    SelectPointClean = 6,
    FastMapBuild = 7,
    Charging = 8,
    Standby = 9,
    PauseAndStop = 10,
    PowerOff = 11,
    ErrRepot = 12,
    Ota = 13,
    Sleep = 14,
    RemoteCtrl = 15,
    FollowWall = 16,
    WifiSet = 17,
    Factory = 18,
    FactoryRun = 19,  ///< the self-test run on the factory floor
    BoardTest = 20,   ///< a test of the board alone: no tree belongs to it
    SelfTest = 21,
};

/// The name by which the trees know a mode ("AutoCleanMode"); "" for None.
[[nodiscard]] const char* toText(Mode mode);
[[nodiscard]] std::optional<Mode> modeFromText(std::string_view name);
/// The mode of a number of `LastRobotMode`.
[[nodiscard]] std::optional<Mode> modeFromNumber(int number);

/// A task runs in these modes.
[[nodiscard]] bool isCleaning(Mode mode);

}  // namespace vemra::robot
