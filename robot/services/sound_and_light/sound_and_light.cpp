#include "robot/services/sound_and_light/sound_and_light.h"

#include <ostream>

#include "robot/services/core/leaf_functions.h"

namespace vemra::robot {

namespace {

constexpr std::int64_t kMusicMs = 2000;
constexpr std::uint64_t kBrightFrames = 1500;
const std::string kLightOut = "BUTTON_LED_OFF";

}  // namespace

std::ostream& operator<<(std::ostream& out, const MusicRequest& request)
{
    return out << "music " << request.number;
}

void SoundAndLightService::play(const MusicRequest& request)
{
    if (request.serial == heard_)
        return;
    const std::int64_t now = parts_.blackboard.clock().milliseconds();
    if (!request.interrupt && now < busy_until_ms_)
        return;
    heard_ = request.serial;
    if (request.number == 0)
        return;
    busy_until_ms_ = now + kMusicMs;
    parts_.report(event::Music{request.number, request.interrupt});
}

bool SoundAndLightService::dimmed() const
{
    const RobotState& state = parts_.state;
    return state.quiet_hours && dimming_in_ != 0 && state.frame <= dimming_in_ + 1 &&
           state.frame >= bright_until_;
}

void SoundAndLightService::showLight()
{
    const std::string& seen = dimmed() ? kLightOut : light_;
    if (seen == shown_)
        return;
    shown_ = seen;
    parts_.report(event::Light{seen});
}

void SoundAndLightService::install(leaf::LeafHost& host)
{
    host.action("SetMusicPlayPara", [this](BT::TreeNode& node) {
        MusicRequest request;
        const std::string output = textOf(node, "Output");
        if (!node.getParam("MusicNumber", request.number) ||
            !node.getParam("Interrupt_En", request.interrupt) ||
            !node.getParam("MusicPlayTimes", request.times) || output.empty())
            return BT::NodeStatus::FAILURE;
        request.serial = ++requests_;
        parts_.blackboard.set(output, request);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("RobotMusicPlay", [this](BT::TreeNode& node) {
        MusicRequest request;
        if (!node.getParam("MusicPara", request))
            return BT::NodeStatus::FAILURE;
        play(request);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SaySomething", [this](BT::TreeNode& node) {
        parts_.report(event::Message{textOf(node, "message")});
        return BT::NodeStatus::SUCCESS;
    });
    host.action("Log", [this](BT::TreeNode& node) {
        parts_.report(event::LevelMessage{textOf(node, "message"), textOf(node, "level")});
        return BT::NodeStatus::SUCCESS;
    });
    installLights(host);
}

void SoundAndLightService::installLights(leaf::LeafHost& host)
{
    host.action("Led_Mode_Set", [this](BT::TreeNode& node) {
        light_ = PortText(node, "LedMode").view();
        showLight();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("RobotAnnoyModeLEDCtl", [this](BT::TreeNode&) {
        dimming_in_ = parts_.state.frame;
        return BT::NodeStatus::SUCCESS;
    });
    host.action("RobotAnnoyLedON", [this](BT::TreeNode&) {
        if (dimmed())
            woken_in_ = parts_.state.frame;
        bright_until_ = parts_.state.frame + kBrightFrames;
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("IsRobotInAnnoyModeLedOff", [this](BT::TreeNode&) {
        // The key that lights the panel found it dark: that is all it is for.
        return passed(dimmed() || (woken_in_ && *woken_in_ == parts_.state.frame));
    });
    host.action("SetDustLight", [this](BT::TreeNode& node) {
        if (!isText(node, "StaLedMode", station_light_)) {
            station_light_ = PortText(node, "StaLedMode").view();
            parts_.report(event::StationLight{station_light_});
        }
        return BT::NodeStatus::SUCCESS;
    });
}

}  // namespace vemra::robot
