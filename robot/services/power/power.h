#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// The battery, in percent, which drains by what runs and charges on the contacts, and the parameter sets
/// that the board has to confirm as the robot comes up.
class PowerService final : public Service
{
public:
    PowerService(const RobotParts& parts, const ScenarioStart& start);

    void install(leaf::LeafHost& host) override;
    /// The battery charges or drains for one frame.
    void update() override;
    bool take(const Happening& what) override;

private:
    struct ParameterSet
    {
        const char* check;
        const char* send;
        std::optional<std::uint64_t> sent_at = {};
    };

    [[nodiscard]] double percent() const { return parts_.state.battery_percent; }
    [[nodiscard]] double drainPerHour() const;
    void tell();
    void tellCharge();

    RobotParts parts_;
    double charge_per_hour_;                ///< percent, on the contacts
    std::optional<double> drain_per_hour_;  ///< percent, off them, whatever runs
    bool resume_after_recharge_;
    std::uint64_t confirmed_after_;  ///< frames from a set sent to its confirmation
    std::optional<int> told_tenth_;
    std::uint64_t came_frames_ = 0;  ///< on the contacts since it came there
    std::uint64_t charges_ = 0;
    std::array<ParameterSet, 4> sets_{{{"IsElecParaInitOK", "SendElecPara"},
                                       {"IsGyroParaInitOK", "SendGyroPara"},
                                       {"IsIrParaInitOK", "SendIrPara"},
                                       {"IsLightFlowParaInitOK", "SendLightFlowPara"}}};
};

}  // namespace vemra::robot
