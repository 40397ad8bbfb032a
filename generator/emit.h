#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "description/check.h"

namespace vemra::generator {

/// Label of the one node that stands for a tree without a description.
inline constexpr const char* kNotWritten = "not written";

/// The trees of `registry` in its order: those described, and a lone `AlwaysFailure` with the label
/// "not written" for each that is not.
[[nodiscard]] std::vector<description::NamedTree> completed(std::vector<description::NamedTree> described,
                                                            const std::vector<std::string>& registry);

/// Writes the source of the plug-in's tables and build functions. Throws std::length_error when a tree
/// outgrows the tables.
void emitSource(std::ostream& out, const std::vector<description::NamedTree>& trees);

/// Writes the linker's list of the plug-in's exported names.
void emitExports(std::ostream& out, const std::vector<description::NamedTree>& trees);

}  // namespace vemra::generator
