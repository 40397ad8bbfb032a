#pragma once

#include <set>
#include <string>
#include <string_view>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// What is wrong with the robot, by health codes without their common prefix ("I_LDS_ERROR"). An error makes
/// the robot unhealthy until it is cleared; a warning only answers those who ask for it.
class HealthService final : public Service
{
public:
    explicit HealthService(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;
    /// Faults of the robot; a dust box taken out is one.
    bool take(const Happening& what) override;

private:
    using Codes = std::set<std::string, std::less<>>;

    void put(Codes& codes, const std::string& code, bool raised, bool warning);

    RobotParts parts_;
    Codes warnings_;
};

/// A health code as the ports carry it, less its prefix; a code without the prefix stays as it is.
[[nodiscard]] std::string_view bareCode(std::string_view code);

}  // namespace vemra::robot
