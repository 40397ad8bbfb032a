#include "robot/services/panel/notices.h"

#include <fmt/format.h>

#include <array>
#include <string>

namespace vemra::robot {
namespace {

struct Notice
{
    const char* key;
    const char* text;
    bool trap = false;
};

constexpr std::array<Notice, 8> kNotices{{{"close_door_trapped", "trapped: a door was closed", true},
                                          {"automode_trapped", "trapped: no way on", true},
                                          {"polygon_vw_trapped", "trapped: within a forbidden area", true},
                                          {"start_vw_trapped", "trapped: begun within virtual walls", true},
                                          {"clean_vw_blocked", "trapped: a virtual wall bars the way", true},
                                          {"clear_blocked_trapped", "reports of a trap are void"},
                                          {"PushInfoApp", "the app is told that the task cannot begin here"},
                                          {"robot_leans_charger", "the robot leans on its dock"}}};

}  // namespace

void NoticeService::update()
{
    for (const Notice& notice : kNotices)
        if (parts_.blackboard.erase(notice.key))
            parts_.report(
                notice.trap ? Event(event::TrapReport{notice.text, notice.key})
                            : Event(event::Note{notice.text, "notice", {{"key", std::string(notice.key)}}}));
    if (parts_.blackboard.erase("infrared_calibration_finished"))
        tellCalibration();
}

// The receivers are calibrated on a drive off the dock that was long enough to hear its field.
void NoticeService::tellCalibration()
{
    std::string needed;
    double way_mm = 0;
    parts_.blackboard.get("a_b_dist", way_mm);
    if (parts_.blackboard.get("need_infrared_calibration", needed) && needed == "true")
        parts_.report(event::Note{fmt::format("receivers calibrated over {:.0f} mm", way_mm),
                                  "infrared_calibration",
                                  {{"way_mm", way_mm}}});
    parts_.blackboard.erase("need_infrared_calibration");
}

}  // namespace vemra::robot
