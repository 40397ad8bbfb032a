#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "leaves/host/host.h"
#include "robot/services/report.h"

namespace vemra::robot {

/// The battery, in percent, and the parameter sets that the board has to confirm as the robot comes up.
class PowerService
{
public:
    struct Config
    {
        double percent = 80;
        double charge_per_hour = 60;  ///< percent, on the contacts
        double drain_per_hour = 12;   ///< percent, off them
        bool resume_after_recharge = true;
        double resume_percent = 80;              ///< charge to which a task waits
        std::uint64_t confirm_after_frames = 5;  ///< from a parameter set sent to its confirmation
    };

    PowerService(BT::Blackboard& blackboard, Report report, const Config& config);

    void install(leaf::LeafHost& host);
    /// One frame of `seconds` on or off the contacts.
    void update(double seconds, bool on_contacts);

    void setPercent(double percent);
    [[nodiscard]] double percent() const { return percent_; }

private:
    struct ParameterSet
    {
        const char* check;
        const char* send;
        std::optional<std::uint64_t> sent_at;
    };

    BT::Blackboard& blackboard_;
    Report report_;
    Config config_;
    double percent_;
    int told_percent_;
    std::uint64_t frame_ = 0;
    ParameterSet sets_[4] = {{"IsElecParaInitOK", "SendElecPara", {}},
                             {"IsGyroParaInitOK", "SendGyroPara", {}},
                             {"IsIrParaInitOK", "SendIrPara", {}},
                             {"IsLightFlowParaInitOK", "SendLightFlowPara", {}}};
};

}  // namespace vemra::robot
