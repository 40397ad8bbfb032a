#include "robot/services/maps/borders.h"

#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/sensing/sensing_direction.h"

namespace vemra::robot {
namespace {

constexpr char kOfPart[] = "SubregionBorder";
constexpr char kOfMap[] = "MapBorder";
// A robot at the border of a part has its middle a little outside, so that the floor is swept up to it: the
// wall that it keeps off stands so far beyond.
constexpr double kBeyondPartMm = kVirtualReachMm + 50;

PolygonMm outlineOf(const BoxMm& box)
{
    return {box.low, {box.high.x, box.low.y}, box.high, {box.low.x, box.high.y}};
}

}  // namespace

void BorderLeaves::update()
{
    const auto take = [this](const char* sensor, const char* key, double beyond_mm) {
        if (const auto box = boxOf(parts_.blackboard, key)) {
            const PointMm beyond{beyond_mm, beyond_mm};
            map_.setBorder(sensor, {box->low - beyond, box->high + beyond});
        } else {
            map_.dropBorder(sensor);
        }
    };
    take(kOfPart, "current_subregion", kBeyondPartMm);
    take(kOfMap, "gridmap_limit", 0);
}

// Whoever is outside is not held back.
std::optional<PointMm> BorderLeaves::nearestOf(std::string_view sensor) const
{
    const auto border = map_.borders().find(sensor);
    const PointMm at = map_.pose().at;
    if (border == map_.borders().end() || !contains(border->second, at)) {
        return std::nullopt;
    }
    return nearestOn(outlineOf(border->second), at);
}

std::string BorderLeaves::contact(std::string_view sensor) const
{
    const auto nearest = nearestOf(sensor);
    return std::string(nearest && touchesVirtually(map_.pose(), *nearest) ? kVirtualBump : kNoBump);
}

void BorderLeaves::feltBy(SensingService& sensing) const
{
    for (const char* sensor : {kOfPart, kOfMap}) {
        sensing.addEdge(sensor, [this, sensor] { return contact(sensor); });
    }
}

// A contact with the border nearby, as if the robot had run against it: what follows goes along it as along a
// wall.
BT::NodeStatus BorderLeaves::trigger(const BT::TreeNode& node)
{
    const std::string sensor = textOf(node, "sensor");
    const auto nearest = nearestOf(sensor);
    if (!nearest || !switches_.isOn(sensor)) {
        return BT::NodeStatus::FAILURE;
    }
    map_.touch(*nearest, parts_.state.frame);
    parts_.blackboard.set("bump_dir", kVirtualBump);
    return BT::NodeStatus::SUCCESS;
}

void BorderLeaves::install(leaf::LeafHost& host)
{
    host.action("SensorTriggerBump", [this](BT::TreeNode& node) { return trigger(node); });
}

}  // namespace vemra::robot
