#pragma once

#include <vector>

#include "description/check.h"

namespace vemra::generator {

/// The `treegen` command over a set of described trees; gives the exit code: 0, or 2 for a wrong command
/// line, an unreadable file, or descriptions that are refused, with the reasons on standard error and no
/// file touched.
int treegen(int argc, const char* const* argv, std::vector<description::NamedTree> described);

}  // namespace vemra::generator
