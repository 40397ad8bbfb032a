#include "robot/scenario/scenario_fields.h"

#include <fmt/format.h>

#include "robot/base/clock.h"

namespace vemra::robot {

std::uint64_t framesOf(const YamlFields& fields, std::string_view name)
{
    const std::string text = fields.text(name, "a count of frames or a time");
    const auto frames = framesOfText(text);
    if (!frames) {
        fields.fail(name,
                    fmt::format("a count of frames or a time that falls on one ({} ms), as in 500, 20ms, "
                                "12s, 3m, 2h, not \"{}\"",
                                kFrameMs, text));
    }
    return *frames;
}

PoseMm poseOf(const YamlFields& fields, std::string_view name)
{
    const std::vector<double> at = fields.places(name, 3);
    return {{1e3 * at[0], 1e3 * at[1]}, wrapped({at[2]})};
}

SetKeys keysOf(const YamlFields& fields, std::string_view name)
{
    SetKeys set;
    const YAML::Node keys = fields.node(name);
    if (!keys.IsMap() || keys.size() == 0) {
        fields.fail(name, "blackboard keys with their values, as in {task_state: cleaning}");
    }
    for (const auto& key : keys) {
        if (!key.first.IsScalar() || !(key.second.IsScalar() || key.second.IsNull())) {
            fields.failAt(key.first, fmt::format("\"{}\": expected a key with a text or a number", name));
        }
        set.values.emplace_back(key.first.Scalar(), key.second.IsNull() ? "" : key.second.Scalar());
    }
    return set;
}

}  // namespace vemra::robot
