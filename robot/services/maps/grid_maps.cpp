#include "robot/services/maps/grid_maps.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <memory>
#include <string>
#include <utility>

#include "robot/planning/grid_search.h"
#include "robot/planning/planner.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/maps/forbidden.h"

namespace vemra::robot {
namespace {

constexpr double kLimitMarginMm = 1000;
constexpr double kNearLimitMm = 300;
constexpr double kWallPointsEveryMm = 30;

constexpr std::array<std::pair<DrawMode, std::string_view>, 4> kDrawModes = {
    {{DrawMode::Nothing, "None"},
     {DrawMode::BlockOnly, "BlockOnly"},
     {DrawMode::ClearOnly, "ClearOnly"},
     {DrawMode::Everything, "Default"}}};

std::optional<DrawMode> drawModeOf(std::string_view text)
{
    for (const auto& [mode, name] : kDrawModes) {
        if (name == text) {
            return mode;
        }
    }
    return std::nullopt;
}

VirtualWalls switchedOn(const VirtualWalls& walls, const SensorSwitches& switches)
{
    VirtualWalls on;
    if (switches.isOn("VirtualWall")) {
        on.lines = walls.lines;
    }
    if (switches.isOn("PolygonVirtualWall")) {
        on.areas = walls.areas;
    }
    return on;
}

// Points along the piece of an edge that is near.
void addEdge(std::vector<PointMm>& points, const SegmentMm& edge, PointMm at, double radius_mm)
{
    const PointMm foot = nearestOn(edge, at);
    if (distance(foot, at) > radius_mm) {
        return;
    }
    const double length = distance(edge.from, edge.to);
    const int steps = std::max(1, static_cast<int>(length / kWallPointsEveryMm));
    const auto stepAt = [&](double along_mm) {
        return length > 0 ? static_cast<int>(steps * std::clamp(along_mm / length, 0.0, 1.0)) : 0;
    };
    const double along = distance(edge.from, foot);
    for (int i = stepAt(along - radius_mm); i <= std::min(steps, stepAt(along + radius_mm) + 1); ++i) {
        const PointMm p = edge.from + (static_cast<double>(i) / steps) * (edge.to - edge.from);
        if (distance(p, at) <= radius_mm) {
            points.push_back(p);
        }
    }
}

void addOutline(std::vector<PointMm>& points, const PolygonMm& outline, PointMm at, double radius_mm)
{
    for (std::size_t i = 0; i < outline.size(); ++i) {
        addEdge(points, {outline[i], outline[(i + 1) % outline.size()]}, at, radius_mm);
    }
}

PolygonMm boxOutline(PointMm a, PointMm b)
{
    return {a, {b.x, a.y}, b, {a.x, b.y}};
}

}  // namespace

void closeRooms(PlanningMap& plan, const Grid<unsigned char>& closed)
{
    for (std::size_t i = 0; i < plan.ground.cells().size(); ++i) {
        if (closed.at(plan.window().cellOf(i)) != 0) {
            Ground& ground = plan.ground.cells()[i];
            ground = forbidden(ground);
        }
    }
}

PlanningMap planningMapOf(const RobotMap& map, const SensorSwitches& switches)
{
    std::vector<PointMm> contacts;
    contacts.reserve(map.contacts().all().size());
    for (const ContactMap::Contact& contact : map.contacts().all()) {
        contacts.push_back(contact.at);
    }
    contacts.insert(contacts.end(), map.steps().closed().begin(), map.steps().closed().end());
    const VirtualWalls walls = switchedOn(map.virtualWalls(), switches);
    PlanningMap plan = makePlanningMap(map.occupancy().states(map.occupancy().window()),
                                       {.contacts = contacts, .virtual_walls = &walls});
    if (map.roomFence() && switches.isOn("SegmentVirtualWallMap")) {
        closeRooms(plan, map.roomFence()->closed);
    }
    return plan;
}

std::vector<PointMm> obstaclesAround(const RobotMap& map, const SensorSwitches& switches, double radius_mm)
{
    std::vector<PointMm> points = map.obstaclesNear(radius_mm, switches.isOn("LdsPointcloud"));
    const PointMm at = map.pose().at;
    const VirtualWalls walls = switchedOn(map.virtualWalls(), switches);
    for (const SegmentMm& line : walls.lines) {
        addEdge(points, line, at, radius_mm);
    }
    if (map.roomFence() && switches.isOn("SegmentVirtualWallMap")) {
        const std::vector<PointMm>& edge = map.roomFence()->edge;
        std::copy_if(edge.begin(), edge.end(), std::back_inserter(points),
                     [&](PointMm p) { return distance(p, at) <= radius_mm; });
    }
    for (const PolygonMm& area : walls.areas) {
        // From within, the edge is the way out.
        if (!isInside(area, at)) {
            addOutline(points, area, at, radius_mm);
        }
    }
    for (const auto& [sensor, border] : map.borders()) {
        if (contains(border, at) && switches.isOn(sensor)) {
            addOutline(points, boxOutline(border.low, border.high), at, radius_mm);
        }
    }
    return points;
}

/// `SetMapDrawMode`. With LockState "true" it holds the mode for as long as it runs, whatever inner steps ask
/// for, and gives the former one back.
class GridMapService::DrawModeAction final : public BT::ActionNodeBase
{
public:
    DrawModeAction(const std::string& name, const BT::NodeParameters& ports, GridMapService& service)
        : ActionNodeBase(name, ports), service_(service)
    {}

    void halt() override
    {
        if (service_.draw_mode_lock_ == this) {
            service_.draw_mode_lock_ = nullptr;
            service_.map_.setDrawMode(before_);
            service_.showDrawMode();
        }
    }

private:
    BT::NodeStatus tick() override
    {
        const auto mode = drawModeOf(textOf(*this, "draw_mode"));
        if (!mode) {
            return BT::NodeStatus::FAILURE;
        }
        const bool lock = getParam<bool>("LockState").value_or(false);
        if (service_.draw_mode_lock_ == nullptr) {
            if (lock) {
                service_.draw_mode_lock_ = this;
                before_ = service_.map_.drawMode();
            }
            service_.map_.setDrawMode(*mode);
            service_.showDrawMode();
        }
        return lock ? BT::NodeStatus::RUNNING : BT::NodeStatus::SUCCESS;
    }

    GridMapService& service_;
    DrawMode before_ = DrawMode::Everything;
};

void GridMapService::showDrawMode()
{
    for (const auto& [mode, name] : kDrawModes) {
        if (mode == map_.drawMode()) {
            parts_.blackboard.set("current_draw_mode", name);
        }
    }
}

void GridMapService::update()
{
    if (parts_.state.laser_on) {
        map_.update(parts_.state.frame);
    }
    const CellWindow& window = map_.occupancy().window();
    const CellIndex end = window.end;
    const PointMm margin{kLimitMarginMm, kLimitMarginMm};
    const PointMm low = kCellMm * PointMm{double(window.low.column), double(window.low.row)};
    const PointMm high = kCellMm * PointMm{double(end.column), double(end.row)};
    const BoxMm limit{low - margin, high + margin};
    const BT::Any& slot = parts_.blackboard.slot("gridmap_limit");
    if (const auto* before = slot.object<BoxMm>(); before == nullptr || !(*before == limit)) {
        parts_.blackboard.set("gridmap_limit", limit);
    }
    if (!parts_.blackboard.contains("current_draw_mode")) {
        showDrawMode();
    }
}

void GridMapService::install(leaf::LeafHost& host)
{
    const auto makeMap = [this](BT::TreeNode&) {
        parts_.blackboard.set("obstacle_expanded_map",
                              std::make_shared<const PlanningMap>(planningMapOf(map_, switches_)));
        return BT::NodeStatus::SUCCESS;
    };
    host.action("MakeMap", makeMap);
    host.action("Makemap", makeMap);
    host.action("MapCopy", [](BT::TreeNode& node) {
        const BT::Any* source = node.blackboard()->getAny(textOf(node, "source"));
        const std::string target = textOf(node, "target");
        if (source == nullptr || target.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->slot(target).assign(*source);
        return BT::NodeStatus::SUCCESS;
    });
    host.builder("SetMapDrawMode", [this](const std::string& name, const BT::NodeParameters& ports) {
        return std::make_unique<DrawModeAction>(name, ports, *this);
    });
    host.condition("GridmapLimitCheck", [this](BT::TreeNode&) {
        const auto limit = boxOf(parts_.blackboard, "gridmap_limit");
        return passed(limit && contains(*limit, map_.pose().at));
    });
    host.condition("NearGridmapLimit", [this](BT::TreeNode&) {
        const auto limit = boxOf(parts_.blackboard, "gridmap_limit");
        const PointMm margin{kNearLimitMm, kNearLimitMm};
        return passed(limit && !contains({limit->low + margin, limit->high - margin}, map_.pose().at));
    });
    host.action("ResetMapCleanData", [this](BT::TreeNode&) {
        map_.forgetCleaning();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("ResetMap", [this](BT::TreeNode&) {
        // Before a second pass the walls stay; all that tells what is done is begun anew.
        if (parts_.blackboard.contains("reset_map_remain_submap")) {
            map_.forgetCleaning();
            parts_.report(event::PassBegins{});
        } else {
            map_.reset();
        }
        return BT::NodeStatus::SUCCESS;
    });
    // The laser's view is made anew with each of its turns, and a contact that is not drawn is soon
    // forgotten.
    host.action("LaserReset", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    installVirtualWalls(host);
}

void GridMapService::installVirtualWalls(leaf::LeafHost& host)
{
    host.action("GenerateVirtualWalls", [this](BT::TreeNode&) {
        generateVirtualWalls();
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("PromptInVirtualWall", [this](BT::TreeNode&) { return findWayOutOfVirtualWall(); });
    // Who steers by the surroundings goes by the laser's last turn, which is always at hand.
    host.action("get_local_map", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
}

void GridMapService::generateVirtualWalls()
{
    map_.setVirtualWalls(virtualWallsOf(parts_.blackboard));
}

BT::NodeStatus GridMapService::findWayOutOfVirtualWall()
{
    const PlanningMap plan = planningMapOf(map_, switches_);
    const CellIndex here = cellAt(map_.pose().at);
    if (!isForbidden(plan.at(here))) {
        return BT::NodeStatus::FAILURE;
    }
    // Whatever it touches as well, it gets off that.
    CostGrid costs = costsFor(plan, here, {.unknown = false});
    for (std::size_t i = 0; i < costs.cells().size(); ++i) {
        const Ground ground = plan.ground.cells()[i];
        std::uint8_t& cost = costs.cells()[i];
        cost = cost != 0 || ground == Ground::Forbidden || ground == Ground::Open ? kPlainStep : 0;
    }
    const auto way = findNearest(costs, here, [&](CellIndex cell) { return isOpenAround(plan, cell); });
    if (!way) {
        return BT::NodeStatus::SUCCESS;
    }
    parts_.blackboard.set("out_vw_point", centreOf(way->cells.back()));
    return BT::NodeStatus::FAILURE;
}

}  // namespace vemra::robot
