#pragma once

#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "robot/belief/localisation.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// Watches the run on the factory's floor and says in the end whether the robot may be sold: `TestResId`
/// names the part that failed, the laser or the time-of-flight sensor by its fault, SLAM where the way by the
/// wheels and the way on the map do not agree, or where it lost its place.
class FactoryRun final : public Service
{
public:
    FactoryRun(const RobotParts& parts, const Localisation& localisation)
        : parts_(parts), localisation_(localisation)
    {}

    void install(leaf::LeafHost& host) override;
    bool take(const Happening& what) override;

private:
    void begin();
    void compare();
    BT::NodeStatus judge();
    [[nodiscard]] std::string_view failed() const;

    RobotParts parts_;
    const Localisation& localisation_;
    std::set<std::string, std::less<>> faults_;  ///< codes that stand
    std::set<std::string, std::less<>> seen_;    ///< codes that stood at some time of the run
    std::optional<PoseMm> last_pose_;
    PoseMm last_odometry_;
    double way_mm_ = 0;         ///< on the map, since the run began
    double way_by_wheels_ = 0;  ///< mm
    double turned_apart_deg_ = 0;
    bool reliable_ = true;
};

}  // namespace vemra::robot
