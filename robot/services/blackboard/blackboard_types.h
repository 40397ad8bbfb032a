#pragma once

/// What the trees hand from leaf to leaf without looking into it, and how a leaf reads it. Positions are
/// written on the blackboard as PoseMm (`current_pose`), PointMm or CellIndex (grid coordinates,
/// `current_coord`); a port that takes a place takes any of them, or the text "x;y" in mm. Whoever puts one
/// of these types on a blackboard includes this header, so that its text form goes with it.

#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "behaviortree_cpp/tree_node.h"
#include "robot/belief/grid.h"
#include "robot/geometry/points.h"
#include "robot/planning/planning_map.h"
#include "robot/world/virtual_walls.h"

namespace vemra::robot {

// The text forms: "x;y" and "x;y;yaw" in mm and degrees, "column;row" in cells, "left;low;right;high" in mm,
// "x;y;x;y" of a line from its start to its end. Of a map its extent alone: it cannot be read back.
std::ostream& operator<<(std::ostream& out, PointMm point);
std::ostream& operator<<(std::ostream& out, const PoseMm& pose);
std::ostream& operator<<(std::ostream& out, CellIndex cell);
std::ostream& operator<<(std::ostream& out, const BoxMm& rect);
std::ostream& operator<<(std::ostream& out, const SegmentMm& line);
std::ostream& operator<<(std::ostream& out, const std::shared_ptr<const PlanningMap>& map);
std::ostream& operator<<(std::ostream& out, const std::shared_ptr<const Grid<unsigned char>>& map);

/// Points as "x;y;x;y;...". Reading throws std::invalid_argument when it finds no points, or half a one.
void writePoints(std::ostream& out, const std::vector<PointMm>& points);
[[nodiscard]] std::vector<PointMm> pointsOf(std::string_view text);

/// The place that a value means; a cell counts as its middle. Nothing when it is no place.
std::optional<PointMm> pointOf(const BT::Any& value);
std::optional<PoseMm> poseOf(const BT::Any& value);
std::optional<BoxMm> boxOf(const BT::Any& value);

/// The same of a port, as it is now; nothing when there is no such port or the key it refers to is not there.
std::optional<PointMm> pointOf(const BT::TreeNode& node, std::string_view port);
std::optional<PoseMm> poseOf(const BT::TreeNode& node, std::string_view port);
std::optional<BoxMm> boxOf(const BT::TreeNode& node, std::string_view port);

/// The same of a key of the blackboard.
std::optional<PointMm> pointOf(const BT::Blackboard& blackboard, std::string_view key);
std::optional<PoseMm> poseOf(const BT::Blackboard& blackboard, std::string_view key);
std::optional<BoxMm> boxOf(const BT::Blackboard& blackboard, std::string_view key);

}  // namespace vemra::robot

namespace BT {

template <>
vemra::robot::PointMm convertFromString<vemra::robot::PointMm>(const StringView& text);
template <>
vemra::robot::PoseMm convertFromString<vemra::robot::PoseMm>(const StringView& text);
template <>
vemra::robot::BoxMm convertFromString<vemra::robot::BoxMm>(const StringView& text);
template <>
vemra::robot::SegmentMm convertFromString<vemra::robot::SegmentMm>(const StringView& text);

}  // namespace BT
