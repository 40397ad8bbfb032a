#pragma once

#include <cstdint>
#include <optional>

#include "robot/belief/localisation.h"
#include "robot/belief/map_store.h"
#include "robot/services/core/service.h"
#include "robot/services/slam/place_search.h"

namespace vemra::robot {

/// SLAM's side of finding the robot's place again.
///
/// The robot is lost when somebody lifts and carries it, and found on its dock. A tree that relocalises asks
/// with `SlamActiveRelocalize`, which runs until SLAM is sure or gives up; meanwhile SLAM steers it by keys.
/// They are levels and not events: each is written when that leaf is ticked, after the motion of the frame,
/// and what the tree does about it brings the next. `SlamReachReloc` and `RelocMap` are the tree's answers.
class SlamService final : public Service
{
public:
    SlamService(const RobotParts& parts, Localisation& localisation, RobotMap& map, MapStore& store,
                const SensorSwitches& switches)
        : parts_(parts),
          localisation_(localisation),
          map_(map),
          store_(store),
          search_(parts.body, map, switches)
    {}

    void install(leaf::LeafHost& host) override;
    void update() override;
    bool take(const Happening& what) override;

private:
    enum class Stage : std::uint8_t
    {
        Off,
        FirstTurn,  ///< the robot turns on the spot and looks around
        Told,       ///< the turn is enough; the tree says that it begins
        Alone,      ///< the tree says nothing: it walks a way of its own, and SLAM looks in passing
        Walking,    ///< to a place to look from
        Looking,    ///< it has got there and turns
        Again,      ///< not recognised, and there are places left
        GoingBack,  ///< there is a verdict
        Found,
        GaveUp
    };

    void installMaps(leaf::LeafHost& host);
    void startFromStoredMap();
    BT::NodeStatus relocalise(bool begins);
    void stop();
    void steer();
    void lookOnce();
    void lookInPassing();
    [[nodiscard]] bool isSure();
    /// What was known before the place was lost, while that is the map to find it on.
    [[nodiscard]] bool keepsKnown() const { return known_ && map_.resets() == known_resets_; }
    void setAside();
    void bringBack();
    void giveUp();
    void offerPoint();
    void reached(const std::string& what);
    void believe();
    void enter(Stage stage);

    RobotParts parts_;
    Localisation& localisation_;
    RobotMap& map_;
    MapStore& store_;
    PlaceSearch search_;
    /// The map as it was when the place was lost: what the robot sees since then it enters at a place where
    /// it is not.
    std::optional<OccupancyMap> known_;
    std::uint64_t known_resets_ = 0;
    bool knew_ = true;               ///< where it is, as last told
    std::optional<bool> on_stored_;  ///< whether the map in use is a stored one, as last told
    Stage stage_ = Stage::Off;
    SlamMood mood_ = SlamMood::Normal;
    double turned_deg_ = 0;       ///< since the stage began
    std::uint64_t begun_ = 0;     ///< frame in which the stage began
    std::uint64_t looked_ = 0;    ///< frame of the last look in passing
    bool crossing_done_ = false;  ///< the short way to and fro, where there was no place to go to
};

}  // namespace vemra::robot
