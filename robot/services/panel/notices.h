#pragma once

#include "robot/services/core/service.h"

namespace vemra::robot {

/// What the trees leave under keys for the app and the board: reports of a trap, a task that does not begin,
/// a robot that leans on its dock, receivers that can be calibrated. Told once each and taken away.
class NoticeService final : public Service
{
public:
    explicit NoticeService(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& /*host*/) override {}
    void update() override;

private:
    void tellCalibration();

    RobotParts parts_;
};

}  // namespace vemra::robot
