#pragma once

#include <vector>

#include "robot/services/core/service.h"
#include "robot/services/coverage/ground.h"

namespace vemra::robot {

/// Leaves that part the floor into subregions (`current_subregion`, a rectangle). A part is made when floor
/// that no part owns is to be cleaned, around that place, and then stays as it is; the first owner counts. It
/// is so large that its border hardly ever crosses a floor: a border is traced as a wall from both sides.
class SubregionLeaves final
{
public:
    SubregionLeaves(const RobotParts& parts, CoverageGround& ground) : parts_(parts), ground_(ground) {}

    void install(leaf::LeafHost& host);

private:
    void installTests(leaf::LeafHost& host);
    [[nodiscard]] BoxMm partOf(PointMm place);
    void sync();

    RobotParts parts_;
    CoverageGround& ground_;
    std::vector<BoxMm> parts_of_floor_;
    std::vector<PointMm> marked_border_;
    std::uint64_t resets_ = 0;
};

}  // namespace vemra::robot
