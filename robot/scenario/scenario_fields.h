#pragma once

#include <cstdint>
#include <string_view>

#include "robot/base/yaml_fields.h"
#include "robot/scenario/scenario.h"

namespace vemra::robot {

// Fields that have the same form wherever they stand in a scenario. All throw InputError.

/// A time, in frames.
std::uint64_t framesOf(const YamlFields& fields, std::string_view name);
/// [x, y, degrees] in metres.
PoseMm poseOf(const YamlFields& fields, std::string_view name);
/// Blackboard keys with their texts.
SetKeys keysOf(const YamlFields& fields, std::string_view name);

/// One element of "events".
ScenarioEvent readEvent(const YamlFields& event);

}  // namespace vemra::robot
