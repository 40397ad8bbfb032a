#pragma once

#include <set>
#include <string>
#include <string_view>

#include "leaves/host/host.h"
#include "robot/services/report.h"

namespace vemra::robot {

/// What is wrong with the robot and with its station, by health codes without their common prefix
/// ("I_LDS_ERROR", "DUST_BLOCK"). An error makes the robot unhealthy until it is cleared; a warning only
/// answers those who ask for it.
class HealthService
{
public:
    explicit HealthService(Report report);

    void install(leaf::LeafHost& host);

    void raiseError(const std::string& code);
    void clearError(const std::string& code);
    void raiseWarning(const std::string& code);
    void clearWarning(const std::string& code);

    [[nodiscard]] bool healthy() const { return errors_.empty(); }
    [[nodiscard]] bool hasError(std::string_view code) const;
    [[nodiscard]] bool hasWarning(std::string_view code) const;

private:
    Report report_;
    std::set<std::string, std::less<>> errors_;
    std::set<std::string, std::less<>> warnings_;
};

/// A health code as the ports carry it, less its prefix; a code without the prefix stays as it is.
[[nodiscard]] std::string_view bareCode(std::string_view code);

}  // namespace vemra::robot
