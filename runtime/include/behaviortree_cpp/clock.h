#pragma once

#include <cstdint>

#include "behaviortree_cpp/basic_types.h"

namespace BT {

/// Where a tree's time comes from. A host injects its own (Blackboard::setClock), so that a simulation
/// and a test run without waiting. Counts of ticks (Delay, Frameout) need no clock: a tick is a frame.
class Clock
{
public:
    virtual ~Clock() = default;

    /// Milliseconds since some fixed start; never goes back.
    [[nodiscard]] virtual std::int64_t milliseconds() const = 0;
};

/// The machine's monotonic clock; in force until another is set.
class SteadyClock final : public Clock
{
public:
    [[nodiscard]] std::int64_t milliseconds() const override;
};

}  // namespace BT
