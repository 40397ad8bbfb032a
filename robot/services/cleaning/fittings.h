#pragma once

#include "robot/services/core/service.h"

namespace vemra::robot {

/// What is put into and onto the robot: the water box, the mop cloth with its holder. That one was put in or
/// taken out is told to the trees once, on the first tick on which they ask. A cloth is used by the tasks
/// that are done with it on: `use_mop`, and `robot_mop_mode` (0 sweep, 1 wipe, 2 both), which the user may
/// set.
class FittingService final : public Service
{
public:
    explicit FittingService(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;
    bool take(const Happening& what) override;

private:
    struct Thing
    {
        bool fitted = true;
        bool put_on = false;   ///< and not told yet
        bool dropped = false;  ///< likewise
    };

    [[nodiscard]] bool mopRunsDry();
    static void change(Thing& thing, bool fitted);
    void tellUse();

    RobotParts parts_;
    Thing water_box_;
    Thing mop_{.fitted = false};
    bool warned_of_mop_ = false;
};

}  // namespace vemra::robot
