#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "robot/belief/grid.h"

namespace vemra::robot {

/// One beam of a scan: its heading in the frame of the map, and how far it went before it met something.
struct Beam
{
    Degrees heading;
    std::optional<double> range_mm;
};

/// What the robot knows of the floor by its laser: a grid that grows as scans come in. Each cell keeps a
/// small sum of evidence, so that a thing that was carried away fades and one wrong beam does no harm.
class OccupancyMap
{
public:
    /// No more than this many cells along an edge (60 m); what lies beyond is not entered.
    static constexpr int kMostCells = 1200;

    /// Enters a scan that was taken at a place. Beams that met nothing clear the floor up to max_mm.
    void enter(PointMm from, std::span<const Beam> beams, double max_mm);
    /// A floor that was driven over is free.
    void clearDisc(PointMm centre, double radius_mm);
    void reset();
    /// Takes the states of another map over, as if each cell had been seen several times.
    void load(const Grid<CellState>& cells);

    CellState at(CellIndex cell) const { return stateOf(evidence_.at(cell)); }
    const CellWindow& window() const { return evidence_.window(); }
    /// The states of the cells of a window.
    Grid<CellState> states(const CellWindow& window) const;
    std::size_t freeCells() const;
    /// Grows when a cell comes into another state, and with the window; whoever derives something from the
    /// map can tell that it is stale.
    std::uint64_t version() const { return version_; }

private:
    static CellState stateOf(std::int8_t evidence);
    void include(const CellWindow& window);
    void add(CellIndex cell, int amount);
    void put(CellIndex cell, std::int8_t evidence);

    Grid<std::int8_t> evidence_{0};
    Grid<std::uint32_t> seen_in_{0};  ///< the last scan that changed a cell: once in a scan is enough
    std::uint32_t scan_ = 0;
    std::uint64_t version_ = 0;
};

}  // namespace vemra::robot
