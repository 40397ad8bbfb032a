#pragma once

#include <set>
#include <span>
#include <string>
#include <vector>

#include "support/scripted_robot.h"

namespace vemra::test {

struct ModeNames
{
    const char* mode;
    const char* tree;
    const char* entry;  ///< leaf that says the tree is to run; null where the mode is asked for itself
    const char* port;   ///< of ChangeRobotModeTo; null where no tree asks for the mode
};

/// The modes, those with an entry first and the most urgent of them foremost.
std::span<const ModeNames> modes();

/// A scripted robot under `RobotNode`, with what its leaves would read off the machine: the mode, the
/// battery, the dock, the errors, the keys and the app. Every tree of a mode is replaced by one that runs,
/// unless it is named to the constructor.
class SupervisedRobot : public ScriptedRobot
{
public:
    explicit SupervisedRobot(const std::vector<std::string>& real_mode_trees = {});

    // --- the machine; a test changes these as it goes ---

    std::string mode;  ///< as RobotModeAdjugement names it
    int battery = 80;
    bool on_charger = false;
    bool quiet_hours = false;                ///< the do-not-disturb time
    std::set<std::string> errors, warnings;  ///< after OLO_HEALTH_STATUS_TYPE_

    /// Takes over what ChangeRobotModeTo asks for. When false, requests are only written down.
    bool obeys_requests = true;

    /// Starts RobotNode and ticks until the tree of the first mode runs.
    void powerOn();
    /// Changes the mode as from outside and ticks until the change is dealt with.
    void enterMode(const std::string& name);
    /// Sets the mode and runs this tree of it alone for so many frames; requests count from here.
    NodeStatus enter(const std::string& name, const std::string& tree, int frames);
    /// One press, taken on the next frame: "Is_Key1_Click", or a leaf of another key.
    void press(const std::string& key_leaf);
    /// One command of the app, taken on the next frame, by the mode that it names.
    void command(const std::string& mode_name);

    /// The modes asked for since the start or forgetRequests(), in order.
    [[nodiscard]] const std::vector<std::string>& requests() const { return requests_; }
    void forgetRequests()
    {
        requests_.clear();
        music_before_ = music_.size();
    }
    /// Numbers of the music asked for in that time, the blank request at power-on left out.
    [[nodiscard]] const std::vector<std::string>& music() const { return music_; }
    /// Those since forgetRequests().
    [[nodiscard]] std::vector<std::string> newMusic() const
    {
        return {music_.begin() + static_cast<std::ptrdiff_t>(music_before_), music_.end()};
    }

private:
    void scriptModes();
    void scriptMachine();
    void scriptCommands();
    void take(const std::string& mode_name);

    bool changed_ = false;
    int lines_of_change_ = 0;
    int key_frame_ = -1;
    int command_frame_ = -1;
    std::string key_leaf_;
    std::string command_;
    std::vector<std::string> requests_;
    std::vector<std::string> music_;
    std::size_t music_before_ = 0;
};

}  // namespace vemra::test
