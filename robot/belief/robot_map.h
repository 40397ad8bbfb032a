#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "robot/belief/cleaned_floor.h"
#include "robot/belief/contacts.h"
#include "robot/belief/occupancy.h"
#include "robot/belief/room_grid.h"
#include "robot/belief/steps.h"
#include "robot/belief/traced_walls.h"
#include "robot/belief/track.h"
#include "robot/body/body.h"
#include "robot/world/virtual_walls.h"

namespace vemra::robot {

/// What driving may write on the map.
enum class DrawMode : std::uint8_t
{
    Nothing,
    BlockOnly,  ///< obstacles that were met
    ClearOnly,  ///< floor that was driven over
    Everything
};

/// How often what the robot knows of its floor has changed, part by part.
struct MapVersion
{
    std::uint64_t occupancy = 0;
    std::uint64_t contacts = 0;
    std::uint64_t steps = 0;
    std::uint64_t virtual_walls = 0;
    std::uint64_t track = 0;
    std::uint64_t resets = 0;
    bool operator==(const MapVersion&) const = default;
};

/// All that the robot knows of the floor it works on: filled by its senses at the pose that it believes in.
class RobotMap
{
public:
    /// Both must outlive the map.
    RobotMap(Body& body, const PoseSource& pose) : body_(body), pose_(pose) {}

    /// A frame: the laser's scan in every fifth, the track, contacts.
    void update(std::uint64_t frame);
    /// Begins an empty map; virtual walls stay. What was swept and traced is forgotten with it.
    void reset();
    /// Forgets what was swept and traced; walls, track and contacts stay.
    void forgetCleaning();
    /// A robot that does not know where it is draws a map of its surroundings, the one so far set aside; and
    /// takes that up again. Both once: a second call changes nothing.
    void setAside();
    void bringBack();
    /// The map that is set aside, or the present one.
    [[nodiscard]] const OccupancyMap& known() const { return aside_ ? aside_->occupancy : occupancy_; }

    [[nodiscard]] PoseMm pose() const { return pose_.pose(); }
    [[nodiscard]] const OccupancyMap& occupancy() const { return occupancy_; }
    [[nodiscard]] OccupancyMap& occupancy() { return occupancy_; }
    [[nodiscard]] const Track& track() const { return track_; }
    /// A place where the robot was before it came to where it is.
    void remember(PointMm place) { track_.follow(place); }
    [[nodiscard]] const ContactMap& contacts() const { return contacts_; }
    [[nodiscard]] const StepBook& steps() const { return steps_; }
    [[nodiscard]] StepBook& steps() { return steps_; }
    /// Steps that are met from now on are closed, or open.
    void keepNewStepsClosed(bool closed) { new_steps_closed_ = closed; }
    [[nodiscard]] const CleanedFloor& cleaned() const { return cleaned_; }
    [[nodiscard]] CleanedFloor& cleaned() { return cleaned_; }
    [[nodiscard]] const TracedWalls& tracedWalls() const { return traced_walls_; }
    [[nodiscard]] TracedWalls& tracedWalls() { return traced_walls_; }
    /// How often reset() was called: who keeps places of the map forgets them with it.
    [[nodiscard]] std::uint64_t resets() const { return resets_; }
    [[nodiscard]] const VirtualWalls& virtualWalls() const { return virtual_walls_; }
    void setVirtualWalls(VirtualWalls walls);
    /// What shuts the other rooms while one is cleaned; counts while `SegmentVirtualWallMap` is on.
    [[nodiscard]] const std::optional<RoomFence>& roomFence() const { return room_fence_; }
    void setRoomFence(std::optional<RoomFence> fence)
    {
        room_fence_ = std::move(fence);
        ++walls_set_;
    }
    /// Boxes that the robot keeps within while the sensor of their name is on: their edges are walls to it,
    /// as long as it is inside.
    [[nodiscard]] const std::map<std::string, BoxMm, std::less<>>& borders() const { return borders_; }
    void setBorder(const std::string& sensor, const BoxMm& box) { borders_[sensor] = box; }
    void dropBorder(const std::string& sensor) { borders_.erase(sensor); }
    /// While it stays the same, a search over the map comes out as before.
    [[nodiscard]] MapVersion version() const
    {
        return {occupancy_.version(), contacts_.version(), steps_.version(),
                walls_set_,           track_.size(),       resets_};
    }
    [[nodiscard]] DrawMode drawMode() const { return draw_mode_; }
    void setDrawMode(DrawMode mode) { draw_mode_ = mode; }

    /// Where something is around the robot, on the map and within radius_mm of its middle: what the last scan
    /// saw, unless the laser is not to count, what was bumped into, and edges of the floor.
    [[nodiscard]] std::vector<PointMm> obstaclesNear(double radius_mm, bool by_laser) const;
    /// Where the last bump was, and in which frame; none: 0.
    [[nodiscard]] PointMm lastContact() const { return last_contact_; }
    [[nodiscard]] std::uint64_t lastContactFrame() const { return last_contact_frame_; }
    /// Counts as the last bump though nothing was there to press the bumper.
    void touch(PointMm at, std::uint64_t frame)
    {
        last_contact_ = at;
        last_contact_frame_ = frame;
    }

private:
    void enterScan();
    void enterContact(std::uint64_t frame);
    void meet(double bearing, std::uint64_t frame);
    [[nodiscard]] PointMm contactAt(const PoseMm& at, double bearing) const;
    /// Enters steps that the body feels; those that are closed.
    [[nodiscard]] Sides enterSteps();

    Body& body_;
    const PoseSource& pose_;
    OccupancyMap occupancy_;
    Track track_;
    ContactMap contacts_;
    StepBook steps_;
    bool new_steps_closed_ = false;
    CleanedFloor cleaned_;
    TracedWalls traced_walls_;
    struct Aside
    {
        OccupancyMap occupancy;
        Track track;
        ContactMap contacts;
        CleanedFloor cleaned;
        TracedWalls traced_walls;
    };
    std::optional<Aside> aside_;
    std::uint64_t resets_ = 0;
    VirtualWalls virtual_walls_;
    std::optional<RoomFence> room_fence_;
    std::uint64_t walls_set_ = 0;  ///< how often
    std::map<std::string, BoxMm, std::less<>> borders_;
    DrawMode draw_mode_ = DrawMode::Everything;

    std::vector<PointMm> seen_;  ///< where the beams of the last scan ended
    PoseMm scanned_at_;
    std::uint64_t scanned_in_ = 0;
    bool scanned_ = false;
    bool pressed_ = false;
    PointMm last_contact_;
    std::uint64_t last_contact_frame_ = 0;
};

}  // namespace vemra::robot
