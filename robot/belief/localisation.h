#pragma once

#include "robot/body/body.h"
#include "robot/body/pose_source.h"

namespace vemra::robot {

/// Stands in for SLAM: while localised, the body's pose in the frame of the map with a small error that
/// drifts to and fro as the robot runs; else the last such pose carried on by the odometry. Services see it
/// as a PoseSource. The same run gives the same errors.
class Localisation final : public PoseSource
{
public:
    struct Config
    {
        double place_error_mm = 8;  ///< the most in x and in y
        Degrees yaw_error{0.3};     ///< the most
    };

    /// At first localised, the frame of the map being that of the world. The body must outlive it.
    explicit Localisation(const Body& body) : Localisation(body, Config{}) {}
    Localisation(const Body& body, const Config& config);

    [[nodiscard]] PoseMm pose() const override;
    [[nodiscard]] bool localised() const { return localised_; }

    /// A frame: on its dock the robot knows where it is; once somebody has carried it, it does not.
    void feel(bool docked);
    /// The robot no longer knows where it is: odometry alone carries the pose on.
    void lose();
    /// The robot has found itself on the map.
    void find() { localised_ = true; }
    /// A new map begins: from now on the present place counts as `pose`.
    void restart(const PoseMm& pose);
    /// The robot takes itself to be at `pose`. If that is about right, following the scans brings it the rest
    /// of the way; else it is wrong from now on, and sure of it.
    void believe(const PoseMm& pose);
    /// How often the frame of the map was moved: who keeps places of the map forgets them with it.
    [[nodiscard]] int restarts() const { return restarts_; }

    /// A place of the map in the frame of the world: for pictures and figures, not for services.
    [[nodiscard]] PointMm inWorld(PointMm on_map) const;
    /// And back.
    [[nodiscard]] PointMm ofWorld(PointMm in_world) const;

private:
    [[nodiscard]] PoseMm onMap() const;

    const Body& body_;
    Config config_;
    bool localised_ = true;
    Degrees turned_{0};  ///< of the map against the world
    PointMm shifted_;    ///< of the map against the turned world
    PoseMm lost_at_;     ///< believed pose when it was lost
    PoseMm lost_odometry_;
    int restarts_ = 0;
};

}  // namespace vemra::robot
