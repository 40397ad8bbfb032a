#pragma once

#include <cstdint>

namespace vemra::robot {

/// The keys of the front panel by the values that the board reports for them: how a key was pressed is part
/// of its value.
enum class PanelKey : std::uint8_t
{
    Start = 1,
    Home = 2,
    SetUp = 3,
    StartLong = 5,
    HomeLong = 6,
    Reset = 9,
    HomeVeryLong = 12  ///< the way out of the child lock
};

}  // namespace vemra::robot
