#include "robot/world/world.h"

#include <algorithm>
#include <utility>

namespace vemra::robot {

World::World(Home home) : bare_(std::move(home)), solid_(bare_), visible_(bare_)
{}

World::ThingId World::putDown(const BoxMm& box, Height height)
{
    things_.push_back({next_id_, box, height});
    enter(things_.back());
    return next_id_++;
}

void World::takeAway(ThingId id)
{
    if (std::erase_if(things_, [id](const Thing& thing) { return thing.id == id; }) == 0) {
        return;
    }
    solid_ = bare_;
    visible_ = bare_;
    for (const Thing& thing : things_) {
        enter(thing);
    }
}

bool World::isCliff(PointMm point) const
{
    return std::any_of(cliffs_.begin(), cliffs_.end(),
                       [point](const BoxMm& cliff) { return contains(cliff, point); });
}

bool World::isStep(PointMm point) const
{
    return std::any_of(things_.begin(), things_.end(), [point](const Thing& thing) {
        return thing.height == Height::Step && contains(thing.box, point);
    });
}

bool World::hasSteps() const
{
    return std::any_of(things_.begin(), things_.end(),
                       [](const Thing& thing) { return thing.height == Height::Step; });
}

void World::enter(const Thing& thing)
{
    if (thing.height == Height::Step) {
        return;
    }
    // An edge that lies on a border between cells does not reach into the next one.
    const double inside = 1e-6;
    const CellIndex low = solid_.cellOf(thing.box.low + PointMm{inside, inside});
    const CellIndex high = solid_.cellOf(thing.box.high - PointMm{inside, inside});
    for (int row = std::max(low.row, 0); row <= std::min(high.row, solid_.rows() - 1); ++row) {
        for (int column = std::max(low.column, 0); column <= std::min(high.column, solid_.columns() - 1);
             ++column) {
            solid_.set({column, row}, CellState::Occupied);
            if (thing.height == Height::Tall) {
                visible_.set({column, row}, CellState::Occupied);
            }
        }
    }
}

}  // namespace vemra::robot
