#include "robot/host/run_figures.h"

#include <cmath>

#include "robot/base/clock.h"

namespace vemra::robot {
namespace {

constexpr double kTurnDeg = 60;
constexpr double kTurnDegS = 15;
constexpr std::uint64_t kMinuteFrames = 60'000 / kFrameMs;

}  // namespace

void RunFigures::frame(const Body& body, bool brushes_on, double swept_m2)
{
    const double rate = body.turnRate();
    if (std::abs(rate) < kTurnDegS || rate * turned_deg_ < 0) {
        turned_deg_ = 0;
        turn_counted_ = false;
    }
    turned_deg_ += rate * kFrameMs / 1000;
    if (!turn_counted_ && std::abs(turned_deg_) > kTurnDeg) {
        turn_counted_ = true;
        ++turns_;
    }
    const bool pressed = body.bumper().any();
    bumps_ += pressed && !pressed_ ? 1 : 0;
    pressed_ = pressed;
    idle_frames_ = !brushes_on || swept_m2 > swept_m2_ ? 0 : idle_frames_ + 1;
    swept_m2_ = swept_m2;
    if (idle_frames_ == kMinuteFrames) {
        idle_frames_ = 0;
        ++stalls_;
    }
}

void RunFigures::take(const LogEntry& entry)
{
    if (entry.kind == LogKind::Escape) {
        escapes_ += entry.fields.value("free", false) ? 1 : 0;
    }
    if (entry.kind == LogKind::Body && entry.frame > 0) {
        docking_attempts_ += entry.fields.contains("docking_attempt") ? 1 : 0;
        docked_ += entry.fields.value("on_dock", false) ? 1 : 0;
        charges_ += entry.fields.contains("charge") ? 1 : 0;
    }
}

}  // namespace vemra::robot
