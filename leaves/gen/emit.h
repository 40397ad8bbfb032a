#pragma once

#include <string>
#include <vector>

#include "leaves/gen/catalogue.h"

namespace vemra::leafgen {

/// leaves/leaves.h: a struct a leaf, for those who write trees.
[[nodiscard]] std::string headerText(const std::vector<Family>& families);
/// catalogue.cpp: the table behind leaves/contract.h, for those who answer them.
[[nodiscard]] std::string tableText(const std::vector<Family>& families);
/// docs/leaves.md: the reference page.
[[nodiscard]] std::string referenceText(const std::vector<Family>& families);

}  // namespace vemra::leafgen
