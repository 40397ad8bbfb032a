#pragma once

#include "robot/services/core/service.h"
#include "robot/services/coverage/ground.h"
#include "robot/services/navigation/search/navigation_search.h"

namespace vemra::robot {

/// Leaves that keep the walls that were followed as chains, and the searches for walls that were not:
/// `Chain` finds the end of a chain at which its wall goes on (and writes `current_chain_id`,
/// `follow_wall_dir`), `Block` a thing that no chain goes round (and writes `awesome_search_block`,
/// `chain_region_check_point`, a chain of 0 and the wall on the right).
class ChainLeaves final
{
public:
    ChainLeaves(const RobotParts& parts, CoverageGround& ground) : parts_(parts), ground_(ground) {}

    void install(leaf::LeafHost& host);

    [[nodiscard]] std::optional<GridPath> nearestEnd(const SearchGround& ground);
    [[nodiscard]] std::optional<GridPath> nearestBlock(const SearchGround& ground);

private:
    void installRegions(leaf::LeafHost& host);
    BT::NodeStatus mark(const BT::TreeNode& node);
    BT::NodeStatus extendBlock(const BT::TreeNode& node);
    BT::NodeStatus needsFollowing();
    BT::NodeStatus nearOpenEnd(const BT::TreeNode& node);
    BT::NodeStatus metLineAgain(const BT::TreeNode& node);
    [[nodiscard]] bool goesOn(const TracedWalls::Chain& chain) const;
    [[nodiscard]] std::optional<CellIndex> untracedNear(CellIndex cell) const;
    [[nodiscard]] std::optional<CellIndex> blockFrom(const SearchGround& ground, CellIndex stand);
    [[nodiscard]] std::optional<CellIndex> whereFollowingBegins(const SearchGround& ground, CellIndex stand,
                                                                CellIndex block) const;

    RobotParts parts_;
    CoverageGround& ground_;
    std::optional<PointMm> block_;         ///< the last one offered
    std::uint64_t near_end_asked_in_ = 0;  ///< frame
    int near_end_ticks_ = 0;
};

}  // namespace vemra::robot
