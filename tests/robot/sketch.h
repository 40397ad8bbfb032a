#pragma once

#include <string>
#include <vector>

#include "robot/world/home.h"

namespace vemra::robot {

// A home from lines of text, the topmost first: '#' occupied, '.' free, '?' unknown. Its lower left corner is
// at (0, 0).
inline Home sketch(const std::vector<std::string>& lines)
{
    std::vector<CellState> cells;
    for (auto line = lines.rbegin(); line != lines.rend(); ++line) {
        for (const char c : *line)
            cells.push_back(c == '#' ? CellState::Occupied : c == '.' ? CellState::Free : CellState::Unknown);
    }
    return {static_cast<int>(lines.front().size()), static_cast<int>(lines.size()), {0, 0}, std::move(cells)};
}

// The other way round.
inline std::vector<std::string> sketched(const Home& home)
{
    std::vector<std::string> lines;
    for (int row = home.rows() - 1; row >= 0; --row) {
        std::string line;
        for (int column = 0; column < home.columns(); ++column)
            line += ".#?"[static_cast<int>(home.at(CellIndex{column, row}))];
        lines.push_back(line);
    }
    return lines;
}

// A room of free cells within walls one cell thick.
inline std::vector<std::string> room(int columns, int rows)
{
    const auto width = static_cast<std::size_t>(columns);
    std::vector<std::string> lines(static_cast<std::size_t>(rows), "#" + std::string(width - 2, '.') + "#");
    lines.front() = lines.back() = std::string(width, '#');
    return lines;
}

}  // namespace vemra::robot
