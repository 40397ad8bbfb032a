#pragma once

#include <CLI/CLI.hpp>
#include <cstdint>
#include <limits>

namespace vemra::app {

/// For options that take a whole number from low to high and nothing else: no sign, no rounding, no overflow.
[[nodiscard]] CLI::Validator wholeNumber(std::uint64_t low,
                                         std::uint64_t high = std::numeric_limits<std::uint64_t>::max());

}  // namespace vemra::app
