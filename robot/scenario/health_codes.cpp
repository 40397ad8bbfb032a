#include "robot/scenario/health_codes.h"

namespace vemra::robot {
namespace {

constexpr std::string_view kRobotErrors[] = {
    "DROP",
    "MOP_CHECK",
    "CLIFF",
    "I_LDS_ERROR",
    "I_LDS_BUMPER",
    "I_FAN_SPEED",
    "CHARGE_FAULT",
    "BATTERY_FAULT",
    "BOX",
    "HEAP_CHECK",
    "I_LEFTWHELL_SPEED",
    "LEFT_WHEEL_MOTOR",
    "I_RIGHTWHELL_SPEED",
    "RIGHT_WHEEL_MOTOR",
    "BUMPER",
    "GESTURE",
    "STRONG_MAGNET",
    "FOLLOWSIDE",
    "TRAP",
    "BRUSH",
    "SIDEBRUSH",
    "TANKBOX",
    "CARPET_WATEBOX_START",
    "TOF_OFFLINE",
    "CAMERA_FAULT",
    "CHARGE_FAULT_BOARD",
    "HEART",
    "TURN_SUFFOCATE",
    "FORWARD_SUFFOCATE",
    "PATH_CLOSEDOORSTUCK",
    "CANNOTREACH_OUTRANGSTUCK",
    "CANNOTOUT_INVIRTUALWALLSTUCK",
    "BATTERY_VERY_LOW",
};

constexpr std::string_view kRobotWarnings[] = {
    "I_LDS_ERROR",
    "HEAP_CHECK",
    "CANNOTREACH_OBSTACLESTUCK",
    "CANNOTREACH_VIRTUALWALLSTUCK",
    "CANNOTOUT_INVIRTUALWALLSTUCK",
    "FLOW_SHIELDING",
    "CHARGE_FAULT",
};

constexpr std::string_view kStationErrors[] = {
    "DUST_LOCK",
    "DUST_BLOCK",
    "DUST_BAG",
    "DUST_CAP",
    "CLEAN_WATERTANK_NOTINSTALLED",
    "DIRT_WATERTANK_NOTINSTALLED",
    "CLEAN_WATERTANK_NOWATER",
    "DIRT_WATERTANK_FULL",
    "DIRT_WATER_BLOCKING",
    "DIRT_WATER_PUMP",
    "WASHDISH_NOTINSTALLED",
    "WASHDISH_WATERLEVE",
};

constexpr std::string_view kStationWarnings[] = {
    "DUST_BLOCK",
    "DUST_FULL",
    "WASHDISH_WATERLEVE",
};

}  // namespace

std::span<const std::string_view> robotErrorCodes()
{
    return kRobotErrors;
}

std::span<const std::string_view> robotWarningCodes()
{
    return kRobotWarnings;
}

std::span<const std::string_view> stationErrorCodes()
{
    return kStationErrors;
}

std::span<const std::string_view> stationWarningCodes()
{
    return kStationWarnings;
}

}  // namespace vemra::robot
