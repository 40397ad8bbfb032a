#include "robot/services/station/station.h"

#include <utility>

#include "robot/base/clock.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/health/health.h"

namespace vemra::robot {
namespace {

constexpr std::int64_t kBlockWarningMs = 500;
constexpr std::int64_t kBlockErrorMs = 10'000;
constexpr std::int64_t kFanStopsAfterMs = 1000;      // of an error
constexpr std::int64_t kLongEmptyingMs = 1'800'000;  // of cleaning
constexpr std::uint64_t kPauseFrames = 250;          // between two emptyings

}  // namespace

StationService::StationService(const RobotParts& parts) : parts_(parts)
{}

bool StationService::normal() const
{
    for (const std::string& code : heard_.errors) {
        if (code != "DUST_LOCK")
            return false;
    }
    return !heard_.warnings.contains("DUST_FULL");
}

StationService::Faults StationService::faults() const
{
    Faults now = raised_;
    if (!cap_closed_)
        now.errors.insert("DUST_CAP");
    if (!bag_in_)
        now.errors.insert("DUST_BAG");
    if (locked_)
        now.errors.insert("DUST_LOCK");
    if (bag_full_)
        now.warnings.insert("DUST_FULL");
    if (blocked_ms_ >= kBlockErrorMs)
        now.errors.insert("DUST_BLOCK");
    else if (blocked_ms_ >= kBlockWarningMs && !going_on_)
        now.warnings.insert("DUST_BLOCK");
    return now;
}

bool StationService::take(const Happening& what)
{
    if (const auto* change = std::get_if<StationChange>(&what)) {
        for (const auto& [part, on] : change->parts)
            turn(part, on);
        return true;
    }
    if (const auto* fault = std::get_if<Fault>(&what)) {
        if (fault->kind != FaultKind::StationError && fault->kind != FaultKind::StationWarning)
            return false;
        Codes& codes = fault->kind == FaultKind::StationError ? raised_.errors : raised_.warnings;
        if (fault->raised)
            codes.insert(fault->code);
        else
            codes.erase(fault->code);
        return true;
    }
    if (!std::holds_alternative<EmptyNow>(what))
        return false;
    parts_.blackboard.set("APPDustHandle", "true");
    return true;
}

void StationService::turn(StationPart part, bool on)
{
    switch (part) {
        case StationPart::Cap:
            cap_closed_ = on;
            break;
        case StationPart::Bag:
            bag_in_ = on;
            break;
        case StationPart::Block:
            blocked_ = on;
            break;
        case StationPart::Lock:
            locked_ = on;
            break;
        case StationPart::Link:
            in_reach_ = on;
            break;
        case StationPart::Full:
            bag_full_ = on;
            break;
    }
}

void StationService::update()
{
    if (isCleaning(parts_.state.modes.current()))
        dirt_ms_ += kFrameMs;
    if (!blocked_) {
        blocked_ms_ = 0;
        going_on_ = false;
    }
    if (fan_)
        blow();
    if (linked())
        hear();
}

// One frame under the fan.
void StationService::blow()
{
    if (!parts_.state.contacts.touching()) {
        stopFan("robot gone");
        return;
    }
    if (blocked_)
        blocked_ms_ += kFrameMs;
    else if (normal())
        setLeft(left_ms_ - kFrameMs);
    error_ms_ = normal() ? 0 : error_ms_ + kFrameMs;
    if (left_ms_ == 0) {
        dirt_ms_ = 0;
        emptied_at_ = parts_.state.frame;
        ever_emptied_ = true;
        stopFan("done");
    } else if (error_ms_ >= kFanStopsAfterMs) {
        stopFan("error");
    }
}

void StationService::hear()
{
    Faults now = faults();
    if (now == heard_)
        return;
    const auto tell = [this](const Codes& before, const Codes& after, bool warning) {
        for (const std::string& code : after)
            if (!before.contains(code))
                parts_.report(event::StationCode{code, true, warning});
        for (const std::string& code : before)
            if (!after.contains(code))
                parts_.report(event::StationCode{code, false, warning});
    };
    tell(heard_.errors, now.errors, false);
    tell(heard_.warnings, now.warnings, true);
    heard_ = std::move(now);
    news_ = true;
}

void StationService::setLeft(std::int64_t time_ms)
{
    left_ms_ = std::max<std::int64_t>(time_ms, 0);
    parts_.blackboard.set("dust_left_time", left_ms_);
}

void StationService::stopFan(const char* why)
{
    if (!std::exchange(fan_, false))
        return;
    error_ms_ = 0;
    parts_.report(event::Note{
        std::string("emptying stops: ") + why, "emptying", {{"running", false}, {"left_ms", left_ms_}}});
}

void StationService::order(const std::string& status, std::int64_t time_ms)
{
    if (status == "DUST_QUIT") {
        stopFan("told to");
    } else if (status == "DUST_PAUSE") {
        stopFan("paused");
        setLeft(time_ms);
    } else if (linked() && !locked_ && time_ms > 0) {
        setLeft(time_ms);
        error_ms_ = 0;
        going_on_ = status == "DUST_CONTINUE";
        fan_ = true;
        parts_.report(event::Note{"emptying runs", "emptying", {{"running", true}, {"left_ms", left_ms_}}});
    }
}

void StationService::install(leaf::LeafHost& host)
{
    parts_.blackboard.set("dust_left_time", left_ms_);
    installEmptying(host);
    installStates(host);
}

void StationService::installEmptying(leaf::LeafHost& host)
{
    host.action("DustContrlSet", [this](BT::TreeNode& node) {
        std::int64_t time_ms = 0;
        if (!node.getParam("time_set", time_ms))
            return BT::NodeStatus::FAILURE;
        order(textOf(node, "dust_status"), time_ms);
        return BT::NodeStatus::SUCCESS;
    });
    host.builder("DustTimeHandle", RunningAction::builder([this](BT::TreeNode&) {
                     return fan_ ? BT::NodeStatus::RUNNING : BT::NodeStatus::SUCCESS;
                 }));
    host.action("SetDustTime", [this](BT::TreeNode& node) {
        std::int64_t time_ms = 0;
        if (!node.getParam("time", time_ms))
            return BT::NodeStatus::FAILURE;
        setLeft(time_ms);
        return BT::NodeStatus::SUCCESS;
    });
    host.action("SetDustStatus", [this](BT::TreeNode& node) {
        if (isText(node, "dust_state", "DUST_END"))
            stopFan("told to");
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("DoesDustStatus", [this](BT::TreeNode& node) {
        return passed(isText(node, "dust_state", fan_ ? "DUST_RUNNING" : "DUST_END"));
    });
    host.condition("IsInDustLock",
                   [this](BT::TreeNode&) { return passed(heard_.errors.contains("DUST_LOCK")); });
    host.condition("IsInFrequentDust", [this](BT::TreeNode&) {
        return passed(!ever_emptied_ || parts_.state.frame - emptied_at_ >= kPauseFrames);
    });
    host.condition("NeedLongDustHandle",
                   [this](BT::TreeNode&) { return passed(dirt_ms_ >= kLongEmptyingMs); });
}

void StationService::installStates(leaf::LeafHost& host)
{
    // The pressure sensor of this box needs no calibration.
    host.action("CheckBaroCali", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.condition("IsStationNormal", [this](BT::TreeNode&) { return passed(normal()); });
    host.condition("DoesHappenStationErr", [this](BT::TreeNode& node) {
        return passed(heard_.errors.contains(bareCode(PortText(node, "ErrCode").view())));
    });
    host.condition("DoesHappenStationWarning", [this](BT::TreeNode& node) {
        return passed(heard_.warnings.contains(bareCode(PortText(node, "ErrCode").view())));
    });
    host.condition("IsInfraredConnect", [this](BT::TreeNode&) { return passed(linked()); });
    host.condition("NeedSaveStationInfo",
                   [this](BT::TreeNode&) { return passed(std::exchange(news_, false)); });
    host.condition("DoesStationCoverOn", [this](BT::TreeNode&) { return passed(cap_closed_); });

    // This station neither washes nor shines; what it is told it keeps.
    host.action("SetWashStatus", [this](BT::TreeNode& node) {
        wash_state_ = PortText(node, "wash_state").view();
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("DoesWashStatus",
                   [this](BT::TreeNode& node) { return passed(isText(node, "wash_state", wash_state_)); });
    host.action("SetUvLightStatus", [this](BT::TreeNode& node) {
        uv_state_ = PortText(node, "uv_contrl_status").view();
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("DoesUvLightStatus", [this](BT::TreeNode& node) {
        return passed(isText(node, "uv_contrl_status", uv_state_));
    });
}

}  // namespace vemra::robot
