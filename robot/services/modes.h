#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "leaves/host/host.h"
#include "robot/services/report.h"

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
    FactoryFuncTest = 19,
    FactoryRun = 20,
    SelfTest = 21,
};

/// The name by which the trees know a mode ("AutoCleanMode"); "" for None.
[[nodiscard]] const char* toText(Mode mode);
[[nodiscard]] std::optional<Mode> modeFromText(std::string_view name);

/// Holds the one current mode. A change is asked for by `ChangeRobotModeTo` and comes into force at the
/// beginning of the next frame, or, while the key `RobotModeSwitchLock` is there, of the first frame
/// without it; a later request takes the place of one that waits. `DoesRobotModeChanged` then passes for
/// one run of the steps behind it.
class ModeService
{
public:
    ModeService(BT::Blackboard& blackboard, Report report);

    void install(leaf::LeafHost& host);
    /// The beginning of a frame.
    void update();

    void request(Mode mode);
    /// The mode in force.
    [[nodiscard]] Mode current() const { return current_; }
    [[nodiscard]] bool poweredOff() const { return powered_off_; }
    /// A task tree runs in these modes.
    [[nodiscard]] bool cleaning() const;

private:
    BT::NodeStatus changeTo(BT::TreeNode& node);
    void installDispatch(leaf::LeafHost& host);
    void installDeals(leaf::LeafHost& host);

    BT::Blackboard& blackboard_;
    Report report_;
    Mode current_ = Mode::None;
    std::optional<Mode> requested_;
    bool change_to_tell_ = false;
    bool powered_off_ = false;
};

}  // namespace vemra::robot
