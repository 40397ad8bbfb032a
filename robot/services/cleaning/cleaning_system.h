#pragma once

#include <map>
#include <string>
#include <utility>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// Fan, brushes, pump and mop, in percent of their power, and which of the robot's eyes are switched on.
class CleaningSystemService final : public Service
{
public:
    explicit CleaningSystemService(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;

private:
    RobotParts parts_;
    std::map<std::string, int> powers_;
    std::pair<bool, bool> infrared_{true, true};  ///< cliff, front
};

}  // namespace vemra::robot
