#pragma once

#include <cstdint>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// The app drives the robot by hand. An order holds for its time, then the robot stands and waits for the
/// next; when none has come for ten seconds the app has gone away, and there is no speed any more.
class RemoteControl final : public Service
{
public:
    explicit RemoteControl(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;
    bool take(const Happening& what) override;

private:
    bool takeSpeed();

    RobotParts parts_;
    DriveByHand order_;
    std::uint64_t until_ = 0;        ///< frame in which the order ends
    std::uint64_t asked_ = 0;        ///< frame in which a speed was asked for last
    std::uint64_t waits_since_ = 0;  ///< frame from which on the app's silence is counted
};

}  // namespace vemra::robot
