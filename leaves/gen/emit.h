#pragma once

#include <string>
#include <vector>

#include "leaves/gen/catalogue.h"

namespace vemra::leafgen {

/// leaves/leaves.h: a struct a leaf, for those who write trees.
[[nodiscard]] std::string headerText(const std::vector<Family>& families);
/// description/keys.h: a name in C++ for each key, for those who write trees.
[[nodiscard]] std::string keysHeaderText(const std::vector<KeyEntry>& keys);
/// catalogue.cpp: the table behind leaves/contract.h, for those who answer them.
[[nodiscard]] std::string tableText(const Catalogue& catalogue);
/// docs/leaves.md: the reference page.
[[nodiscard]] std::string referenceText(const std::vector<Family>& families);
/// docs/keys.md: the keys of the blackboard.
[[nodiscard]] std::string keysReferenceText(const std::vector<KeyEntry>& keys);

}  // namespace vemra::leafgen
