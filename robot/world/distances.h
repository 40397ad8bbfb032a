#pragma once

#include <vector>

namespace vemra::robot {

/// For each cell of a grid (row by row) the square of the distance to the nearest marked cell, middle to
/// middle, in cells; a very large number where nothing is marked. Exact, in linear time (Felzenszwalb and
/// Huttenlocher 2012).
std::vector<float> squaredDistancesTo(const std::vector<bool>& marked, int columns, int rows);

}  // namespace vemra::robot
