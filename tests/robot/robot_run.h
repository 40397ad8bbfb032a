#pragma once

#include <gtest/gtest.h>

#include <algorithm>
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

namespace vemra::robot {

// A run of the simulated robot in the sample flat, by the trees of the plug-in.
class RobotRun
{
public:
    explicit RobotRun(Scenario scenario, const std::function<void(RobotSetup&)>& adjust = {})
        : frames_(scenario.frames)
    {
        const HomeFile flat = readHome(VEMRA_SOURCE_DIR "/homes/flat/flat.yaml");
        RobotSetup setup{.load_trees =
                             [](BT::BehaviorTreeFactory& factory) {
                                 factory.registerFromPlugin(VEMRA_LIB_DIR "/libvemra_tree.so");
                             },
                         .home = flat.home,
                         .dock = chooseDock(flat, {}).dock,
                         .scenario = std::move(scenario)};
        if (adjust)
            adjust(setup);
        robot = std::make_unique<Robot>(std::move(setup));
        robot->addSink(json_);
    }

    static RobotRun ofFile(const std::string& name)
    {
        return RobotRun(readScenario(std::string(VEMRA_SOURCE_DIR) + "/scenarios/" + name));
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

    // What was logged of a kind from one frame to another, the last included, in order.
    std::vector<std::string> texts(LogKind kind, std::uint64_t from = 0, std::uint64_t to = ~0ULL) const
    {
        std::vector<std::string> found;
        for (const LogEntry& entry : robot->log().entries()) {
            if (entry.kind == kind && entry.frame >= from && entry.frame <= to)
                found.push_back(entry.text);
        }
        return found;
    }
    // The frames in which this was logged.
    std::vector<std::uint64_t> frames(LogKind kind, const std::string& text) const
    {
        std::vector<std::uint64_t> found;
        for (const LogEntry& entry : robot->log().entries()) {
            if (entry.kind == kind && entry.text == text)
                found.push_back(entry.frame);
        }
        return found;
    }
    // The first of them; a failure of the test, and 0, where there is none.
    std::uint64_t first(LogKind kind, const std::string& text) const
    {
        const auto found = frames(kind, text);
        EXPECT_FALSE(found.empty()) << "never logged: " << toText(kind) << " " << text;
        return found.empty() ? 0 : found.front();
    }
    bool said(const std::string& message) const { return !frames(LogKind::Message, message).empty(); }

    std::string bytes() const { return out_->str(); }

    std::unique_ptr<Robot> robot;

private:
    std::uint64_t frames_;
    std::unique_ptr<std::ostringstream> out_ = std::make_unique<std::ostringstream>();
    JsonLines json_{*out_};
};

}  // namespace vemra::robot
