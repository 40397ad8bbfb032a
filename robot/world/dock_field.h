#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "robot/world/dock.h"
#include "robot/world/home.h"

namespace vemra::robot {

/// What the dock sends into its sectors, named as a robot that faces the dock sees them from left to right.
enum class DockSignal : std::uint8_t
{
    None,
    Left,
    CentralLeft,
    Middle,
    CentralRight,
    Right
};

/// Something that throws the dock's infrared back: a polished front, a glass door. Seen from above a line.
struct Mirror
{
    PointMm from;
    PointMm to;
};

/// The infrared field before a dock. All of it is ground truth.
///
/// Sectors by the angle off the dock's middle line: Middle to 6 degrees, and to 20 mm beside the line where
/// that is more; the two Central ones to 20 degrees; Left and Right to 65 degrees. What is in the straight
/// way casts a shadow. A mirror shows an image of the dock at half its range.
class DockField
{
public:
    struct Config
    {
        bool exchanged = false;  ///< left and right emitters are built in the wrong way round
        double dropouts = 0.05;  ///< share of a receiver's frames in which it misses the signal
        std::vector<Mirror> mirrors;
    };

    explicit DockField(const Dock& dock) : DockField(dock, Config{}) {}
    DockField(const Dock& dock, Config config);

    [[nodiscard]] PointMm emitter() const { return face_.at; }
    [[nodiscard]] double dropouts() const { return config_.dropouts; }

    /// One way of the light to a place.
    struct Ray
    {
        DockSignal signal = DockSignal::None;
        PointMm from;       ///< where the light seems to come from: the emitter, or a place on a mirror
        double way_mm = 0;  ///< of the whole way
    };
    /// The ways that the light may take to any place: the direct one, and one over each mirror.
    [[nodiscard]] std::size_t ways() const { return 1 + config_.mirrors.size(); }
    /// The light that comes to a place by one of these; the direct one is way 0.
    [[nodiscard]] std::optional<Ray> rayBy(std::size_t way, PointMm place, const Home& visible) const;
    /// All that comes to a place; the direct one is the first.
    [[nodiscard]] std::vector<Ray> raysAt(PointMm place, const Home& visible) const;

    /// The near field: within 700 mm before the dock's face, in sight of it.
    [[nodiscard]] bool isNear(PointMm place, const Home& visible) const;

    /// What is sent towards a place, as far as it carries; shadows are not looked at.
    [[nodiscard]] DockSignal sentTowards(PointMm place) const;
    /// How far a signal carries.
    [[nodiscard]] static double rangeMm(DockSignal signal);

private:
    [[nodiscard]] PointMm inDockFrame(PointMm place) const;

    PoseMm face_;
    Config config_;
};

}  // namespace vemra::robot
