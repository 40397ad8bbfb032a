#include "app/walks/telling_walks.h"

#include <algorithm>
#include <map>
#include <string>

#include "robot/host/visit_counter.h"

namespace vemra::app {
namespace {

constexpr std::uint64_t kMostInVain = 400;

/// What the walks of a tree have come to so far: of each node a bit for each result, and one for a halt.
class Reach
{
public:
    /// Whether the walk came to something that not two before came to: one may come there and show nothing of
    /// it.
    bool add(const robot::VisitCounter& walk)
    {
        bool is_new = false;
        for (const auto& [tree, rows] : walk.trees()) {
            std::vector<Seen>& nodes = nodes_[tree];
            nodes.resize(std::max(nodes.size(), rows.size()));
            for (std::size_t i = 0; i < rows.size(); ++i) {
                const robot::Visits& visits = rows[i].visits;
                const unsigned bits = (visits.success > 0 ? 1U : 0U) | (visits.failure > 0 ? 2U : 0U) |
                                      (visits.running > 0 ? 4U : 0U) | (visits.halts > 0 ? 8U : 0U);
                Seen& seen = nodes[i];
                is_new = is_new || (bits & ~seen.twice) != 0;
                seen.twice |= seen.once & bits;
                seen.once |= bits;
            }
        }
        return is_new;
    }

private:
    struct Seen
    {
        unsigned once = 0;
        unsigned twice = 0;
    };
    std::map<std::string, std::vector<Seen>, std::less<>> nodes_;
};

}  // namespace

std::vector<RecordedWalk> tellingWalks(Walker& walker, const TreeModel& tree, std::uint64_t count)
{
    std::vector<RecordedWalk> telling;
    Reach reach;
    std::uint64_t in_vain = 0;
    for (std::uint64_t number = 0; number < count && in_vain < kMostInVain; ++number) {
        robot::VisitCounter visits;
        const std::uint32_t digest = digestOf(walker.walk(tree, number, &visits));
        ++in_vain;
        if (!reach.add(visits))
            continue;
        telling.push_back({number, digest});
        in_vain = 0;
    }
    return telling;
}

}  // namespace vemra::app
