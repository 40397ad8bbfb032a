#include "robot/services/cleaning/cleaning_system.h"

#include <fmt/format.h>

#include <cmath>
#include <string>

#include "robot/base/clock.h"
#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {
namespace {

// The power of a brush that stands ready and does not turn.
constexpr int kReady = 1;
constexpr int kBrush = 60;
constexpr int kFan = 55;
constexpr int kSideBrush = 35;
constexpr int kOnCarpet = 90;
constexpr double kClothWidthM = 0.2;
constexpr double kUsualWashM2 = 15;
constexpr double kDirty = 100;

}  // namespace

void CleaningSystemService::setPowers(const Powers& powers, bool wipes_alone)
{
    // Floor that is wiped is as good as swept.
    parts_.state.brushes_on = powers.brush > kReady || wipes_alone;
    parts_.state.fan_on = powers.fan > kReady;
    if (powers == powers_)
        return;
    powers_ = powers;
    parts_.report(event::Note{fmt::format("cleaning system: Brush {} Fan {} Pump {} SideBrush {}",
                                          powers.brush, powers.fan, powers.pump, powers.side_brush),
                              "clean_system",
                              {{"Brush", std::int64_t{powers.brush}},
                               {"Fan", std::int64_t{powers.fan}},
                               {"Pump", std::int64_t{powers.pump}},
                               {"SideBrush", std::int64_t{powers.side_brush}}}});
}

bool CleaningSystemService::wipesAlone() const
{
    std::string wanted;
    return mop_gear_ > 0 && hasKey("mop_mode") && parts_.blackboard.get("robot_mop_mode", wanted) &&
           wanted == "1";
}

void CleaningSystemService::setForRun()
{
    const bool wipes_alone = wipesAlone();
    // Asked for in each frame in which it shall hold, after this or before.
    const bool pressed = pressed_in_ + 1 >= parts_.state.frame && pressed_in_ != 0;
    const bool water = hasKey("mop_mode") && hasKey("water_box") && !hasKey("close_water_box");
    Powers powers{kReady, kReady, water ? 1 : 0, kReady};
    if (!wipes_alone) {
        powers.brush = pressed ? kOnCarpet : kBrush;
        powers.fan = pressed ? kOnCarpet : kFan;
        powers.side_brush = kSideBrush;
    }
    run_in_ = parts_.state.frame;
    setPowers(powers, wipes_alone);
}

double CleaningSystemService::areaOfAWash() const
{
    double wanted = 0;
    return parts_.blackboard.get("wash_mop_mode", wanted) && wanted > 0 ? wanted : kUsualWashM2;
}

// One frame of wiping.
void CleaningSystemService::soil()
{
    const WheelSpeeds wheels = parts_.body.wheelSpeeds();
    const double way_m = std::abs(wheels.left + wheels.right) / 2 * kFrameMs / 1e6;
    if (way_m == 0)
        return;
    double dirt = 0;
    parts_.blackboard.get("mop_dirty", dirt);
    parts_.blackboard.set("mop_dirty", dirt + kDirty * way_m * kClothWidthM / areaOfAWash());
}

void CleaningSystemService::update()
{
    const bool runs = run_in_ != 0 && run_in_ + 1 == parts_.state.frame;
    if (runs && mop_gear_ > 0 && hasKey("mop_mode"))
        soil();
}

void CleaningSystemService::install(leaf::LeafHost& host)
{
    host.action("SetCleanSystem", [this](BT::TreeNode& node) {
        Powers powers;
        if (!node.getParam("Brush", powers.brush) || !node.getParam("Fan", powers.fan) ||
            !node.getParam("Pump", powers.pump) || !node.getParam("SideBrush", powers.side_brush))
            return BT::NodeStatus::FAILURE;
        setPowers(powers, false);
        return BT::NodeStatus::SUCCESS;
    });
    installRun(host);
    host.action("RobotIRSwitch", [this](BT::TreeNode& node) {
        bool cliff = false;
        bool front = false;
        if (!node.getParam("Cliff_ON", cliff) || !node.getParam("Front_ON", front))
            return BT::NodeStatus::FAILURE;
        if (infrared_ == std::pair(cliff, front))
            return BT::NodeStatus::SUCCESS;
        infrared_ = {cliff, front};
        const auto word = [](bool on) { return on ? "on" : "off"; };
        parts_.report(event::Note{std::string("infrared: cliff ") + word(cliff) + ", front " + word(front),
                                  "infrared",
                                  {{"cliff", cliff}, {"front", front}}});
        return BT::NodeStatus::SUCCESS;
    });
    // What a task changed of it is set anew by the next one.
    host.action("RestoreCleanMode", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.action("LDS_Switch",
                [this](BT::TreeNode& node) { return passed(node.getParam("state", parts_.state.laser_on)); });
}

void CleaningSystemService::installRun(leaf::LeafHost& host)
{
    host.action("MoveCleanSysModeSet", [this](BT::TreeNode&) {
        setForRun();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("RobotMotorPressPlusSet", [this](BT::TreeNode&) {
        pressed_in_ = parts_.state.frame;
        return BT::NodeStatus::SUCCESS;
    });
    host.action("RobotMopGearSet",
                [this](BT::TreeNode& node) { return passed(node.getParam("value", mop_gear_)); });
    // The user's settings; this robot has no sensor that tells a carpet.
    host.condition("DoesRobotCheckCarpet", [this](BT::TreeNode&) { return passed(hasKey("carpet_check")); });
    host.condition("DoesRobotCarpetPressEnable",
                   [this](BT::TreeNode&) { return passed(hasKey("carpet_press")); });
}

}  // namespace vemra::robot
