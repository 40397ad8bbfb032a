#pragma once

#include <cstdint>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// Holds the gyro against the wheels while they drive straight on or stand. Where it tells a turn that they
/// do not make, it must be zeroed; that takes four seconds on the spot, whoever makes the robot stand.
class GyroWatch final : public Service
{
public:
    explicit GyroWatch(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;
    void update() override;
    bool take(const Happening& what) override;

private:
    void zero();

    RobotParts parts_;
    double drift_deg_s_ = 0;  ///< as measured, smoothed
    std::uint64_t straight_frames_ = 0;
    std::uint64_t still_frames_ = 0;
    bool wanted_ = false;  ///< a calibration
    bool done_ = false;    ///< and the last one that was wanted has ended
};

}  // namespace vemra::robot
