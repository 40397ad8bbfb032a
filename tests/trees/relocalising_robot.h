#pragma once

#include <optional>
#include <string>

#include "support/scripted_robot.h"

namespace vemra::test {

/// A robot that has lost its place, on a line of floor. SLAM is the test: it writes the keys of the dialogue
/// and says in `slam` how its search stands.
class RelocalisingRobot : public ScriptedRobot
{
public:
    RelocalisingRobot()
    {
        pointsOnALine();
        for (const char* key : {"current_pose", "current_coord", "current_odom"})
            set(key, 0);
        set("current_yaw_deg=0.0 current_odom_yaw_deg=0.0 robot_trajectory='of the task'");
        leaf("SlamActiveRelocalize").decides([this](const Moment& now) {
            first_turn = first_turn || now.tick_of_run == 0;
            return slam;
        });
        leaf("Rotate").runs();
        leaf("AwesomeSearch").follows(has_way);
        leaf("NotTrapped").succeeds();
        leaf("RelocMap").decides([this](const Moment& now) {
            map = now.port("reloc_state");
            first_turn = false;
            return SUCCESS;
        });
        leaf("SlamReachReloc").decides([this](const Moment& now) {
            answer = now.port("send_cmd");
            return SUCCESS;
        });
        leaf("CoordOffset").fills("out_point", -1000);
        tree("EscapeCoat").decides([this](const Moment&) { return trapped ? RUNNING : FAILURE; });
        tree("Escape").succeeds();
        tree("NavigateFollowWall").fails();
        for (const char* drive : {"NavigateProc", "NaviOnePointProc"})
            tree(drive).decides([this](const Moment& now) {
                if (drives != SUCCESS || now.tick_of_run < 3)
                    return drives == FAILURE ? FAILURE : RUNNING;
                int goal = 0;
                now.keys.get("navi_target_point", goal);
                now.set("current_pose", goal);
                return SUCCESS;
            });
    }

    /// In the first turn, with nothing said yet.
    void begin()
    {
        halt();
        slam = RUNNING;
        map.clear();
        answer.clear();
        set("current_pose", 0);
        for (const char* word : {"rotate_reloc_finish", "exp_reloc_result", "ready_exp_again",
                                 "slam_exp_pose", "relocalize_start_move", "static_exp", "cant_reach_exp"})
            erase(word);
        start("ActiveRelocalize_LdsInteractive");
        tick();
    }

    /// Number 5.
    void sayEnough() { set("rotate_reloc_finish", ""); }
    /// Number 6 or 7.
    void sayVerdict(bool known) { set("exp_reloc_result", known ? "true" : "false"); }
    void sendTo(int place)
    {
        set("slam_exp_pose", place);
        set("reloc_back_pose=0 relocalize_start_move");
    }
    /// Ticks until the tree tells SLAM this, for so many frames at most.
    bool tells(const std::string& what, int at_most = 50)
    {
        for (int i = 0; i < at_most; ++i) {
            answer.clear();
            tick();
            if (answer == what)
                return true;
        }
        return false;
    }

    NodeStatus slam = RUNNING;
    NodeStatus drives = SUCCESS;
    bool has_way = true;
    bool trapped = false;
    bool first_turn = true;  ///< SLAM has begun, and the turn is not over yet
    std::string map;         ///< state of the map of the surroundings, as last told
    std::string answer;      ///< what was last told to SLAM
};

}  // namespace vemra::test
