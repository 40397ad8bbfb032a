#pragma once

#include <span>
#include <string_view>

namespace vemra::robot {

/// The health codes that can be raised, without their common prefix.
std::span<const std::string_view> robotErrorCodes();
std::span<const std::string_view> robotWarningCodes();
std::span<const std::string_view> stationErrorCodes();
std::span<const std::string_view> stationWarningCodes();

}  // namespace vemra::robot
