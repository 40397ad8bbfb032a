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
/// Whether an event says that something happens, beside what is expected from then on.
bool saysWhatHappens(const YamlFields& event);
/// Its field "expect", in a run of so many frames.
Expectation readExpectation(const YamlFields& event, std::uint64_t frames);

/// A field as one line of text, less what a time line has no use for.
std::string asText(const YAML::Node& value);

}  // namespace vemra::robot
