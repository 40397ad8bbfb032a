#include "robot/services/coverage/chains.h"

#include <algorithm>
#include <cmath>

#include "robot/planning/contour.h"
#include "robot/services/blackboard/blackboard_types.h"
#include "robot/services/core/leaf_functions.h"
#include "robot/services/coverage/run_search.h"

namespace vemra::robot {
namespace {

// From a place on open floor so far away a wall can be run at.
constexpr int kBlockWithin = 5;
// The wall of an end lies so near to it.
constexpr int kWallWithin = 8;
constexpr double kBehindFaceMm = 120;
// A contact is fresh while the robot has done no more than back off from it.
constexpr std::uint64_t kFreshFrames = 100;
constexpr double kFreshWithinMm = 300;
constexpr double kMarkedMm = 150;

}  // namespace

BT::NodeStatus ChainLeaves::mark(const BT::TreeNode& node)
{
    ground_.sync();
    TracedWalls& walls = ground_.map().tracedWalls();
    int chain = node.getParam<int>("chain_id").value_or(0);
    if (chain < 1 || static_cast<std::size_t>(chain) > walls.chains().size()) {
        chain = walls.begin(node.getParam<bool>("follow_wall_right").value_or(true));
        parts_.blackboard.set("current_chain_id", chain);
    }
    if (!walls.draw(chain, ground_.map().pose())) {
        return BT::NodeStatus::SUCCESS;
    }
    walls.close(chain);
    return BT::NodeStatus::FAILURE;
}

std::optional<CellIndex> ChainLeaves::untracedNear(CellIndex cell) const
{
    std::optional<CellIndex> nearest;
    int least = kBlockWithin * kBlockWithin + 1;
    for (int row = -kBlockWithin; row <= kBlockWithin; ++row) {
        for (int column = -kBlockWithin; column <= kBlockWithin; ++column) {
            const CellIndex at{cell.column + column, cell.row + row};
            const int away = row * row + column * column;
            if (away < least && ground_.isUntraced(at, centreOf(cell))) {
                least = away;
                nearest = at;
            }
        }
    }
    return nearest;
}

// What may be run at from a place: the trees turn down what lies on enclosed floor.
std::optional<CellIndex> ChainLeaves::blockFrom(const SearchGround& ground, CellIndex stand)
{
    const auto block = untracedNear(stand);
    return block && ground_.offers().isOpen("block", centreOf(*block)) &&
                   !ground_.isEnclosed(ground.plan, centreOf(stand))
               ? block
               : std::nullopt;
}

// A wall is followed with the wall on the right. Begun anywhere, all of it that lies behind would be left; so
// it is followed from where the traced wall before it ends. None: nothing of it is traced, so that it may
// begin anywhere.
std::optional<CellIndex> ChainLeaves::whereFollowingBegins(const SearchGround& ground, CellIndex stand,
                                                           CellIndex block) const
{
    const auto isOpen = [&](CellIndex cell) { return ground.plan.at(cell) == Ground::Open; };
    // Up to the wall.
    CellIndex towards{};
    for (int i = 0; i < kBlockWithin; ++i) {
        towards = {(block.column > stand.column) - (block.column < stand.column),
                   (block.row > stand.row) - (block.row < stand.row)};
        const CellIndex next{stand.column + towards.column, stand.row + towards.row};
        if (!isOpen(next)) {
            break;
        }
        stand = next;
    }
    if (isOpen({stand.column + towards.column, stand.row + towards.row})) {
        return std::nullopt;
    }
    bool ended = false;
    const auto contour = contourWithEdgeOnLeft(ground.plan, stand, towards, [&](CellIndex cell) {
        ended = !untracedNear(cell) || (ground.region && !contains(*ground.region, centreOf(cell)));
        return !ended;
    });
    // The last one lies beside what is traced.
    return ended && contour.size() > 1 ? std::optional{contour[contour.size() - 2]} : std::nullopt;
}

std::optional<GridPath> ChainLeaves::nearestBlock(const SearchGround& ground)
{
    ground_.sync();
    block_.reset();
    std::optional<CellIndex> block;
    auto way = findNearest(ground.costs, ground.from, [&](CellIndex cell) {
        if (ground.plan.at(cell) != Ground::Open || ground.plan.room.at(cell) > kBlockWithin * kBlockWithin ||
            (ground.region && !contains(*ground.region, centreOf(cell)))) {
            return false;
        }
        block = blockFrom(ground, cell);
        return block.has_value();
    });
    if (!way || !block || !takeWay(ground, *way, ground_.offers())) {
        return std::nullopt;
    }
    if (const auto begin = whereFollowingBegins(ground, way->cells.back(), *block)) {
        const auto first = blockFrom(ground, *begin);
        if (auto there = first ? findPath(ground.costs, ground.from, *begin) : std::nullopt) {
            way = std::move(there);
            block = first;
        }
    }
    block_ = centreOf(*block);
    ground_.offers().take("block", *block_);
    ground.keys.set("awesome_search_block", *block_);
    ground.keys.set("chain_region_check_point", centreOf(way->cells.back()));
    ground.keys.set("current_chain_id", 0);
    ground.keys.set("follow_wall_dir", true);
    return way;
}

// Is there, beside the last place of an open chain, wall that was not followed?
bool ChainLeaves::goesOn(const TracedWalls::Chain& chain) const
{
    if (!chain.open || chain.places.empty()) {
        return false;
    }
    const CellIndex end = cellAt(chain.places.back().at);
    for (int row = -kWallWithin; row <= kWallWithin; ++row) {
        for (int column = -kWallWithin; column <= kWallWithin; ++column) {
            if (ground_.isUntraced({end.column + column, end.row + row}, chain.places.back().at)) {
                return true;
            }
        }
    }
    return false;
}

std::optional<GridPath> ChainLeaves::nearestEnd(const SearchGround& ground)
{
    ground_.sync();
    const auto& chains = ground_.map().tracedWalls().chains();
    std::optional<GridPath> best;
    std::size_t of = 0;
    for (std::size_t i = 0; i < chains.size(); ++i) {
        if (!goesOn(chains[i])) {
            continue;
        }
        const PointMm end = chains[i].places.back().at;
        if ((ground.region && !contains(*ground.region, end)) || !ground_.offers().isOpen("chain", end)) {
            continue;
        }
        auto way = findWay(ground.plan, ground.costs, ground.from, end, kMarkedMm);
        if (way && isOpenWay(ground, *way, ground_.offers()) && (!best || way->cost < best->cost)) {
            best = std::move(way);
            of = i;
        }
    }
    if (best) {
        takeWay(ground, *best, ground_.offers());
        ground_.offers().take("chain", chains[of].places.back().at);
        ground.keys.set("current_chain_id", static_cast<int>(of) + 1);
        ground.keys.set("follow_wall_dir", chains[of].wall_right);
    }
    return best;
}

// A fresh contact with something that no chain goes round.
BT::NodeStatus ChainLeaves::needsFollowing()
{
    ground_.sync();
    const RobotMap& map = ground_.map();
    const PointMm contact = map.lastContact();
    const CellIndex at = cellAt(contact);
    if (map.lastContactFrame() == 0 || parts_.state.frame > map.lastContactFrame() + kFreshFrames ||
        distance(contact, map.pose().at) > kFreshWithinMm || map.tracedWalls().isTraced(at, map.pose().at)) {
        return BT::NodeStatus::FAILURE;
    }
    return passed(ground_.offers().take("contact", contact));
}

// For some ticks on end beside a place where a followed wall goes on.
BT::NodeStatus ChainLeaves::nearOpenEnd(const BT::TreeNode& node)
{
    const auto within = node.getParam<double>("dis_threshold");
    const auto ticks = node.getParam<int>("ticks_threshold");
    const std::string key = textOf(node, "out_chain_element");
    if (!within || !ticks || key.empty()) {
        return BT::NodeStatus::FAILURE;
    }
    ground_.sync();
    const PointMm at = ground_.map().pose().at;
    const auto& chains = ground_.map().tracedWalls().chains();
    const auto end = std::find_if(chains.begin(), chains.end(), [&](const TracedWalls::Chain& chain) {
        return !chain.places.empty() && distance(chain.places.back().at, at) <= *within && goesOn(chain);
    });
    const bool on_end = near_end_asked_in_ + 1 >= parts_.state.frame;
    near_end_asked_in_ = parts_.state.frame;
    near_end_ticks_ = end == chains.end() ? 0 : (on_end ? near_end_ticks_ : 0) + 1;
    if (end == chains.end() || near_end_ticks_ < *ticks) {
        return BT::NodeStatus::FAILURE;
    }
    node.blackboard()->set(key, end->places.back().at);
    return BT::NodeStatus::SUCCESS;
}

// A wall was followed away from a line; beyond what ended the line the robot has come back onto it.
BT::NodeStatus ChainLeaves::metLineAgain(const BT::TreeNode& node)
{
    const auto line = node.getParam<SegmentMm>("current_line");
    if (!line || distance(line->from, line->to) < 1) {
        return BT::NodeStatus::FAILURE;
    }
    const PointMm along = (1 / distance(line->from, line->to)) * (line->to - line->from);
    const auto placeOn = [&](PointMm point) {
        const PointMm to = point - line->from;
        return PointMm{to.x * along.x + to.y * along.y, along.x * to.y - along.y * to.x};
    };
    const PointMm robot = placeOn(ground_.map().pose().at);
    const PointMm contact = placeOn(ground_.map().lastContact());
    return passed(std::abs(robot.y) <= kCellMm && robot.x > contact.x + kFreshWithinMm / 2);
}

BT::NodeStatus ChainLeaves::extendBlock(const BT::TreeNode& node)
{
    const auto block = pointOf(node, "block_point");
    const auto from = pointOf(node, "source_point");
    const auto region = boxOf(node, "region");
    const std::string key = textOf(node, "out_block_point");
    if (!block || !from || key.empty() || distance(*block, *from) < 1) {
        return BT::NodeStatus::FAILURE;
    }
    const PointMm behind = *block + (kBehindFaceMm / distance(*block, *from)) * (*block - *from);
    if (region && !contains(*region, *block)) {
        return BT::NodeStatus::FAILURE;
    }
    node.blackboard()->set(key, behind);
    return BT::NodeStatus::SUCCESS;
}

void ChainLeaves::install(leaf::LeafHost& host)
{
    host.condition("MarkChainCheckOverlap", [this](BT::TreeNode& node) { return mark(node); });
    host.action("CloseChain", [this](BT::TreeNode& node) {
        const int chain = node.getParam<int>("chain_id").value_or(0);
        if (chain > 0) {
            ground_.map().tracedWalls().close(chain);
        } else if (block_) {
            ground_.offers().useUp("block", *block_);
        }
        return BT::NodeStatus::SUCCESS;
    });
    host.condition("HasOpenChain", [this](BT::TreeNode& node) {
        const auto region = boxOf(node, "region");
        const auto& chains = ground_.map().tracedWalls().chains();
        return passed(std::any_of(chains.begin(), chains.end(), [&](const TracedWalls::Chain& chain) {
            return goesOn(chain) && (!region || contains(*region, chain.places.back().at));
        }));
    });
    host.condition("GongNeedFollowWall", [this](BT::TreeNode&) { return needsFollowing(); });
    host.condition("IsNearChainOpenEnd", [this](BT::TreeNode& node) { return nearOpenEnd(node); });
    host.condition("CheckCurrentLineBump", [this](BT::TreeNode& node) { return metLineAgain(node); });
    host.action("ExtendBlockPoint", [this](BT::TreeNode& node) { return extendBlock(node); });
    installRegions(host);
}

void ChainLeaves::installRegions(leaf::LeafHost& host)
{
    host.condition("IsPointInRegionArea", [this](BT::TreeNode& node) {
        ground_.sync();
        if (const std::string key = textOf(node, "out_map"); !key.empty()) {
            node.blackboard()->set(key, std::make_shared<const Grid<unsigned char>>(ground_.outside()));
        }
        const auto point = pointOf(node, "src_point");
        return passed(point && ground_.isEnclosed(ground_.plan(), *point));
    });
    host.condition("IsPointOutOfAllChainRegion", [this](BT::TreeNode& node) {
        const auto point = pointOf(node, "source_point");
        return passed(point && !ground_.isEnclosed(ground_.plan(), *point));
    });
    host.action("MarkFollowWallMap", [](BT::TreeNode&) { return BT::NodeStatus::SUCCESS; });
    host.condition("InFollowWallMarkMap", [this](BT::TreeNode& node) {
        const auto point = pointOf(node, "point");
        const int within = static_cast<int>(kMarkedMm / kCellMm);
        bool marked = false;
        for (int row = -within; point && row <= within; ++row) {
            for (int column = -within; column <= within; ++column) {
                const CellIndex at = cellAt(*point);
                marked = marked || ground_.map().tracedWalls().isTraced({at.column + column, at.row + row});
            }
        }
        return passed(marked);
    });
}

}  // namespace vemra::robot
