#include "robot/services/navigation/goals/navigation_points.h"

#include <algorithm>
#include <string>

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/world/virtual_walls.h"

namespace vemra::robot {
namespace {

template <class T>
BT::NodeStatus write(BT::TreeNode& node, const char* port, const T& value)
{
    const std::string key = textOf(node, port);
    if (key.empty()) {
        return BT::NodeStatus::FAILURE;
    }
    node.blackboard()->set(key, value);
    return BT::NodeStatus::SUCCESS;
}

std::optional<SegmentMm> lineOf(const BT::TreeNode& node, const char* port)
{
    return node.getParam<SegmentMm>(port);
}

std::optional<double> distanceOf(const BT::TreeNode& node)
{
    const auto a = pointOf(node, "point_mm_a");
    const auto b = pointOf(node, "point_mm_b");
    return a && b ? std::optional(distance(*a, *b)) : std::nullopt;
}

// The one of the two thresholds that counts, in mm: -1 is none.
std::optional<double> thresholdMm(const BT::TreeNode& node)
{
    if (const double mm = node.getParam<double>("threshold_mm").value_or(-1); mm >= 0) {
        return mm;
    }
    if (const double cells = node.getParam<double>("threshold_grid").value_or(-1); cells >= 0) {
        return cells * kCellMm;
    }
    return std::nullopt;
}

// Where along the line the perpendicular through the point stands: 0 at its start, 1 at its end.
double shareAlong(const SegmentMm& line, PointMm point)
{
    const PointMm way = line.to - line.from;
    const double square = way.x * way.x + way.y * way.y;
    const PointMm off = point - line.from;
    return square == 0 ? 0 : (off.x * way.x + off.y * way.y) / square;
}

PointMm footOn(const SegmentMm& line, PointMm point)
{
    return line.from + shareAlong(line, point) * (line.to - line.from);
}

void installPoints(leaf::LeafHost& host)
{
    host.condition("ArePointsTooClose", [](BT::TreeNode& node) {
        const auto away = distanceOf(node);
        const auto limit = node.getParam<double>("distance_mm");
        return passed(away && limit && *away <= *limit);
    });
    host.action("PointToPointDist", [](BT::TreeNode& node) {
        const auto away = distanceOf(node);
        return away ? write(node, "dist_mm", *away) : BT::NodeStatus::FAILURE;
    });
    host.action("CoordOffset", [](BT::TreeNode& node) {
        const auto base = pointOf(node, "base_point");
        const auto offset = pointOf(node, "offset_mm");
        return base && offset ? write(node, "out_point", *base + *offset) : BT::NodeStatus::FAILURE;
    });
    host.action("FromFloatToPlainPoseMm", [](BT::TreeNode& node) {
        const auto x = node.getParam<double>("coord_x_mm");
        const auto y = node.getParam<double>("coord_y_mm");
        const auto yaw = node.getParam<double>("yaw_deg");
        return x && y && yaw ? write(node, "out_key", PoseMm{{*x, *y}, {*yaw}}) : BT::NodeStatus::FAILURE;
    });
    host.action("PlainPoseMmSetYaw", [](BT::TreeNode& node) {
        const auto pose = poseOf(*node.blackboard(), textOf(node, "key"));
        const auto yaw = node.getParam<double>("yaw_deg");
        return pose && yaw ? write(node, "key", PoseMm{pose->at, {*yaw}}) : BT::NodeStatus::FAILURE;
    });
    host.action("GeneratePointCenteredRectMm", [](BT::TreeNode& node) {
        const auto centre = pointOf(node, "center");
        const auto half = node.getParam<double>("half_size_mm");
        return centre && half ? write(node, "out_rect", squareAround(*centre, *half))
                              : BT::NodeStatus::FAILURE;
    });
    host.condition("IsPointInRectangle", [](BT::TreeNode& node) {
        const auto point = pointOf(node, "point");
        const auto box = boxOf(node, "rectangle");
        return passed(point && box && contains(*box, *point));
    });
}

void installLines(leaf::LeafHost& host)
{
    host.action("LineDestructor", [](BT::TreeNode& node) {
        const auto line = lineOf(node, "line_mm");
        if (!line) {
            return BT::NodeStatus::FAILURE;
        }
        // Either end may be of no interest.
        const auto start = write(node, "out_point_0", line->from);
        const auto finish = write(node, "out_point_1", line->to);
        return passed(start == BT::NodeStatus::SUCCESS || finish == BT::NodeStatus::SUCCESS);
    });
    host.action("GetMidPointOfLine", [](BT::TreeNode& node) {
        const auto line = lineOf(node, "line");
        return line ? write(node, "out_point", 0.5 * (line->from + line->to)) : BT::NodeStatus::FAILURE;
    });
    host.action("CalcFootOfPerpendicularThroughPoint", [](BT::TreeNode& node) {
        const auto line = lineOf(node, "line");
        const auto point = pointOf(node, "point");
        return line && point ? write(node, "out_point", footOn(*line, *point)) : BT::NodeStatus::FAILURE;
    });
    host.condition("IsPointCloseToLine", [](BT::TreeNode& node) {
        const auto line = lineOf(node, "line");
        const auto point = pointOf(node, "point");
        const auto limit = thresholdMm(node);
        return passed(line && point && limit && distance(footOn(*line, *point), *point) <= *limit);
    });
    host.condition("IsPointInSegment", [](BT::TreeNode& node) {
        const auto line = lineOf(node, "line");
        const auto point = pointOf(node, "point");
        const double share = line && point ? shareAlong(*line, *point) : -1;
        return passed(share >= 0 && share <= 1);
    });
    host.condition("IsLineTooShort", [](BT::TreeNode& node) {
        const auto line = lineOf(node, "line");
        const auto limit = thresholdMm(node);
        return passed(line && limit && distance(line->from, line->to) <= *limit);
    });
}

}  // namespace

void installPointLeaves(leaf::LeafHost& host)
{
    installPoints(host);
    installLines(host);
}

}  // namespace vemra::robot
