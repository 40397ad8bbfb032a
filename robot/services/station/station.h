#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// The dust station. Docked, and with its infrared in reach, it empties the robot's box for as long as it is
/// told to and leaves the time that is left in `dust_left_time` (ms). What can go wrong:
///  - the duct blocks: no air flows and the time stands still. A block of half a second under the fan is a
///    warning until the robot tells the station to go on; one of ten seconds is an error;
///  - bag or cap are missing: an error at once; the bag is full: a warning, and nothing is sucked in;
///  - in error the fan goes on for a second, so that the robot can see where it happened;
///  - it is locked: an error of its own, apart from the others, and the fan does not start;
///  - the infrared does not reach: orders are lost, and the robot goes on with what it heard last.
class StationService final : public Service
{
public:
    explicit StationService(const RobotParts& parts);

    void install(leaf::LeafHost& host) override;
    void update() override;
    bool take(const Happening& what) override;

private:
    using Codes = std::set<std::string, std::less<>>;

    /// What is wrong, as the station tells it.
    struct Faults
    {
        Codes errors;
        Codes warnings;
        bool operator==(const Faults&) const = default;
    };

    void installEmptying(leaf::LeafHost& host);
    void installStates(leaf::LeafHost& host);
    [[nodiscard]] bool linked() const { return parts_.state.contacts.touching() && in_reach_; }
    /// Ready to empty, but for the lock, which is asked for by itself.
    [[nodiscard]] bool normal() const;
    [[nodiscard]] Faults faults() const;
    void turn(StationPart part, bool on);
    void blow();
    void hear();
    void order(const std::string& status, std::int64_t time_ms);
    void setLeft(std::int64_t time_ms);
    void stopFan(const char* why);

    RobotParts parts_;
    bool cap_closed_ = true;
    bool bag_in_ = true;
    bool bag_full_ = false;
    bool blocked_ = false;
    bool locked_ = false;
    bool in_reach_ = true;
    Faults raised_;  ///< by the scenario, beside what the parts say
    Faults heard_;   ///< what the robot knows

    bool fan_ = false;
    bool going_on_ = false;  ///< told to go on in spite of a block
    std::int64_t left_ms_ = 0;
    std::int64_t blocked_ms_ = 0;  ///< under the running fan
    std::int64_t error_ms_ = 0;    ///< likewise
    std::int64_t dirt_ms_ = 0;     ///< how long the robot has cleaned since its box was emptied
    std::uint64_t emptied_at_ = 0;
    bool ever_emptied_ = false;
    bool news_ = false;  ///< what is known of the station has changed
    std::string wash_state_ = "WASH_IDLE";
    std::string uv_state_ = "UV_PAUSE";
};

}  // namespace vemra::robot
