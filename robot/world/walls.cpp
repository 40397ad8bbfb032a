#include "robot/world/walls.h"

#include <cmath>

namespace vemra::robot {
namespace {

// The grid seen from a wall: `line` counts away from it into the room, `place` along it.
struct View
{
    Degrees looks;
    bool upright;  // the wall runs along x
    int into;      // +1 or -1
};

constexpr View kViews[] = {
    {{90}, true, 1},
    {{0}, false, 1},
    {{270}, true, -1},
    {{180}, false, -1},
};

class WallSearch
{
public:
    WallSearch(const Home& home, const WallNeeds& needs, View view) : home_(home), needs_(needs), view_(view)
    {
        lines_ = view.upright ? home.rows() : home.columns();
        places_ = view.upright ? home.columns() : home.rows();
        depth_cells_ = static_cast<int>(std::ceil(needs.depth_mm / Home::kCellMm - 1e-9));
        length_cells_ = static_cast<int>(std::ceil(needs.length_mm / Home::kCellMm - 1e-9));
    }

    void collect(std::vector<WallStretch>& found) const
    {
        for (int line = 0; line < lines_; ++line) {
            int start = 0;
            bool touches = false;
            for (int place = 0; place <= places_; ++place) {
                const int gap = place < places_ ? wallBehind(line, place) : -1;
                if (gap >= 0 && isOpen(line, place)) {
                    touches = touches || gap == 0;
                    continue;
                }
                if (touches && place - start >= length_cells_) {
                    found.push_back(stretch(line, start, place));
                }
                start = place + 1;
                touches = false;
            }
        }
    }

private:
    CellState at(int line, int place) const
    {
        return home_.at(view_.upright ? CellIndex{place, line} : CellIndex{line, place});
    }

    // How many cells lie between this one and the wall behind it; -1 without a wall near enough.
    int wallBehind(int line, int place) const
    {
        if (at(line, place) != CellState::Free) {
            return -1;
        }
        for (int gap = 0; gap <= needs_.uneven_cells; ++gap) {
            if (at(line - view_.into * (gap + 1), place) == CellState::Occupied) {
                return gap;
            }
        }
        return -1;
    }

    bool isOpen(int line, int place) const
    {
        for (int step = 0; step < depth_cells_; ++step) {
            if (at(line + view_.into * step, place) != CellState::Free) {
                return false;
            }
        }
        return true;
    }

    WallStretch stretch(int line, int start, int end) const
    {
        const double across = (line + (view_.into > 0 ? 0 : 1)) * Home::kCellMm;
        const double along = 0.5 * (start + end) * Home::kCellMm;
        const PointMm offset = view_.upright ? PointMm{along, across} : PointMm{across, along};
        return {home_.origin() + offset, view_.looks, (end - start) * Home::kCellMm};
    }

    const Home& home_;
    const WallNeeds& needs_;
    View view_;
    int lines_;
    int places_;
    int depth_cells_;
    int length_cells_;
};

}  // namespace

std::vector<WallStretch> freeWalls(const Home& home, const WallNeeds& needs)
{
    std::vector<WallStretch> found;
    for (const View& view : kViews) {
        WallSearch(home, needs, view).collect(found);
    }
    return found;
}

}  // namespace vemra::robot
