#pragma once

#include <stdexcept>

#include "behaviortree_cpp/basic_types.h"

/// A type of a user's own, as a port holds it: "x;y".
struct Waypoint
{
    double x = 0;
    double y = 0;
};

namespace BT {

template <>
inline Waypoint convertFromString(const StringView& key)
{
    const auto parts = splitString(key, ';');
    if (parts.size() != 2)
        throw std::runtime_error("a waypoint is x;y");
    return {convertFromString<double>(parts[0]), convertFromString<double>(parts[1])};
}

}  // namespace BT
