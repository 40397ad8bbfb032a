#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "robot/belief/robot_map.h"
#include "robot/services/core/service.h"

namespace vemra::robot {

/// The record of a clean, told when its task is closed: mode, time, floor, whether it was done, and how far
/// the robot drove for which reason. The reasons are those that the trees leave in `trace_token` while they
/// tick `TraceLogger`; a motion that is named in `not_trace_token` leaves none.
class CleaningLogService final : public Service
{
public:
    CleaningLogService(const RobotParts& parts, const RobotMap& map) : parts_(parts), map_(map) {}

    void install(leaf::LeafHost& host) override;

private:
    void trace(const BT::TreeNode& node);
    void generate(const std::string& mode);

    RobotParts parts_;
    const RobotMap& map_;
    std::map<std::string, double> traced_mm_;  ///< by reason
    std::string reason_;
    std::uint64_t traced_in_ = 0;  ///< frame
};

}  // namespace vemra::robot
