#include "trees/escape/blind_advance.h"

namespace vemra::trees {

namespace {

constexpr int kFullSpeed = 300;  // mm/s
constexpr int kSpeedStep = 20;
constexpr int kFramesPerStep = 4;
constexpr int kFramesToStandStill = 20;

Node straight_on(int mm_s, int frames)
{
    return ForceSuccess(Frameout(frames, OpenCloseMove{.left_mm_s = mm_s, .right_mm_s = mm_s}));
}

Node run(int frames_at_full_speed)
{
    std::vector<Node> steps;
    for (int speed = kSpeedStep; speed < kFullSpeed; speed += kSpeedStep)
        steps.push_back(straight_on(speed, kFramesPerStep));
    steps.push_back(straight_on(kFullSpeed, frames_at_full_speed));
    for (int speed = kFullSpeed - kSpeedStep; speed > 0; speed -= kSpeedStep)
        steps.push_back(straight_on(speed, kFramesPerStep));
    steps.push_back(straight_on(0, kFramesToStandStill));
    return in_order(std::move(steps));
}

}  // namespace

Node blind_advance(int frames_at_full_speed)
{
    return FallbackStar(
        Sequence(SubtreeCondition{"Escape"}, Inverter(SensorCheckBumped{.out_bump_dir = "bump_dir"}),
                 run(frames_at_full_speed)),
        SequenceStar(SubtreeCondition{"Back2cm"}, Delay{20}));
}

}  // namespace vemra::trees
