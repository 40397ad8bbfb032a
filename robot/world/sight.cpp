#include "robot/world/sight.h"

#include "robot/world/dock.h"
#include "robot/world/reach.h"

namespace vemra::robot {
namespace {

constexpr int kApartCells = 4;
constexpr int kBeams = 720;
constexpr double kStepMm = Home::kCellMm / 2;

class Sight
{
public:
    explicit Sight(const Home& visible)
        : visible_(visible),
          seen_(static_cast<std::size_t>(visible.columns()) * static_cast<std::size_t>(visible.rows()))
    {}

    void look(PointMm from, double range_mm)
    {
        for (int beam = 0; beam < kBeams; ++beam) {
            const Degrees heading{beam * 360.0 / kBeams};
            const double way = visible_.castRay(from, heading, range_mm).value_or(range_mm);
            const int steps = static_cast<int>(way / kStepMm);
            const PointMm step = kStepMm * direction(heading);
            for (int i = 0; i < steps; ++i) {
                mark(visible_.cellOf(from + i * step));
            }
        }
    }

    [[nodiscard]] std::vector<PointMm> floor() const
    {
        std::vector<PointMm> places;
        for (int row = 0; row < visible_.rows(); ++row) {
            for (int column = 0; column < visible_.columns(); ++column) {
                if (seen_[indexOf({column, row})]) {
                    places.push_back(visible_.centreOf({column, row}));
                }
            }
        }
        return places;
    }

private:
    [[nodiscard]] std::size_t indexOf(CellIndex cell) const
    {
        return static_cast<std::size_t>(cell.row) * static_cast<std::size_t>(visible_.columns()) +
               static_cast<std::size_t>(cell.column);
    }
    void mark(CellIndex cell)
    {
        if (visible_.at(cell) == CellState::Free) {
            seen_[indexOf(cell)] = true;
        }
    }

    const Home& visible_;
    std::vector<bool> seen_;
};

// The start is believed to within a body's width: a docked robot touches what is behind the dock.
int regionAround(const Home& solid, const Reach& reach, PointMm from)
{
    constexpr int kCells = static_cast<int>(kRobotRadiusMm / Home::kCellMm);
    const CellIndex middle = solid.cellOf(from);
    for (int row = -kCells; row <= kCells; ++row) {
        for (int column = -kCells; column <= kCells; ++column) {
            const int region = reach.regionOf({middle.column + column, middle.row + row});
            if (region != Reach::kNone) {
                return region;
            }
        }
    }
    return reach.largest();
}

}  // namespace

std::vector<PointMm> floorInSight(const World& world, PointMm from, double range_mm)
{
    const Home& solid = world.solid();
    const Reach reach(solid, kRobotRadiusMm);
    const int region = regionAround(solid, reach, from);
    Sight sight(world.visible());
    for (int row = 0; row < solid.rows(); row += kApartCells) {
        for (int column = 0; column < solid.columns(); column += kApartCells) {
            if (region != Reach::kNone && reach.regionOf({column, row}) == region) {
                sight.look(solid.centreOf({column, row}), range_mm);
            }
        }
    }
    return sight.floor();
}

}  // namespace vemra::robot
