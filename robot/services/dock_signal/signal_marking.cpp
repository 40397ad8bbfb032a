#include "robot/services/dock_signal/signal_marking.h"

#include <algorithm>
#include <cmath>

namespace vemra::robot {
namespace {

constexpr std::uint64_t kEnoughFrames = 10;
constexpr double kMixedShare = 0.5;

struct Rank
{
    DockSignal left;
    DockSignal right;
};
constexpr std::array<Rank, 2> kSides{
    {{DockSignal::CentralLeft, DockSignal::CentralRight}, {DockSignal::Left, DockSignal::Right}}};

}  // namespace

void SignalMarking::listen(const DockHearing& hearing, double yaw_deg, bool near_dock)
{
    in_dock_field_ = in_dock_field_ || near_dock;
    for (const Receiver receiver : {Receiver::MiddleLeft, Receiver::MiddleRight}) {
        const DockSignal signal = hearing.at(receiver);
        if (signal == DockSignal::None) {
            continue;
        }
        Tally& tally = tallies_[static_cast<std::size_t>(signal)];
        ++tally.frames;
        tally.looked = tally.looked + direction({yaw_deg});
        if (hearing.located()) {
            tally.located = tally.located + direction({yaw_deg + *hearing.bearingDeg()});
        }
    }
}

std::string_view SignalMarking::type() const
{
    if (of(DockSignal::Middle).frames >= kEnoughFrames) {
        return toText(DockSignal::Middle);
    }
    for (const Rank& rank : kSides) {
        const std::uint64_t left = of(rank.left).frames;
        const std::uint64_t right = of(rank.right).frames;
        const auto [weaker, stronger] = std::minmax(left, right);
        if (stronger < kEnoughFrames) {
            continue;
        }
        if (static_cast<double>(weaker) > kMixedShare * static_cast<double>(stronger)) {
            return "Mixed";
        }
        return toText(left > right ? rank.left : rank.right);
    }
    return toText(DockSignal::None);
}

double SignalMarking::directionDeg(double near_yaw_deg) const
{
    const std::string_view best = type();
    Tally sum;
    for (const Tally& tally : tallies_) {
        const auto signal = static_cast<DockSignal>(&tally - tallies_.data());
        if (best == toText(signal) || (best == "Mixed" && signal != DockSignal::None)) {
            sum.looked = sum.looked + tally.looked;
            sum.located = sum.located + tally.located;
        }
    }
    const PointMm mean = sum.located == PointMm{} ? sum.looked : sum.located;
    if (mean == PointMm{}) {
        return near_yaw_deg;
    }
    const double heading = degreesOfRadians(std::atan2(mean.y, mean.x)).value;
    return near_yaw_deg + wrapped({heading - near_yaw_deg}).value;
}

}  // namespace vemra::robot
