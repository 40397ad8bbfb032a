#include <benchmark/benchmark.h>

#include "robot/body/body.h"
#include "robot/world/map_file.h"

namespace {

using namespace vemra::robot;

constexpr double kFrameS = 0.02;
constexpr int kFramesOfADrive = 25;

// A robot that drives about in the sample flat, along walls and into furniture.
struct Drive
{
    World world{readHome(VEMRA_SOURCE_DIR "/homes/flat/flat.yaml").home};
    Body body{world, {{2500, 2000}, {10}}, Chance(1)};
    Chance chance{3};
    int frames = 0;

    void frame()
    {
        if (frames++ % kFramesOfADrive == 0)
            body.drive({-100 + 400 * chance.uniform(), -100 + 400 * chance.uniform()});
        body.step(kFrameS);
    }
};

void bodyFrame(benchmark::State& state)
{
    Drive drive;
    while (state.KeepRunning())
        drive.frame();
}
BENCHMARK(bodyFrame);

// One turn of the laser, 360 beams.
void laserScan(benchmark::State& state)
{
    Drive drive;
    while (state.KeepRunning()) {
        drive.frame();
        benchmark::DoNotOptimize(drive.body.scan().ranges_mm.data());
    }
}
BENCHMARK(laserScan);

}  // namespace

BENCHMARK_MAIN();
