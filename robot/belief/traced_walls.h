#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "robot/belief/grid.h"

namespace vemra::robot {

/// The walls that the robot has followed, in chains: the line of places along each wall, told as if the wall
/// was on the right. Chains are numbered from 1.
class TracedWalls
{
public:
    struct Place
    {
        PointMm at;
        Degrees heading;
        double along_mm = 0;  ///< from the chain's beginning
    };
    struct Chain
    {
        std::vector<Place> places;
        bool wall_right = true;
        bool open = true;  ///< the wall went on when it was left
    };

    /// Begins a chain and gives its number.
    int begin(bool wall_right);
    /// The robot follows the wall of a chain. True when it has run onto a wall that was traced before, its
    /// own beginning included: for some length its way has led along the same side of the same wall.
    bool draw(int chain, const PoseMm& pose);
    void close(int chain);
    void reset();

    [[nodiscard]] const std::vector<Chain>& chains() const { return chains_; }
    /// The cell shows a wall that was followed, or what stood beside the robot then.
    [[nodiscard]] bool isTraced(CellIndex cell) const { return (flags_.at(cell) & kSides) != 0; }
    /// It was followed on the side where this place is: of a wall between two rooms each has its own.
    [[nodiscard]] bool isTraced(CellIndex cell, PointMm from) const;
    /// The robot followed a wall over this cell.
    [[nodiscard]] bool isWay(CellIndex cell) const { return (flags_.at(cell) & kWay) != 0; }
    /// Grows with each change.
    [[nodiscard]] std::uint64_t version() const { return version_; }
    /// The floor that can be left towards the edge of the map without crossing a chain; what lies outside of
    /// the window can be.
    [[nodiscard]] Grid<unsigned char> outside() const;

private:
    // A wall has eight sides, an eighth of a turn each.
    enum : std::uint16_t
    {
        kSides = 0xFF,
        kWay = 0x100
    };
    struct Spot
    {
        int chain;
        std::size_t place;
    };

    void flag(CellIndex cell, unsigned flags);
    void flagLine(PointMm from, PointMm to);
    void flagWall(const PoseMm& as_right);
    [[nodiscard]] const Place* tracedHere(int chain, const Place& now) const;

    std::vector<Chain> chains_;
    std::unordered_map<std::uint64_t, std::vector<Spot>> by_cell_;
    Grid<std::uint16_t> flags_{0};
    double again_mm_ = 0;  ///< how long the way has led along a traced wall
    std::uint64_t version_ = 0;
};

}  // namespace vemra::robot
