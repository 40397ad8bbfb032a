#include "robot/vocabulary/mode.h"

#include <array>

namespace vemra::robot {
namespace {

/// By number.
constexpr std::array<const char*, 22> kNames{"",
                                             "AutoCleanMode",
                                             "PartCleanMode",
                                             "BackHomeMode",
                                             "SelectAreaCleanMode",
                                             "DrawAreaCleanMode",
                                             "SelectPointCleanMode",
                                             "FastMapBuildMode",
                                             "ChargingMode",
                                             "StandbyMode",
                                             "PauseAndStopMode",
                                             "PowerOffMode",
                                             "ErrRepotMode",
                                             "OtaModeMode",
                                             "SleepMode",
                                             "RemoteCtrlMode",
                                             "FollowWallMode",
                                             "WIFISetMode",
                                             "FactoryMode",
                                             "FactoryFuncTest",
                                             "FctModeMode",
                                             "SelfTestMode"};

}  // namespace

const char* toText(Mode mode)
{
    return kNames.at(static_cast<std::size_t>(mode));
}

std::optional<Mode> modeFromText(std::string_view name)
{
    for (std::size_t i = 0; i < kNames.size(); ++i) {
        if (name == kNames[i])
            return static_cast<Mode>(i);
    }
    return std::nullopt;
}

std::optional<Mode> modeFromNumber(int number)
{
    if (number < 0 || number >= static_cast<int>(kNames.size()))
        return std::nullopt;
    return static_cast<Mode>(number);
}

bool isCleaning(Mode mode)
{
    switch (mode) {
        case Mode::AutoClean:
        case Mode::PartClean:
        case Mode::SelectAreaClean:
        case Mode::DrawAreaClean:
        case Mode::SelectPointClean:
            return true;
        default:
            return false;
    }
}

}  // namespace vemra::robot
