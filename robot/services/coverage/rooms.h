#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "robot/belief/map_store.h"
#include "robot/services/core/service.h"
#include "robot/services/coverage/ground.h"
#include "robot/services/navigation/search/navigation_search.h"

namespace vemra::robot {

/// The number of a room that stands for a place somebody pointed at, and of floor that is in no room.
inline constexpr std::uint8_t kPointRoom = 126;
inline constexpr std::uint8_t kBesideRooms = 127;

/// Leaves that clean a map of rooms: which rooms a task has, which is in hand, what belongs to it. A task's
/// map is the stored one, or rooms that somebody drew. The searches `Segment` (floor that is left in the room
/// in hand, or in any room of the task) and `SegmentRetry` (a room that was never reached) are here.
class RoomLeaves final
{
public:
    RoomLeaves(const RobotParts& parts, CoverageGround& ground, const MapStore& store)
        : parts_(parts), ground_(ground), store_(store)
    {}

    void install(leaf::LeafHost& host);
    void update();
    /// How often the rooms of the next list are to be cleaned.
    void setPasses(int passes) { passes_ = passes; }

    [[nodiscard]] std::optional<GridPath> nextPlace(const SearchGround& ground);
    [[nodiscard]] std::optional<GridPath> unreached(const SearchGround& ground);
    /// While the trees say so, searches keep to the room in hand; none: they do not.
    [[nodiscard]] std::uint8_t roomThatIsKept() const;
    void closeOthers(PlanningMap& plan);

private:
    struct Room
    {
        std::uint8_t number = kNoRoom;
        int passes = 1;
        bool reached = false;
        bool mopped = false;
    };

    void installLists(leaf::LeafHost& host);
    void installRoom(leaf::LeafHost& host);
    void installTests(leaf::LeafHost& host);
    BT::NodeStatus setList(const std::vector<Room>& wanted);
    BT::NodeStatus takeStoredMap();
    BT::NodeStatus takeSelected();
    BT::NodeStatus takeDrawn();
    BT::NodeStatus takePoint();
    BT::NodeStatus takeRoomOfGoal();
    BT::NodeStatus fence(const BT::TreeNode& node);

    [[nodiscard]] std::uint8_t roomAt(PointMm place) const;
    [[nodiscard]] std::optional<std::uint8_t> inHand() const;
    [[nodiscard]] bool near(PointMm place, std::uint8_t room, double within_mm) const;
    [[nodiscard]] Room* find(std::uint8_t number);
    [[nodiscard]] bool isWanted(const Room& room) const;
    void setMap(std::shared_ptr<const RoomGrid> map);
    [[nodiscard]] const RoomFence& fenceAround(std::uint8_t room, bool within);
    [[nodiscard]] BoxMm boxOfRoom(std::uint8_t number, PointMm place) const;
    [[nodiscard]] std::vector<CleaningRun> runsIn(const SearchGround& ground, std::uint8_t room);
    [[nodiscard]] std::optional<GridPath> placeIn(const SearchGround& ground,
                                                  const std::vector<std::uint8_t>& rooms);

    RobotParts parts_;
    CoverageGround& ground_;
    const MapStore& store_;
    std::shared_ptr<const RoomGrid> map_;                        ///< of the task; none: no task of rooms
    std::vector<Room> rooms_;                                    ///< of the task, in its order
    std::map<std::pair<std::uint8_t, bool>, RoomFence> fences_;  ///< those that were asked for, of this map
    std::optional<std::pair<std::uint8_t, bool>> fenced_;        ///< room and kind of the fence that stands
    std::uint64_t elsewhere_since_ = 0;  ///< first frame in another room; 0: not there
    std::optional<PointMm> driven_to_;   ///< the goal that was asked for last
    std::optional<BoxMm> point_area_;    ///< set for the next drawn map
    int passes_ = 1;                     ///< that the app asks for with a room
    int pass_ = 1;                       ///< of the room in hand
};

}  // namespace vemra::robot
