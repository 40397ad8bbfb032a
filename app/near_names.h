#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vemra::app {

/// Those of `known` that somebody who typed `given` may have meant, best first, three at most: the same
/// letters in another case, few typing slips (Damerau-Levenshtein distance, optimal string alignment, at most
/// a third of the longer name), or `given` as a part of the name.
[[nodiscard]] std::vector<std::string> nearNames(std::string_view given, std::span<const std::string> known);

/// "; did you mean 'A', 'B' or 'C'?", or nothing when no name is near.
[[nodiscard]] std::string didYouMean(std::string_view given, std::span<const std::string> known);

}  // namespace vemra::app
