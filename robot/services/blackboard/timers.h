#pragma once

#include <cstdint>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// The robot's two timers, one asked in milliseconds and one in seconds, each set back by its own leaf;
/// and the time of day in microseconds since power-on.
class TimerService final : public Service
{
public:
    explicit TimerService(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;

private:
    [[nodiscard]] std::int64_t now() const { return parts_.blackboard.clock().milliseconds(); }

    RobotParts parts_;
    std::int64_t ms_timer_ = 0;
    std::int64_t s_timer_ = 0;
};

}  // namespace vemra::robot
