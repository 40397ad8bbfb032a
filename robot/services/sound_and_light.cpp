#include "robot/services/sound_and_light.h"

#include <ostream>

#include "robot/services/leaf_functions.h"

namespace vemra::robot {

namespace {

constexpr std::int64_t kMusicMs = 2000;

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
    parts_.report("music", std::to_string(request.number),
                  {{"number", request.number}, {"interrupt", request.interrupt}});
}

void SoundAndLightService::setLight(std::string& light, const std::string& mode, const char* kind)
{
    if (light == mode)
        return;
    light = mode;
    parts_.report(kind, mode, {});
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
    host.action("Led_Mode_Set", [this](BT::TreeNode& node) {
        setLight(light_, textOf(node, "LedMode"), "light");
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SetDustLight", [this](BT::TreeNode& node) {
        setLight(station_light_, textOf(node, "StaLedMode"), "station_light");
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SaySomething", [this](BT::TreeNode& node) {
        parts_.report("message", textOf(node, "message"), {});
        return BT::NodeStatus::SUCCESS;
    });
    host.action("Log", [this](BT::TreeNode& node) {
        parts_.report("message", textOf(node, "message"), {{"level", textOf(node, "level")}});
        return BT::NodeStatus::SUCCESS;
    });
}

}  // namespace vemra::robot
