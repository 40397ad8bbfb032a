#include "robot/world/random_home.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "robot/base/chance.h"
#include "robot/base/input_error.h"
#include "robot/world/reach.h"
#include "robot/world/walls.h"

namespace vemra::robot {
namespace {

constexpr double kCell = Home::kCellMm;
constexpr double kOuterWallMm = 150;
constexpr double kWallMm = 100;
constexpr double kLeastRoomMm = 2000;
constexpr double kDoorToCornerMm = 200;
constexpr int kTries = 40;
/// The robot needs a little more than its own width to get through.
constexpr double kPassableMm = kRobotRadiusMm + 10;
constexpr double kMostCutOff = 0.01;
constexpr double kDoorZoneMm = 500;

class Builder
{
public:
    explicit Builder(std::uint64_t seed) : chance_(seed) {}

    RandomHome build(std::uint64_t seed)
    {
        home_.rooms = 1 + static_cast<int>(chance_.bits() % 6);
        const double area = home_.rooms * between(9e6, 17e6);
        const double width = onGrid(std::sqrt(area * between(0.7, 1.6)));
        const double depth = onGrid(area / width);
        Plan& plan = home_.plan;
        plan.name = fmt::format("home_{}", seed);
        plan.floor = {{-kOuterWallMm, -kOuterWallMm}, {width + kOuterWallMm, depth + kOuterWallMm}};
        plan.margin_mm = 500;
        outerWalls(width, depth);
        rooms_ = {{{0, 0}, {width, depth}}};
        while (static_cast<int>(rooms_.size()) < home_.rooms && split()) {
        }
        home_.rooms = static_cast<int>(rooms_.size());
        placeTheDock();
        furnish(width * depth);
        return home_;
    }

private:
    double between(double low, double high) { return low + chance_.uniform() * (high - low); }
    double onGrid(double mm) const { return std::round(mm / kCell) * kCell; }
    double gridBetween(double low, double high) { return onGrid(between(low, high)); }

    void outerWalls(double width, double depth)
    {
        const double t = kOuterWallMm;
        home_.plan.walls = {{{-t, -t}, {width + t, 0}},
                            {{-t, depth}, {width + t, depth + t}},
                            {{-t, 0}, {0, depth}},
                            {{width, 0}, {width + t, depth}}};
    }

    // Parts the largest room across its longer side.
    bool split()
    {
        const auto largest =
            std::max_element(rooms_.begin(), rooms_.end(),
                             [](const BoxMm& a, const BoxMm& b) { return sizeOf(a) < sizeOf(b); });
        const BoxMm room = *largest;
        const bool across_x = room.high.x - room.low.x >= room.high.y - room.low.y;
        const double low = across_x ? room.low.x : room.low.y;
        const double high = across_x ? room.high.x : room.high.y;
        const double side_low = across_x ? room.low.y : room.low.x;
        const double side_high = across_x ? room.high.y : room.high.x;
        if (high - low < 2 * kLeastRoomMm + kWallMm) {
            return false;
        }
        for (int i = 0; i < kTries; ++i) {
            const double at = gridBetween(low + kLeastRoomMm, high - kLeastRoomMm - kWallMm);
            const double door = gridBetween(650, 1000);
            const double door_at =
                gridBetween(side_low + kDoorToCornerMm, side_high - kDoorToCornerMm - door);
            const auto box = [across_x](double a0, double b0, double a1, double b1) {
                return across_x ? BoxMm{{a0, b0}, {a1, b1}} : BoxMm{{b0, a0}, {b1, a1}};
            };
            const BoxMm wall = box(at, side_low, at + kWallMm, side_high);
            const bool meets_door =
                std::any_of(home_.plan.doors.begin(), home_.plan.doors.end(),
                            [&](const BoxMm& other) { return overlap(grown(other, kDoorToCornerMm), wall); });
            if (meets_door) {
                continue;
            }
            home_.plan.walls.push_back(wall);
            home_.plan.doors.push_back(box(at, door_at, at + kWallMm, door_at + door));
            *largest = box(low, side_low, at, side_high);
            rooms_.push_back(box(at + kWallMm, side_low, high, side_high));
            return true;
        }
        return false;
    }

    void placeTheDock()
    {
        const Home bare = homeOfPlan(home_.plan);
        std::vector<WallStretch> walls = freeWalls(bare, {600, 1200, 0});
        for (int i = 0; i < kTries && !walls.empty() && !home_.plan.dock; ++i) {
            const WallStretch& wall = walls[chance_.bits() % walls.size()];
            const PointMm along = direction({wall.looks.value + 90});
            const double aside = onGrid(between(-0.5, 0.5) * (wall.length_mm - 600));
            const Dock dock{{wall.middle + aside * along, wrapped(wall.looks)}};
            try {
                checkDock(bare, dock, home_.plan.name, 0);
                home_.plan.dock = dock;
            } catch (const InputError&) {
                continue;
            }
        }
        if (!home_.plan.dock) {
            home_.plan.dock = placeDock(bare);
        }
    }

    void furnish(double area)
    {
        const double wanted = between(0.05, 0.4) * area;
        double stands = 0;
        for (int i = 0; i < kTries * home_.rooms && stands < wanted; ++i) {
            const BoxMm& room = rooms_[chance_.bits() % rooms_.size()];
            const double kind = chance_.uniform();
            const BoxMm box = kind < 0.6 ? atWall(room) : anywhere(room);
            if (!isFree(box)) {
                continue;
            }
            if (kind < 0.8) {
                stands += accept({box}, false) ? sizeOf(box) : 0;
            } else if (kind < 0.92) {
                stands += accept(legsOf(box), false) ? 4 * kCell * kCell : 0;
            } else {
                const BoxMm low{box.low, box.low + PointMm{gridBetween(100, 400), gridBetween(100, 400)}};
                stands += accept({low}, true) ? sizeOf(low) : 0;
            }
        }
        home_.furnished = stands / area;
    }

    BoxMm atWall(const BoxMm& room)
    {
        const double along = gridBetween(300, 2000);
        const double deep = gridBetween(250, 900);
        const bool upright = chance_.uniform() < 0.5;
        const double width = upright ? deep : along;
        const double depth = upright ? along : deep;
        const bool far_side = chance_.uniform() < 0.5;
        double x = gridBetween(room.low.x, std::max(room.low.x, room.high.x - width));
        double y = gridBetween(room.low.y, std::max(room.low.y, room.high.y - depth));
        (upright ? x : y) = upright ? (far_side ? room.high.x - width : room.low.x)
                                    : (far_side ? room.high.y - depth : room.low.y);
        return {{x, y}, {x + width, y + depth}};
    }

    BoxMm anywhere(const BoxMm& room)
    {
        const double width = gridBetween(350, 1600);
        const double depth = gridBetween(350, 1200);
        const double x = gridBetween(room.low.x, std::max(room.low.x, room.high.x - width));
        const double y = gridBetween(room.low.y, std::max(room.low.y, room.high.y - depth));
        return {{x, y}, {x + width, y + depth}};
    }

    static std::vector<BoxMm> legsOf(const BoxMm& box)
    {
        const double l = kCell;
        const auto leg = [l](double x, double y) { return BoxMm{{x, y}, {x + l, y + l}}; };
        return {leg(box.low.x, box.low.y), leg(box.high.x - l, box.low.y), leg(box.low.x, box.high.y - l),
                leg(box.high.x - l, box.high.y - l)};
    }

    // Doors and the floor before the dock stay free.
    bool isFree(const BoxMm& box) const
    {
        const bool in_room = std::any_of(rooms_.begin(), rooms_.end(), [&](const BoxMm& room) {
            return contains(room, box.low) && contains(room, box.high);
        });
        const auto in_door = [&](const BoxMm& door) { return overlap(grown(door, kDoorZoneMm), box); };
        const auto meets = [&](const BoxMm& other) { return overlap(other, box); };
        const Plan& plan = home_.plan;
        bool before_dock = false;
        if (plan.dock) {
            const PointMm out = plan.dock->face.at + 700 * direction(plan.dock->face.yaw);
            before_dock = overlap(grown({out, out}, 800), box);
        }
        return in_room && !before_dock && std::none_of(plan.doors.begin(), plan.doors.end(), in_door) &&
               std::none_of(plan.furniture.begin(), plan.furniture.end(), meets) &&
               std::none_of(home_.low.begin(), home_.low.end(), meets);
    }

    // What cuts off floor is not put there.
    bool accept(const std::vector<BoxMm>& boxes, bool low)
    {
        Plan with = home_.plan;
        for (const BoxMm& other : home_.low) {
            with.furniture.push_back(other);
        }
        with.furniture.insert(with.furniture.end(), boxes.begin(), boxes.end());
        const Home cells = homeOfPlan(with);
        const Reach reach(cells, kPassableMm);
        const int largest = reach.largest();
        std::size_t all = 0;
        std::size_t main = 0;
        for (int row = 0; row < cells.rows(); ++row) {
            for (int column = 0; column < cells.columns(); ++column) {
                const int region = reach.regionOf({column, row});
                all += region != Reach::kNone ? 1U : 0U;
                main += region == largest ? 1U : 0U;
            }
        }
        if (static_cast<double>(all - main) > kMostCutOff * static_cast<double>(all)) {
            return false;
        }
        auto& kept = low ? home_.low : home_.plan.furniture;
        kept.insert(kept.end(), boxes.begin(), boxes.end());
        return true;
    }

    static double sizeOf(const BoxMm& box) { return (box.high.x - box.low.x) * (box.high.y - box.low.y); }
    static BoxMm grown(const BoxMm& box, double by)
    {
        return {box.low - PointMm{by, by}, box.high + PointMm{by, by}};
    }
    static bool overlap(const BoxMm& a, const BoxMm& b)
    {
        return a.low.x < b.high.x && b.low.x < a.high.x && a.low.y < b.high.y && b.low.y < a.high.y;
    }

    Chance chance_;
    RandomHome home_;
    std::vector<BoxMm> rooms_;
};

}  // namespace

RandomHome randomHome(std::uint64_t seed)
{
    return Builder(seed).build(seed);
}

}  // namespace vemra::robot
