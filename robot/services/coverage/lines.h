#pragma once

#include "robot/services/core/service.h"
#include "robot/services/coverage/ground.h"

namespace vemra::robot {

/// Leaves that plan cleaning lines: the next one (`next_line_to_clean`, from the end that is nearer to where
/// the robot is), how to get onto it, and whether any is left. Each line that is given counts as an offer.
class LineLeaves final
{
public:
    LineLeaves(const RobotParts& parts, CoverageGround& ground) : parts_(parts), ground_(ground) {}

    void install(leaf::LeafHost& host);

private:
    BT::NodeStatus planNext(const BT::TreeNode& node, std::optional<BoxMm> region);
    BT::NodeStatus planTurn(const BT::TreeNode& node);
    BT::NodeStatus extendFinish(const BT::TreeNode& node);
    BT::NodeStatus chooseDirection();
    [[nodiscard]] bool touchesUntraced(CellIndex last, CellIndex step) const;
    [[nodiscard]] PointMm endOf(const PlanningMap& plan, CellIndex from, CellIndex end, bool touches) const;
    [[nodiscard]] BT::NodeStatus nothingLeft(const char* region_key);

    RobotParts parts_;
    CoverageGround& ground_;
};

}  // namespace vemra::robot
