#pragma once

#include <cstdint>

#include "robot/body/body.h"
#include "robot/events/event_log.h"

namespace vemra::robot {

/// Counts what a run is made of, from the robot as it is.
class RunFigures final : public LogSink
{
public:
    /// A frame is over; swept_m2: the floor that was swept so far in the pass at hand.
    void frame(const Body& body, bool brushes_on, double swept_m2);
    void take(const LogEntry& entry) override;
    void finish(const nlohmann::ordered_json& /*report*/) override {}

    /// Turns of more than 60 degrees at one go, at 15 degrees a second or more: on the spot or around a
    /// line's end.
    [[nodiscard]] std::uint64_t turns() const { return turns_; }
    /// How often the bumper was pressed.
    [[nodiscard]] std::uint64_t bumps() const { return bumps_; }
    /// How often the robot got free of something by an escape.
    [[nodiscard]] std::uint64_t escapes() const { return escapes_; }
    /// Final approaches to the dock, contacts with it, and charges that began. A robot that begins on its
    /// dock has not come there.
    [[nodiscard]] std::uint64_t dockingAttempts() const { return docking_attempts_; }
    [[nodiscard]] std::uint64_t docked() const { return docked_; }
    [[nodiscard]] std::uint64_t charges() const { return charges_; }
    /// Whole minutes in which the brushes ran and no floor was swept that was not before in the pass.
    [[nodiscard]] std::uint64_t stalls() const { return stalls_; }

private:
    std::uint64_t turns_ = 0;
    std::uint64_t bumps_ = 0;
    std::uint64_t escapes_ = 0;
    std::uint64_t stalls_ = 0;
    std::uint64_t docking_attempts_ = 0;
    std::uint64_t docked_ = 0;
    std::uint64_t charges_ = 0;
    double turned_deg_ = 0;  ///< in the turn at hand, with its sign
    bool turn_counted_ = false;
    bool pressed_ = false;
    double swept_m2_ = 0;
    std::uint64_t idle_frames_ = 0;
};

}  // namespace vemra::robot
