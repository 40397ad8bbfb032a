#pragma once

#include <string>
#include <vector>

#include "robot/base/chance.h"
#include "robot/belief/grid.h"
#include "robot/sketch.h"

namespace vemra::robot {

// The cells of a drawn home as a map.
inline Grid<CellState> gridOf(const Home& home)
{
    const CellIndex low = cellAt(home.origin());
    Grid<CellState> cells({low, {low.column + home.columns(), low.row + home.rows()}}, CellState::Unknown,
                          CellState::Unknown);
    for (int row = 0; row < home.rows(); ++row) {
        for (int column = 0; column < home.columns(); ++column)
            cells.set({low.column + column, low.row + row}, home.at(CellIndex{column, row}));
    }
    return cells;
}

inline Grid<CellState> gridOf(const std::vector<std::string>& lines)
{
    return gridOf(sketch(lines));
}

// At least 0, below the end.
inline int upTo(Chance& chance, int end)
{
    return static_cast<int>(chance.uniform() * end);
}

// Puts a thing of one kind into a drawing: columns and rows from the lower left corner, `to` included.
inline void fill(std::vector<std::string>& lines, CellIndex from, CellIndex to, char kind)
{
    for (int row = from.row; row <= to.row; ++row) {
        for (int column = from.column; column <= to.column; ++column)
            lines.at(lines.size() - 1 - static_cast<std::size_t>(row)).at(static_cast<std::size_t>(column)) =
                kind;
    }
}

}  // namespace vemra::robot
