#pragma once

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "robot/world/dock_field.h"
#include "robot/world/home.h"

namespace vemra::robot {

enum class Height : std::uint8_t
{
    Tall,  ///< the laser sees it
    Low,   ///< below the laser's plane: only a bumper finds it
    Step   ///< a sill or threshold, low enough to drive over
};

/// What a robot can meet in a home: its walls and furniture, what somebody put down in it, and edges of the
/// floor. All of it is ground truth.
class World
{
public:
    using ThingId = int;

    explicit World(Home home);

    /// What a body runs into. Unknown cells hold it back as walls do.
    [[nodiscard]] const Home& solid() const { return solid_; }
    /// What a beam of the laser ends at.
    [[nodiscard]] const Home& visible() const { return visible_; }

    /// A thing covers every cell that the box reaches into. It is put where the box says, even onto the
    /// robot.
    ThingId putDown(const BoxMm& box, Height height = Height::Tall);
    /// An id that is not there is left alone.
    void takeAway(ThingId id);

    /// Where the floor ends: stairs, a step down.
    void addCliff(const BoxMm& box) { cliffs_.push_back(box); }
    [[nodiscard]] const std::vector<BoxMm>& cliffs() const { return cliffs_; }
    [[nodiscard]] bool isCliff(PointMm point) const;
    /// The floor is a step higher here.
    [[nodiscard]] bool isStep(PointMm point) const;
    [[nodiscard]] bool hasSteps() const;

    /// The dock begins to send.
    void setDockField(DockField field) { dock_field_ = std::move(field); }
    [[nodiscard]] const std::optional<DockField>& dockField() const { return dock_field_; }

private:
    struct Thing
    {
        ThingId id;
        BoxMm box;
        Height height;
    };

    void enter(const Thing& thing);

    Home bare_;
    Home solid_;
    Home visible_;
    std::vector<Thing> things_;
    std::vector<BoxMm> cliffs_;
    std::optional<DockField> dock_field_;
    ThingId next_id_ = 1;
};

}  // namespace vemra::robot
