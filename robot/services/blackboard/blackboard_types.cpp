#include "robot/services/blackboard/blackboard_types.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>
#include <vector>

namespace vemra::robot {
namespace {

// The numbers of a text, `least` to `most` of them.
std::vector<double> numbersOf(std::string_view text, std::size_t least, std::size_t most)
{
    auto numbers = BT::convertFromString<std::vector<double>>(text);
    if (numbers.size() < least || numbers.size() > most) {
        throw std::invalid_argument("expected " + std::to_string(least) + " to " + std::to_string(most) +
                                    " numbers separated by ';', found '" + std::string(text) + "'");
    }
    return numbers;
}

std::ostream& writeExtent(std::ostream& out, const CellWindow& window)
{
    return out << window.columns() << " x " << window.rows() << " cells from " << window.low;
}

std::optional<BT::Any> valueOf(const BT::TreeNode& node, std::string_view port)
{
    BT::Any value;
    if (!node.getParam(port, value) || value.empty()) {
        return std::nullopt;
    }
    return value;
}

// A text that is no such value gives none: a leaf that cannot act fails.
template <class T>
std::optional<T> parsed(const BT::Any& value)
{
    T out;
    if (!value.tryCast(out)) {
        return std::nullopt;
    }
    return out;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, PointMm point)
{
    return out << std::lround(point.x) << ';' << std::lround(point.y);
}

std::ostream& operator<<(std::ostream& out, const PoseMm& pose)
{
    return out << pose.at << ';' << std::lround(pose.yaw.value);
}

std::ostream& operator<<(std::ostream& out, CellIndex cell)
{
    return out << cell.column << ';' << cell.row;
}

std::ostream& operator<<(std::ostream& out, const BoxMm& rect)
{
    return out << rect.low << ';' << rect.high;
}

std::ostream& operator<<(std::ostream& out, const SegmentMm& line)
{
    return out << line.from << ';' << line.to;
}

std::ostream& operator<<(std::ostream& out, const std::shared_ptr<const PlanningMap>& map)
{
    return map ? writeExtent(out, map->window()) : out;
}

std::ostream& operator<<(std::ostream& out, const std::shared_ptr<const Grid<unsigned char>>& map)
{
    return map ? writeExtent(out, map->window()) : out;
}

void writePoints(std::ostream& out, const std::vector<PointMm>& points)
{
    const char* between = "";
    for (const PointMm point : points) {
        out << std::exchange(between, ";") << point;
    }
}

std::vector<PointMm> pointsOf(std::string_view text)
{
    constexpr std::size_t kMost = 100'000;
    const std::vector<double> n = numbersOf(text, 2, kMost);
    if (n.size() % 2 != 0) {
        throw std::invalid_argument("expected points as x;y;x;y, found '" + std::string(text) + "'");
    }
    std::vector<PointMm> points;
    for (std::size_t i = 0; i < n.size(); i += 2) {
        points.push_back({n[i], n[i + 1]});
    }
    return points;
}

std::optional<PointMm> pointOf(const BT::Any& value)
{
    if (const auto* point = value.object<PointMm>()) {
        return *point;
    }
    if (const auto* pose = value.object<PoseMm>()) {
        return pose->at;
    }
    if (const auto* cell = value.object<CellIndex>()) {
        return centreOf(*cell);
    }
    return parsed<PointMm>(value);
}

std::optional<PoseMm> poseOf(const BT::Any& value)
{
    if (const auto* pose = value.object<PoseMm>()) {
        return *pose;
    }
    if (value.isText()) {
        return parsed<PoseMm>(value);
    }
    if (const auto point = pointOf(value)) {
        return PoseMm{*point, {}};
    }
    return std::nullopt;
}

std::optional<BoxMm> boxOf(const BT::Any& value)
{
    return parsed<BoxMm>(value);
}

std::optional<PointMm> pointOf(const BT::TreeNode& node, std::string_view port)
{
    const auto value = valueOf(node, port);
    return value ? pointOf(*value) : std::nullopt;
}

std::optional<PoseMm> poseOf(const BT::TreeNode& node, std::string_view port)
{
    const auto value = valueOf(node, port);
    return value ? poseOf(*value) : std::nullopt;
}

std::optional<BoxMm> boxOf(const BT::TreeNode& node, std::string_view port)
{
    const auto value = valueOf(node, port);
    return value ? boxOf(*value) : std::nullopt;
}

std::optional<PointMm> pointOf(const BT::Blackboard& blackboard, std::string_view key)
{
    const BT::Any* value = blackboard.getAny(key);
    return value != nullptr ? pointOf(*value) : std::nullopt;
}

std::optional<PoseMm> poseOf(const BT::Blackboard& blackboard, std::string_view key)
{
    const BT::Any* value = blackboard.getAny(key);
    return value != nullptr ? poseOf(*value) : std::nullopt;
}

std::optional<BoxMm> boxOf(const BT::Blackboard& blackboard, std::string_view key)
{
    const BT::Any* value = blackboard.getAny(key);
    return value != nullptr ? boxOf(*value) : std::nullopt;
}

}  // namespace vemra::robot

namespace BT {

using vemra::robot::BoxMm;
using vemra::robot::PointMm;
using vemra::robot::PoseMm;
using vemra::robot::SegmentMm;

template <>
PointMm convertFromString<PointMm>(const StringView& text)
{
    const auto n = vemra::robot::numbersOf(text, 2, 3);
    return {n[0], n[1]};
}

template <>
PoseMm convertFromString<PoseMm>(const StringView& text)
{
    const auto n = vemra::robot::numbersOf(text, 2, 3);
    return {{n[0], n[1]}, {n.size() == 3 ? n[2] : 0}};
}

template <>
BoxMm convertFromString<BoxMm>(const StringView& text)
{
    const auto n = vemra::robot::numbersOf(text, 4, 4);
    return {{std::min(n[0], n[2]), std::min(n[1], n[3])}, {std::max(n[0], n[2]), std::max(n[1], n[3])}};
}

template <>
SegmentMm convertFromString<SegmentMm>(const StringView& text)
{
    const auto n = vemra::robot::numbersOf(text, 4, 4);
    return {{n[0], n[1]}, {n[2], n[3]}};
}

}  // namespace BT
