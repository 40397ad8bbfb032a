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
    idle_frames_ = !brushes_on || swept_m2 != swept_m2_ ? 0 : idle_frames_ + 1;
    swept_m2_ = swept_m2;
    if (idle_frames_ == kMinuteFrames) {
        idle_frames_ = 0;
        ++stalls_;
    }
}

void RunFigures::take(const LogEntry& entry)
{
    const bool begun = entry.frame > 0;
    std::visit(
        Cases{[this](const event::EscapeEnds& e) { escapes_ += e.free ? 1 : 0; },
              [&](const event::Approach&) { docking_attempts_ += begun ? 1 : 0; },
              [&](const event::DockContact& e) { docked_ += begun && e.on ? 1 : 0; },
              [&](const event::ChargeBegins&) { charges_ += begun ? 1 : 0; }, [](const auto& /*e*/) {}},
        entry.event);
}

}  // namespace vemra::robot
