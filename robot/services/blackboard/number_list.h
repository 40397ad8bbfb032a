#pragma once

#include <string_view>
#include <vector>

#include "behaviortree_cpp/blackboard/blackboard.h"

namespace vemra::robot {

/// The numbers of a key that holds a list, as the app sends areas and walls; none where there is no such
/// list.
inline std::vector<double> numbersOf(const BT::Blackboard& keys, std::string_view key)
{
    std::vector<double> numbers;
    keys.get(key, numbers);
    return numbers;
}

}  // namespace vemra::robot
