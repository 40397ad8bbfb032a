#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "robot/body/pose_source.h"
#include "robot/services/core/service.h"
#include "robot/services/dock_signal/dock_follows.h"
#include "robot/services/dock_signal/dock_hearing.h"
#include "robot/services/dock_signal/signal_marking.h"

namespace vemra::robot {

/// What the robot hears of its dock and how it drives by it: the receivers, the marking turn, the follows,
/// the weighings that make a better approach of a failed one, reflections, and backing onto the dock.
class DockSignalService final : public Service
{
public:
    DockSignalService(const RobotParts& parts, const PoseSource& pose) : parts_(parts), pose_(pose) {}

    void install(leaf::LeafHost& host) override;
    void update() override;

    /// A robot that is about to drive onto its dock feels it as an edge, where the sensor DockField counts:
    /// "left_dock", "middle_dock" or "right_dock" close before the face, in the near field; else "None".
    [[nodiscard]] std::string edgeOfDock() const;

private:
    void installSenses(leaf::LeafHost& host);
    void installDrives(leaf::LeafHost& host);
    void installWeighings(leaf::LeafHost& host);
    void installReflections(leaf::LeafHost& host);
    void installBackIn(leaf::LeafHost& host);
    void installExploring(leaf::LeafHost& host);
    [[nodiscard]] bool foundWhileExploring();
    void markWhereHeard();
    [[nodiscard]] BT::NodeStatus mark(bool begins);
    [[nodiscard]] bool stillLost();
    [[nodiscard]] BT::NodeStatus weighSecond(BT::TreeNode& node);
    [[nodiscard]] double turnToSource() const;
    [[nodiscard]] BT::NodeStatus measureDock(bool begins);
    void lookAtWall();

    RobotParts parts_;
    const PoseSource& pose_;
    DockHearing hearing_;
    SignalMarking marking_;
    FinalApproaches approaches_;
    std::uint64_t told_approaches_ = 0;
    std::function<void()> look_ = [this] { lookAtWall(); };
    std::uint64_t lost_asked_ = 0;  ///< frame in which the leaf was last asked
    std::uint64_t lost_begun_ = 0;  ///< first frame of the drive that it watches over
    std::uint64_t bumped_frame_ = 0;
    bool ever_bumped_ = false;
    bool side_turned_ = false;  ///< since the last marking turn
    int first_side_ = 0;
    std::uint64_t measuring_since_ = 0;
    int heard_frames_ = 0;                    ///< without a break
    std::uint64_t told_asked_ = 0;            ///< frame in which exploring last asked for the dock
    std::optional<PointMm> told_of_dock_at_;  ///< it was told of there, and what came of it is open
    std::vector<PointMm> mute_at_;            ///< chases from there failed
    double marked_strength_ = 0;
};

}  // namespace vemra::robot
