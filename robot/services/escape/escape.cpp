#include "robot/services/escape/escape.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "robot/base/clock.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/motion_action.h"
#include "robot/services/escape/escape_path.h"

namespace vemra::robot {
namespace {

constexpr double kFrameS = kFrameMs / 1000.0;
/// Frames without a sign after which the robot counts as free: a few more, so that it comes away from there.
constexpr int kCalmFrames = 10;
/// How long a lifted robot waits to be set down.
constexpr int kInAirFrames = 500;
constexpr double kTiltDeg = 10;
/// Escapes that may fail in a row before it is an error.
constexpr int kMostTries = 3;
/// Escapes within so long and so near to each other are from one and the same trap.
constexpr std::uint64_t kHereFrames = 1500;
constexpr double kHereMm = 250;
constexpr std::size_t kTriesHere = 2;
constexpr std::size_t kRemembered = 16;

}  // namespace

namespace {

/// The trouble lies in where the robot stands, and not in what has caught it.
bool isOfThePlace(EscapeKind kind)
{
    return kind == EscapeKind::Bump || kind == EscapeKind::ForwardSuffocate ||
           kind == EscapeKind::TurnSuffocate || kind == EscapeKind::BumpRepeat;
}

}  // namespace

/// A motion out of one kind of trouble.
class EscapeService::Deal final : public MotionAction
{
public:
    Deal(const std::string& name, const BT::NodeParameters& ports, Body& body, EscapeService& service,
         const EscapeName& escape)
        : MotionAction(name, ports, body), service_(service), kind_(escape.kind)
    {}

private:
    bool begin() override
    {
        const Sides& bumper = body().bumper();
        path_ = escapePath(kind_, bumper.any() ? bumper : body().cliffs());
        step_ = 0;
        frame_ = 0;
        calm_ = 0;
        in_air_ = 0;
        // What did not help lately does not help now.
        const std::size_t before = service_.timesHere();
        into_the_open_ = before >= kTriesHere && isOfThePlace(kind_);
        if (into_the_open_) {
            path_ = pathIntoTheOpen(body().recentScan(), before - kTriesHere);
        }
        service_.began(kind_);
        return true;
    }

    BT::NodeStatus advance() override
    {
        if (body().wheelDrop().both()) {
            drive({});
            return ++in_air_ < kInAirFrames ? BT::NodeStatus::RUNNING : end(false);
        }
        workOff();
        calm_ = service_.felt(kind_) ? 0 : calm_ + 1;
        if (calm_ >= kCalmFrames && !leadsAway(kind_) && !into_the_open_) {
            return end(true);
        }
        if (step_ < path_.size() && frame_ >= path_[step_].frames) {
            ++step_;
            frame_ = 0;
        }
        if (step_ >= path_.size()) {
            return end(leadsAway(kind_) || into_the_open_ || calm_ > 0);
        }
        ++frame_;
        drive(path_[step_].speeds);
        return BT::NodeStatus::RUNNING;
    }

    // What has been caught comes loose by the work of the wheels.
    void workOff()
    {
        const WheelSpeeds wheels = body().wheelSpeeds();
        double& left_mm = service_.trouble(kind_);
        left_mm = std::max(0.0, left_mm - (std::abs(wheels.left) + std::abs(wheels.right)) / 2 * kFrameS);
    }

    BT::NodeStatus end(bool free)
    {
        service_.ended(kind_, free, in_air_ >= kInAirFrames);
        return passed(free);
    }

    EscapeService& service_;
    EscapeKind kind_;
    std::vector<WheelStep> path_;
    bool into_the_open_ = false;
    std::size_t step_ = 0;
    int frame_ = 0;
    int calm_ = 0;
    int in_air_ = 0;
};

bool EscapeService::take(const Happening& what)
{
    const auto* trouble = std::get_if<Stuck>(&what);
    if (trouble == nullptr) {
        return false;
    }
    if (trouble->stuck) {
        raise(trouble->kind);
    } else {
        clear(trouble->kind);
    }
    return true;
}

void EscapeService::raise(EscapeKind kind, double work_mm)
{
    switch (kind) {
        case EscapeKind::Bump:
            parts_.body.jamBumper({.middle = true}, work_mm);
            break;
        case EscapeKind::Immovable:
            parts_.body.holdFast(work_mm);
            break;
        case EscapeKind::Gesture:
            parts_.body.tilt(kTiltDeg, work_mm);
            break;
        default:
            trouble(kind) = work_mm;
    }
}

void EscapeService::clear(EscapeKind kind)
{
    raise(kind, 0);
}

bool EscapeService::felt(EscapeKind kind) const
{
    return trouble(kind) > 0 || watch_.shows(kind);
}

bool EscapeService::warns(EscapeKind kind) const
{
    return trouble(kind) > 0 || watch_.warns(kind);
}

bool EscapeService::warns() const
{
    return std::any_of(kEscapes.begin(), kEscapes.end(),
                       [this](const EscapeName& escape) { return warns(escape.kind); });
}

void EscapeService::update()
{
    watch_.update(parts_.body, sensing_.contact());
    if (parts_.body.feltMovedWithin(kFrameS) && !parts_.body.wheelDrop().both()) {
        watch_.forget();
        failed_ = {};
    }
    clearErrors();
}

// On the map: the wheels of a robot that pushes lead its odometry away.
PointMm EscapeService::place() const
{
    return pointOf(parts_.blackboard, "current_pose").value_or(parts_.body.odometry().at);
}

std::size_t EscapeService::timesHere() const
{
    const PointMm at = place();
    return static_cast<std::size_t>(std::count_if(begun_.begin(), begun_.end(), [&](const Begun& begun) {
        return parts_.state.frame - begun.frame <= kHereFrames && distance(begun.at, at) <= kHereMm;
    }));
}

void EscapeService::began(EscapeKind kind)
{
    begun_.push_back({parts_.state.frame, place()});
    if (begun_.size() > kRemembered) {
        begun_.pop_front();
    }
    parts_.report(event::EscapeBegins{kind});
}

void EscapeService::ended(EscapeKind kind, bool free, bool in_air)
{
    int& failed = failed_[static_cast<std::size_t>(kind)];
    failed = free ? 0 : failed + 1;
    if (free) {
        trouble(kind) = 0;
    }
    parts_.report(event::EscapeEnds{kind, free});
    if (failed >= kMostTries || in_air) {
        raiseError(kind);
    }
}

void EscapeService::raiseError(EscapeKind kind)
{
    const std::string code(nameOf(kind).error);
    error_[static_cast<std::size_t>(kind)] = true;
    if (parts_.state.errors.insert(code).second) {
        parts_.report(event::EscapeError{code, true});
    }
}

void EscapeService::clearErrors()
{
    for (const EscapeName& name : kEscapes) {
        bool& told = error_[static_cast<std::size_t>(name.kind)];
        if (!told || felt(name.kind)) {
            continue;
        }
        told = false;
        failed_[static_cast<std::size_t>(name.kind)] = 0;
        const std::string code(name.error);
        const bool another = std::any_of(kEscapes.begin(), kEscapes.end(), [&](const EscapeName& other) {
            return other.error == code && error_[static_cast<std::size_t>(other.kind)];
        });
        if (!another && parts_.state.errors.erase(code) > 0) {
            parts_.report(event::EscapeError{code, false});
        }
    }
}

void EscapeService::install(leaf::LeafHost& host)
{
    for (const EscapeName& escape : kEscapes) {
        host.condition(std::string(escape.warning),
                       [this, kind = escape.kind](BT::TreeNode&) { return passed(warns(kind)); });
        host.builder(std::string(escape.deal), MotionAction::builder<Deal>(parts_.body, *this, escape));
    }
    host.condition("IsEscapeCheckWarning", [this](BT::TreeNode&) { return passed(warns()); });
    host.condition("NotTrapped", [this](BT::TreeNode&) {
        std::string trapped;
        return passed(!parts_.blackboard.get("trapped", trapped) || trapped != "true");
    });
    host.action("ClearUpdateWarning", [this](BT::TreeNode&) {
        watch_.forget();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("EscapeInitDeal", [this](BT::TreeNode&) {
        parts_.body.stop();
        return BT::NodeStatus::SUCCESS;
    });
    host.action("EscapeEndDeal", [this](BT::TreeNode&) {
        parts_.body.stop();
        watch_.settle();
        return BT::NodeStatus::SUCCESS;
    });
}

}  // namespace vemra::robot
