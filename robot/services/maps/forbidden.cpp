#include "robot/services/maps/forbidden.h"

#include <string_view>
#include <vector>

#include "robot/services/blackboard/number_list.h"

namespace vemra::robot {

VirtualWalls virtualWallsOf(const BT::Blackboard& keys)
{
    VirtualWalls walls;
    const std::vector<double> lines = numbersOf(keys, "virtual_wall_lines");
    for (std::size_t i = 0; i + 3 < lines.size(); i += 4) {
        walls.lines.push_back({{lines[i], lines[i + 1]}, {lines[i + 2], lines[i + 3]}});
    }
    bool wipes = false;
    keys.get("use_mop", wipes);
    for (const char* key : {"virtual_wall_rects", "virtual_wall_mop_rects"}) {
        if (!wipes && std::string_view(key) == "virtual_wall_mop_rects") {
            continue;
        }
        const std::vector<double> boxes = numbersOf(keys, key);
        for (std::size_t i = 0; i + 3 < boxes.size(); i += 4) {
            walls.areas.push_back({{boxes[i], boxes[i + 1]},
                                   {boxes[i + 2], boxes[i + 1]},
                                   {boxes[i + 2], boxes[i + 3]},
                                   {boxes[i], boxes[i + 3]}});
        }
    }
    const std::vector<double> corners = numbersOf(keys, "polygon_virtual_walls");
    PolygonMm polygon;
    for (std::size_t i = 0; i + 1 < corners.size(); i += 2) {
        polygon.push_back({corners[i], corners[i + 1]});
    }
    if (polygon.size() >= 3) {
        walls.areas.push_back(polygon);
    }
    return walls;
}

}  // namespace vemra::robot
