#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <string>

namespace vemra::robot {

/// How a service tells the run's event log what happened: the kind of event, its text, and what else a
/// machine may want to know.
using Report =
    std::function<void(const std::string& kind, const std::string& text, nlohmann::ordered_json fields)>;

}  // namespace vemra::robot
