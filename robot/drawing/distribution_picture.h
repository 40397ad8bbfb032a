#pragma once

#include <string>
#include <vector>

#include "robot/drawing/picture.h"

namespace vemra::robot {

/// A figure over many runs.
struct Distribution
{
    std::string title;  ///< with its unit
    std::vector<double> values;
    std::size_t failed = 0;  ///< runs without the figure
};

/// How figures are distributed: for each a panel with its cumulative share, from the least value to the most,
/// and its least, 5 %, median, 95 % and most.
Picture distributionPicture(const std::string& title, std::vector<Distribution> panels);

}  // namespace vemra::robot
