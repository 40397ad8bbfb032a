#pragma once

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "robot/events/json_lines.h"
#include "robot/files.h"
#include "robot/host/robot.h"
#include "robot/world/map_file.h"
#include "support/tree_library.h"

namespace vemra::robot {

// A run of the simulated robot in the sample flat, by the trees of the plug-in.
class RobotRun
{
public:
    explicit RobotRun(Scenario scenario, const std::function<void(RobotSetup&)>& adjust = {})
        : frames_(scenario.frames)
    {
        const HomeFile flat = readHome(VEMRA_SOURCE_DIR "/homes/flat/flat.yaml");
        RobotSetup setup{
            .load_trees =
                [](BT::BehaviorTreeFactory& factory) { factory.registerFromPlugin(test::treeLibrary()); },
            .home = flat.home,
            .dock = chooseDock(flat, {}).dock,
            .scenario = std::move(scenario)};
        if (adjust)
            adjust(setup);
        robot = std::make_unique<Robot>(std::move(setup));
        robot->addSink(json_);
    }

    // start: the fields of "start"; events: one a line, without the dash.
    static Scenario scenario(const std::string& start, const std::vector<std::string>& events,
                             const std::string& frames = "1m")
    {
        const Folder folder;
        std::string text = "name: test\nframes: " + frames + "\nstart: {" + start + "}\nevents:\n";
        for (const std::string& event : events)
            text += "  - {" + event + "}\n";
        return readScenario(folder.write("run.yaml", text));
    }

    RobotRun& play()
    {
        while (robot->frame() < frames_ && !robot->over())
            robot->step();
        robot->finish();
        return *this;
    }

    std::string bytes() const { return out_->str(); }

    std::unique_ptr<Robot> robot;

private:
    std::uint64_t frames_;
    std::unique_ptr<std::ostringstream> out_ = std::make_unique<std::ostringstream>();
    JsonLines json_{*out_};
};

}  // namespace vemra::robot
