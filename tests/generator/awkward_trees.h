#pragma once

#include <vector>

#include "description/check.h"

namespace vemra::test {

/// Trees whose texts are hard to put into a source file, and whose names are hard to sort.
[[nodiscard]] std::vector<description::NamedTree> awkwardTrees();

}  // namespace vemra::test
