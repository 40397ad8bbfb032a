// draw_home PLAN FOLDER: draws a plan as a map, FOLDER/<name>.pgm and FOLDER/<name>.yaml.

#include <fmt/format.h>

#include <cstdio>
#include <filesystem>

#include "robot/base/input_error.h"
#include "robot/base/output_file.h"
#include "robot/world/plan.h"

int main(int count, char** words)
{
    using namespace vemra::robot;
    if (count != 3) {
        fmt::print(stderr, "usage: draw_home PLAN FOLDER\n");
        return 2;
    }
    try {
        const Plan plan = readPlan(words[1]);
        const std::filesystem::path folder = words[2];
        writeFile(folder / (plan.name + ".pgm"), pgmBytes(drawPlan(plan)));
        writeFile(folder / (plan.name + ".yaml"), mapYaml(plan));
    } catch (const InputError& fault) {
        fmt::print(stderr, "{}\n", fault.what());
        return 2;
    }
    return 0;
}
