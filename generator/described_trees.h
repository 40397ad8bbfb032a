#pragma once

#include <vector>

#include "description/check.h"

namespace vemra::generator {

/// All trees that have a description, by name.
[[nodiscard]] std::vector<description::NamedTree> describedTrees();

}  // namespace vemra::generator
