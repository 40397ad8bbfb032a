#pragma once

#include <cstdint>
#include <optional>

#include "robot/services/core/service.h"

namespace vemra::robot {

/// Answers for the one current mode. A change is asked for by `ChangeRobotModeTo` and comes into force at the
/// beginning of the next frame, or, while the key `RobotModeSwitchLock` is there, of the first frame without
/// it; a later request takes the place of one that waits. `DoesRobotModeChanged` then passes for one run of
/// the steps behind it.
class ModeService final : public Service
{
public:
    explicit ModeService(const RobotParts& parts) : parts_(parts) {}

    void install(leaf::LeafHost& host) override;
    /// A firmware update takes a minute, then the robot stands by.
    void update() override;
    bool take(const Happening& what) override;

private:
    [[nodiscard]] Mode current() const { return parts_.state.modes.current(); }
    BT::NodeStatus changeTo(BT::TreeNode& node);
    void installDispatch(leaf::LeafHost& host);
    void installDeals(leaf::LeafHost& host);

    RobotParts parts_;
    std::uint64_t told_changes_ = 0;
    std::uint64_t frames_of_update_ = 0;
    std::optional<Mode> from_board_;  ///< a mode that the board asks for
};

}  // namespace vemra::robot
