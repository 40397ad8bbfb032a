#pragma once

#include <cstdint>

#include "leaves/host/host.h"

namespace vemra::robot {

/// The robot's two timers, one asked in milliseconds and one in seconds, each set back by its own leaf;
/// and the time of day in microseconds since power-on.
class TimerService
{
public:
    explicit TimerService(const BT::Blackboard& blackboard) : blackboard_(blackboard) {}

    void install(leaf::LeafHost& host);

private:
    [[nodiscard]] std::int64_t now() const { return blackboard_.clock().milliseconds(); }

    const BT::Blackboard& blackboard_;
    std::int64_t ms_timer_ = 0;
    std::int64_t s_timer_ = 0;
};

}  // namespace vemra::robot
