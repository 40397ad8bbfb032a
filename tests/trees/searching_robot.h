#pragma once

#include <map>

#include "support/scripted_robot.h"

namespace vemra::test {

/// A scripted robot near its dock: a test says what its receivers hear and whether it touches something.
struct SearchingRobot : RobotOnALine
{
    SearchingRobot()
    {
        robot.set("current_pose=0 current_coord=0 current_yaw_deg=0.0 current_odom_yaw_deg=0.0");
        robot.succeed("Escape | EscapeCoat | Back2cm");
        robot.tree("GoChargingFullRoundTurn").decides([this](const Moment& now) {
            heard = at_turn;
            now.set("marker_signal_type=Middle marker_dir=0.0");
            return SUCCESS;
        });
        robot.tree("SearchForChargerRandomWalk").succeeds();
        robot.leaf("InDockField").follows(in_field);
        robot.succeed("NotTrapped | InMiddleDockOnceInAWhile");
        robot.leaf("FollowDockSignalFinal").runs();
        robot.textsAsTheyStand();
        robot.leaf("ChargerReceiverPickedUpSignal").decides([this](const Moment& now) {
            return hears(now.port("receiver"), now.port("signal")) ? SUCCESS : FAILURE;
        });
        robot.leaf("SensorCheckBumped").decides([this](const Moment& now) {
            if (const std::string key = now.port("out_bump_dir"); !key.empty())
                now.set(key, bump.empty() ? "None" : bump);
            return bump.empty() ? FAILURE : SUCCESS;
        });
        // Backing off frees the bumper.
        robot.leaf("GoBackwards").decides([this](const Moment& now) {
            bump.clear();
            now.set("current_pose", now.keys.get<int>("current_pose") + 10);
            return RUNNING;
        });
    }

    /// Both are what a marking turn finds when it ends.
    void hearAtTurn(const std::map<std::string, std::string>& signals) { heard = at_turn = signals; }

    [[nodiscard]] bool hears(const std::string& receiver, const std::string& signal) const
    {
        if (receiver == "Any") {
            for (const auto& [at, what] : heard)
                if (signal == "Any" || what == signal)
                    return true;
            return heard.empty() && signal == "None";
        }
        const auto found = heard.find(receiver);
        return found == heard.end() ? signal == "None" : signal == "Any" || found->second == signal;
    }

    std::map<std::string, std::string> heard;  ///< by receiver; silent ones are left out
    std::map<std::string, std::string> at_turn;
    std::string bump;
    bool in_field = true;
};

}  // namespace vemra::test
