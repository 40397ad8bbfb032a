#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "robot/world/dock.h"
#include "robot/world/home.h"

namespace vemra::robot {

/// A home as a file gives it.
struct HomeFile
{
    Home home;
    std::optional<Dock> dock;  ///< as written, not checked: an option may overrule it
    std::string file;
    int dock_line = 0;
    std::vector<BoxMm> cliffs = {};
    /// What a reader should be told, a line each: a yaw that looks as if it were in another unit.
    std::vector<std::string> doubts = {};
};

/// Reads a map in the form that map_server writes: YAML with `image` (PGM, relative to the YAML),
/// `resolution` (metres a pixel), `origin` ([x, y, yaw], metres and radians, of the lower left corner),
/// `negate`, `occupied_thresh`, `free_thresh`, and, if wanted, `mode` (trinary, scale, raw) and `dock` ([x,
/// y, degrees], metres, of its face and where that looks) and `cliffs` (a list of [x0, y0, x1, y1] in metres,
/// where the floor ends though the picture shows it free). Other fields are refused. A dock's yaw that
/// can only be in radians is read so, and doubted.
///
/// The pixels come to 50 mm cells: a cell is occupied if any pixel in it is, so that no wall is lost; else
/// free if at least half of it is; else unknown. A map that is turned by its origin's yaw is turned upright
/// so. Throws InputError with file, line and what was expected.
HomeFile readHome(const std::filesystem::path& yaml);

enum class DockSource
{
    Given,
    Map,
    Placed
};

struct ChosenDock
{
    Dock dock;
    DockSource source;
};

/// The dock of a run: the given one, or else the map's, or else one put at a free wall; checked. Throws
/// InputError.
ChosenDock chooseDock(const HomeFile& home, const std::optional<Dock>& given);

}  // namespace vemra::robot
