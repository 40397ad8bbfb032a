#pragma once

#include <string>
#include <string_view>

#include "robot/body/body.h"

namespace vemra::robot {

// Where a contact was, as the trees write it: "left", "middle", "right", each with "_cliff" or "_dock" where
// it was no bumper, "virtual", "BackWardsBump", and "None".

inline constexpr std::string_view kNoBump = "None";
inline constexpr std::string_view kVirtualBump = "virtual";
inline constexpr std::string_view kRearBump = "BackWardsBump";

/// "left", "middle" or "right", with the suffix; both sides together are the middle. "None" without any.
[[nodiscard]] std::string directionOf(const Sides& sides, std::string_view suffix = {});

/// Whether a direction tells of a contact.
[[nodiscard]] bool isBump(std::string_view direction);

/// One direction of two: what was touched counts more than what is virtual, left and right are the middle.
[[nodiscard]] std::string mergedDirection(std::string_view a, std::string_view b);

}  // namespace vemra::robot
