#pragma once

#include <array>
#include <optional>

#include "robot/world/home.h"

namespace vemra::robot {

/// The place nearest to a disc on which it cannot stand.
struct Obstruction
{
    double away_mm = 0;  ///< from the disc's centre; 0 from within
    PointMm towards;     ///< of length 1, from the centre to it
    CellIndex cell;      ///< the one that it lies in, or at the edge of
};

/// What is not free, as near as within_mm of a centre.
std::optional<Obstruction> nearestObstruction(const Home& solid, PointMm centre, double within_mm);

struct Move
{
    static constexpr int kMost = 4;

    PointMm to;
    std::array<PointMm, kMost> against;  ///< directions of length 1 in which it ran into something
    int count = 0;                       ///< of them
};

/// A disc moves by a short step (a few millimetres) and slides along what it meets. It never comes nearer to
/// anything than it may; where it is too near already it comes no nearer.
Move slide(const Home& solid, PointMm from, PointMm step, double radius_mm);

}  // namespace vemra::robot
