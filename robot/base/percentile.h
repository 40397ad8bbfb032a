#pragma once

#include <cmath>
#include <cstddef>
#include <vector>

namespace vemra::robot {

/// The value below which a share of sorted values lies, 0 to 1: the nearest of them. At least one value.
inline double percentileOf(const std::vector<double>& sorted, double share)
{
    return sorted[static_cast<std::size_t>(std::lround(share * static_cast<double>(sorted.size() - 1)))];
}

}  // namespace vemra::robot
