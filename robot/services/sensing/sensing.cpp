#include "robot/services/sensing/sensing.h"

#include <utility>

#include "robot/services/core/leaf_functions.h"
#include "robot/services/sensing/sensing_direction.h"

namespace vemra::robot {
namespace {

constexpr double kRearHalfDeg = 40;
constexpr double kRearReachMm = kRobotRadiusMm + 30;
constexpr double kSideHalfDeg = 30;
constexpr double kMovedS = 0.5;
constexpr double kMovedLatelyS = 2;
constexpr double kHundredths = 100;

/// `TemporarilyDisableSensor` and `TemporarilyEnableSensor`: RUNNING from the first tick on, undone by the
/// halt.
class SensorScope final : public BT::ActionNodeBase
{
public:
    SensorScope(const std::string& name, const BT::NodeParameters& ports, SensorSwitches& switches, bool on)
        : ActionNodeBase(name, ports), switches_(switches), on_(on)
    {}

    void halt() override { switches_.close(this); }

private:
    BT::NodeStatus tick() override
    {
        if (status() != BT::NodeStatus::RUNNING) {
            bool locked = false;
            getParam("lock_status", locked);
            const std::string sensor = textOf(*this, "sensor");
            if (sensor.empty()) {
                return BT::NodeStatus::FAILURE;
            }
            switches_.open(this, sensor, on_, locked);
        }
        return BT::NodeStatus::RUNNING;
    }

    SensorSwitches& switches_;
    bool on_;
};

std::optional<double> bearingOfSide(std::string_view side)
{
    if (side == "ahead" || side == "front") {
        return 0;
    }
    if (side == "left") {
        return 90;
    }
    if (side == "right") {
        return -90;
    }
    if (side == "behind" || side == "back") {
        return 180;
    }
    return std::nullopt;
}

}  // namespace

SensingService::SensingService(const RobotParts& parts, const PoseSource& pose, SensorSwitches& switches,
                               const VirtualWalls& walls)
    : parts_(parts), pose_(pose), switches_(switches), walls_(walls)
{
    // This robot has a laser and no camera.
    parts_.blackboard.set("Enable_Laser", "");
}

void SensingService::addEdge(std::string sensor, std::function<std::string()> direction)
{
    edges_.push_back({std::move(sensor), std::move(direction)});
}

void SensingService::update()
{
    // Asked for anew in every frame in which it shall hold.
    cliffs_off_ = parts_.blackboard.erase("shutdown_cliff");
}

std::string SensingService::virtualContact() const
{
    const PoseMm pose = pose_.pose();
    const PointMm at = pose.at;
    if (switches_.isOn("VirtualWall")) {
        const auto line = walls_.nearestOfLines(at, kVirtualReachMm);
        if (line && touchesVirtually(pose, *line)) {
            return std::string(kVirtualBump);
        }
    }
    if (switches_.isOn("PolygonVirtualWall") && walls_.areaAt(at) == nullptr) {
        // Within an area nothing holds the robot back from leaving it.
        const auto outline = walls_.nearestOfAreas(at, kVirtualReachMm);
        if (outline && touchesVirtually(pose, *outline)) {
            return std::string(kVirtualBump);
        }
    }
    for (const Edge& edge : edges_) {
        if (switches_.isOn(edge.sensor)) {
            std::string direction = edge.direction();
            if (isBump(direction)) {
                return direction;
            }
        }
    }
    return std::string(kNoBump);
}

std::string SensingService::contact() const
{
    const bool ignored = parts_.blackboard.contains("ignore_all_bump_event_flag");
    // Docked, the bumper rests on the dock.
    if (!ignored && !parts_.state.contacts.touching() && parts_.body.bumper().any()) {
        return directionOf(parts_.body.bumper());
    }
    if (!cliffs_off_ && parts_.body.cliffs().any()) {
        return directionOf(parts_.body.cliffs(), "_cliff");
    }
    if (ignored) {
        return std::string(kNoBump);
    }
    std::string edge = virtualContact();
    if (isBump(edge)) {
        return edge;
    }
    if (switches_.isOn(kRearBump)) {
        const auto behind = parts_.body.recentScan().nearest({180}, {kRearHalfDeg});
        if (parts_.body.rearContact() || (behind && *behind <= kRearReachMm)) {
            return std::string(kRearBump);
        }
    }
    return std::string(kNoBump);
}

BT::NodeStatus SensingService::tellContact(BT::TreeNode& node) const
{
    const std::string direction = contact();
    const std::string key = textOf(node, "out_bump_dir");
    if (!key.empty()) {
        node.blackboard()->set(key, direction);
    }
    return passed(isBump(direction));
}

void SensingService::install(leaf::LeafHost& host)
{
    installContacts(host);
    installScopes(host);
    installBodyState(host);
}

void SensingService::installContacts(leaf::LeafHost& host)
{
    for (const char* leaf : {"SensorCheckBumped", "CheckClifBump"}) {
        host.condition(leaf, [this](BT::TreeNode& node) { return tellContact(node); });
    }
    host.condition("Bumped", [](BT::TreeNode& node) { return passed(isBump(textOf(node, "bump_dir"))); });
    host.condition("BumpdirMatch", [](BT::TreeNode& node) {
        return passed(textOf(node, "para_a") == textOf(node, "para_b"));
    });
    host.action("BumpdirMerge", [](BT::TreeNode& node) {
        const std::string key = textOf(node, "out_bumpdir");
        if (key.empty()) {
            return BT::NodeStatus::FAILURE;
        }
        node.blackboard()->set(key, mergedDirection(textOf(node, "bumpdir1"), textOf(node, "bumpdir2")));
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SensorProbeBump", [this](BT::TreeNode& node) {
        const std::string key = textOf(node, "out_str");
        const PointMm at = pose_.pose().at;
        const bool area = switches_.isOn("PolygonVirtualWall") &&
                          (walls_.areaAt(at) != nullptr || walls_.nearestOfAreas(at, kVirtualReachMm));
        if (!key.empty()) {
            node.blackboard()->set(key, area ? std::string("PolygonTrap") : contact());
        }
        return BT::NodeStatus::SUCCESS;
    });
}

void SensingService::installScopes(leaf::LeafHost& host)
{
    const auto scope = [this](bool on) -> BT::NodeBuilder {
        return [this, on](const std::string& name, const BT::NodeParameters& ports) {
            return std::make_unique<SensorScope>(name, ports, switches_, on);
        };
    };
    host.builder("TemporarilyDisableSensor", scope(false));
    host.builder("TemporarilyEnableSensor", scope(true));
}

void SensingService::installBodyState(leaf::LeafHost& host)
{
    Body& body = parts_.body;
    host.condition("DoesRobotMoved",
                   [&body](BT::TreeNode&) { return passed(body.feltMovedWithin(kMovedS)); });
    host.condition("DoesIMUDetectMoveLast2S",
                   [&body](BT::TreeNode&) { return passed(body.feltMovedWithin(kMovedLatelyS)); });
    host.condition("DoesWheelsDrop", [&body](BT::TreeNode&) { return passed(body.wheelDrop().any()); });
    host.action("GetWheelsDropStateBeforeSleep", [this](BT::TreeNode&) {
        wheels_before_sleep_ = parts_.body.wheelDrop();
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("DoesWheelsChangedWhenSleep",
                   [this](BT::TreeNode&) { return passed(parts_.body.wheelDrop() != wheels_before_sleep_); });
    host.condition("IfOnAPlane", [&body](BT::TreeNode& node) {
        double limit = 0;
        return passed(node.getParam("Degree", limit) && body.tiltDeg() * kHundredths <= limit);
    });
    host.condition("IsCloseToObstacleLds", [&body](BT::TreeNode& node) {
        double limit_mm = 0;
        const auto bearing = bearingOfSide(textOf(node, "dir"));
        if (!bearing || !node.getParam("threshold", limit_mm)) {
            return BT::NodeStatus::FAILURE;
        }
        const auto nearest = body.recentScan().nearest({*bearing}, {kSideHalfDeg});
        return passed(nearest && *nearest < limit_mm);
    });
    host.condition("BodyInObstacle", [&body](BT::TreeNode& node) {
        double margin_mm = 0;
        const auto nearest = body.recentScan().nearest({0}, {180});
        return passed(node.getParam("outline_dist", margin_mm) && nearest &&
                      *nearest < kRobotRadiusMm + margin_mm);
    });
}

}  // namespace vemra::robot
