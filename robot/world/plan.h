#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "robot/world/dock.h"
#include "robot/world/pgm.h"

namespace vemra::robot {

/// A home as a person writes it down: YAML, metres. Fields: `name`; `floor` [x0, y0, x1, y1], the free floor
/// before anything stands on it; `margin`, the unknown rim around it; `walls`, a list of boxes; `doors`,
/// boxes cut free again; `furniture`, each with a `name` and either `box`, solid, or `legs`, a box with a 50
/// mm post in each corner; `cliffs`, a list of boxes where the floor ends; `dock` [x, y, degrees]. All edges
/// lie on the 50 mm grid.
struct Plan
{
    std::string name;
    BoxMm floor;
    double margin_mm = 0;
    std::vector<BoxMm> walls;
    std::vector<BoxMm> doors;
    std::vector<BoxMm> furniture;  ///< legs are four boxes
    std::vector<BoxMm> cliffs;
    std::optional<Dock> dock;
};

/// Throws InputError: a fault of the file, an edge off the grid, a box that is empty or outside.
Plan readPlan(const std::filesystem::path& file);

/// The plan as a map: the picture, and the text of the YAML that goes with it and names `<name>.pgm`.
GreyImage drawPlan(const Plan& plan);
/// The same as the cells that a reader of the map gets.
Home homeOfPlan(const Plan& plan);
std::string mapYaml(const Plan& plan);

}  // namespace vemra::robot
