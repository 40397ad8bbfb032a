#pragma once

#include <map>
#include <string>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// How the robot stands, by its gyro: roll, pitch and yaw in degrees, kept at the moments of a start under
/// the names that the trees give; the span of roll and pitch over the first turn; and what the yaw has
/// drifted by on the straight way off the dock, where the user wants that checked (`imu_drift_check`).
class AttitudeService final : public Service
{
public:
    explicit AttitudeService(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;
    void update() override;

private:
    struct Attitude
    {
        double roll = 0;
        double pitch = 0;
        double yaw = 0;
    };

    struct Span
    {
        double least = 0;
        double most = 0;
        void widen(double value);
        [[nodiscard]] double width() const { return most - least; }
    };

    [[nodiscard]] Attitude now() const;
    void keep(const std::string& moment);
    void tellDrift();

    RobotParts parts_;
    std::map<std::string, Attitude> kept_;  ///< by moment
    Span roll_;
    Span pitch_;
};

}  // namespace vemra::robot
