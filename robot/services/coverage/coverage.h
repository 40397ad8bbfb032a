#pragma once

#include "robot/services/core/service.h"
#include "robot/services/coverage/chains.h"
#include "robot/services/coverage/charge_need.h"
#include "robot/services/coverage/ground.h"
#include "robot/services/coverage/lines.h"
#include "robot/services/coverage/rooms.h"
#include "robot/services/coverage/subregions.h"
#include "robot/services/navigation/search/navigation_search.h"

namespace vemra::robot {

/// All that decides which floor is cleaned next: lines, subregions, chains of walls, rooms, and the searches
/// for floor that is left. The map, the switches and the search must outlive it.
class CoverageService final : public Service
{
public:
    CoverageService(const RobotParts& parts, RobotMap& map, const MapStore& store,
                    const SensorSwitches& switches, NavigationSearch& search);

    void install(leaf::LeafHost& host) override;
    void update() override;
    bool take(const Happening& what) override;

private:
    void settleSearches();
    [[nodiscard]] int chargeForTheRest();
    [[nodiscard]] std::optional<GridPath> nearestUnswept(const SearchGround& ground);
    [[nodiscard]] std::optional<GridPath> nearestUnseen(const SearchGround& ground);
    [[nodiscard]] std::optional<GridPath> intoRegion(const SearchGround& ground);

    RobotParts parts_;
    NavigationSearch& search_;
    CoverageGround ground_;
    LineLeaves lines_;
    SubregionLeaves subregions_;
    ChainLeaves chains_;
    RoomLeaves rooms_;
    ChargeNeed charge_need_;
};

}  // namespace vemra::robot
