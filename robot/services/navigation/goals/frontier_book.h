#pragma once

#include <cstdint>
#include <vector>

#include "robot/belief/grid.h"

namespace vemra::robot {

/// The places at the edge of the unknown that were handed out as goals. Each is handed out twice at most,
/// with what lies within 150 mm of it: a robot that did not get there tries once more, and then looks
/// elsewhere. That is how exploring ends. A new map begins a new book.
class FrontierBook
{
public:
    /// `map`: how often a new map was begun.
    void turnTo(std::uint64_t map);
    [[nodiscard]] bool isOpen(CellIndex place) const;
    void give(CellIndex place);

private:
    struct Given
    {
        CellIndex place;
        int times = 0;
    };

    std::vector<Given> given_;
    std::uint64_t map_ = 0;
};

}  // namespace vemra::robot
