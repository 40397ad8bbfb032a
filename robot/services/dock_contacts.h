#pragma once

#include <cstdint>

#include "leaves/host/host.h"
#include "robot/services/report.h"

namespace vemra::robot {

/// What the robot knows of its dock by touch: the charging contacts, and the moments they are made and lost.
class DockContactService
{
public:
    explicit DockContactService(Report report) : report_(std::move(report)) {}

    void install(leaf::LeafHost& host);
    /// The beginning of a frame: do the contacts touch?
    void update(bool touching);

    [[nodiscard]] bool touching() const { return touching_; }
    [[nodiscard]] bool justTouched() const { return touching_ && !before_; }
    [[nodiscard]] bool justLost() const { return !touching_ && before_; }
    void setChargeWarning(bool warning) { charge_warning_ = warning; }

private:
    Report report_;
    bool touching_ = false;
    bool before_ = false;
    bool first_ = true;
    bool charge_warning_ = false;
};

}  // namespace vemra::robot
