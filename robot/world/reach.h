#pragma once

#include <cstddef>
#include <vector>

#include "robot/world/home.h"

namespace vemra::robot {

/// Which places of a home a disc can get to from which: the cells on whose centre it fits, parted into
/// regions that hang together.
class Reach
{
public:
    static constexpr int kNone = -1;

    Reach(const Home& home, double radius_mm);

    /// The region of the cell, or none where the disc does not fit. Numbered from 0 in the order of cells.
    int regionOf(CellIndex cell) const;
    /// The region with the most cells; none if the disc fits nowhere.
    int largest() const;
    std::size_t cellsIn(int region) const { return sizes_.at(static_cast<std::size_t>(region)); }

private:
    void flood(CellIndex first, int region);
    int& label(CellIndex cell);

    int columns_;
    int rows_;
    std::vector<int> labels_;
    std::vector<std::size_t> sizes_;
};

}  // namespace vemra::robot
