#include "robot/world/reach.h"

#include <algorithm>

namespace vemra::robot {
namespace {

constexpr int kUnlabelled = -2;

}  // namespace

Reach::Reach(const Home& home, double radius_mm)
    : columns_(home.columns()),
      rows_(home.rows()),
      labels_(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_), kNone)
{
    for (int row = 0; row < rows_; ++row) {
        for (int column = 0; column < columns_; ++column) {
            const CellIndex cell{column, row};
            if (home.at(cell) == CellState::Free && home.isDiscFree(home.centreOf(cell), radius_mm)) {
                label(cell) = kUnlabelled;
            }
        }
    }
    for (int row = 0; row < rows_; ++row) {
        for (int column = 0; column < columns_; ++column) {
            if (label({column, row}) == kUnlabelled) {
                sizes_.push_back(0);
                flood({column, row}, static_cast<int>(sizes_.size()) - 1);
            }
        }
    }
}

int Reach::regionOf(CellIndex cell) const
{
    if (cell.column < 0 || cell.column >= columns_ || cell.row < 0 || cell.row >= rows_) {
        return kNone;
    }
    return labels_[static_cast<std::size_t>(cell.row) * static_cast<std::size_t>(columns_) +
                   static_cast<std::size_t>(cell.column)];
}

int Reach::largest() const
{
    return sizes_.empty() ? kNone
                          : static_cast<int>(std::max_element(sizes_.begin(), sizes_.end()) - sizes_.begin());
}

void Reach::flood(CellIndex first, int region)
{
    std::vector<CellIndex> open{first};
    label(first) = region;
    while (!open.empty()) {
        const CellIndex cell = open.back();
        open.pop_back();
        ++sizes_.back();
        for (const CellIndex next :
             {CellIndex{cell.column + 1, cell.row}, CellIndex{cell.column - 1, cell.row},
              CellIndex{cell.column, cell.row + 1}, CellIndex{cell.column, cell.row - 1}}) {
            if (regionOf(next) == kUnlabelled) {
                label(next) = region;
                open.push_back(next);
            }
        }
    }
}

int& Reach::label(CellIndex cell)
{
    return labels_[static_cast<std::size_t>(cell.row) * static_cast<std::size_t>(columns_) +
                   static_cast<std::size_t>(cell.column)];
}

}  // namespace vemra::robot
