#include <cmath>
#include <nlohmann/json.hpp>

#include "robot/base/clock.h"
#include "robot/host/robot.h"
#include "robot/world/sweeping.h"

namespace vemra::robot {
namespace {

nlohmann::ordered_json counted(const auto& counts)
{
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (const auto& [name, count] : counts)
        object[name.empty() ? "none" : name] = count;
    return object;
}

double hundredths(double value)
{
    return std::round(value * 100) / 100;
}

nlohmann::ordered_json secondsOrNull(const std::optional<std::uint64_t>& frame)
{
    return frame ? nlohmann::ordered_json(hundredths(static_cast<double>(*frame * kFrameMs) / 1000))
                 : nlohmann::ordered_json(nullptr);
}

nlohmann::ordered_json told(const std::vector<Passes::Pass>& passes)
{
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const Passes::Pass& pass : passes)
        all.push_back({{"time_s", hundredths(static_cast<double>(pass.frames * kFrameMs) / 1000)},
                       {"distance_m", hundredths(pass.run_mm / 1000)},
                       {"coverage", std::round(pass.coverage * 1e4) / 1e4},
                       {"recleaned_m2", hundredths(pass.again_m2)}});
    return all;
}

}  // namespace

nlohmann::ordered_json Robot::report() const
{
    const PoseMm& stands = body_.truePose();
    const SweptFloor::Share share = swept_.shareOf(first_place_);
    const auto swept_by = swept_.sweptBy(first_place_, {0.9, 0.97});
    return {{"scenario", setup_.scenario.name},
            {"tree", setup_.tree},
            {"root_ended", {{"SUCCESS", root_successes_}, {"FAILURE", root_failures_}}},
            {"seed", setup_.seed},
            {"dock", toText(setup_.dock)},
            {"frames", state_.frame},
            {"ms", state_.frame * kFrameMs},
            {"powered_off", state_.powered_off},
            {"mode", toText(state_.modes.current())},
            {"task_state", keys_[0].text},
            {"robot_status", keys_[1].text},
            {"battery", hundredths(state_.battery_percent)},
            {"on_dock", state_.contacts.touching()},
            {"docking_attempts", figures_.dockingAttempts()},
            {"docked", figures_.docked()},
            {"charges", figures_.charges()},
            {"stands_at", std::vector<double>{std::round(stands.at.x), std::round(stands.at.y),
                                              std::round(wrapped(stands.yaw).value)}},
            {"run_mm", std::round(body_.runMm())},
            {"swept_m2", hundredths(swept_.areaM2())},
            {"recleaned_m2", hundredths(swept_.againM2())},
            {"reachable_m2", hundredths(share.reachable_m2)},
            {"cleaned_m2", hundredths(share.cleaned_m2)},
            {"coverage", std::round(share.part() * 1e4) / 1e4},
            {"known_floor", frames_in_mode_.contains(toText(Mode::FastMapBuild))
                                ? nlohmann::ordered_json(std::round(knownFloor() * 1e4) / 1e4)
                                : nlohmann::ordered_json(nullptr)},
            {"distance_m", hundredths(body_.runMm() / 1000)},
            {"time_s", hundredths(static_cast<double>(state_.frame * kFrameMs) / 1000)},
            {"ideal_time_s", std::round(share.reachable_m2 * 1e6 / kBrushWidthMm / kLineSpeedMmS)},
            {"t90_s", secondsOrNull(swept_by[0])},
            {"t97_s", secondsOrNull(swept_by[1])},
            {"passes", told(passes_.upTo(state_.frame, body_, swept_, first_place_))},
            {"turns", figures_.turns()},
            {"bumps", figures_.bumps()},
            {"escapes", figures_.escapes()},
            {"stalls", figures_.stalls()},
            {"expectations",
             {{"met", expectations_.met()}, {"unmet", unmet_.size()}, {"open", expectations_.open()}}},
            {"frames_in_mode", counted(frames_in_mode_)},
            {"leaves_without_service", counted(defaults_met_)},
            {"trees_not_written", counted(unwritten_met_)}};
}

}  // namespace vemra::robot
