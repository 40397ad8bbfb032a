#include "app/visits/visit_report.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>
#include <ostream>

#include "app/trees/outline.h"

namespace vemra::app {
namespace {

/// A node of a report, with all that is known of it.
struct Seen
{
    const TreeModel& tree;
    std::size_t index;
    const ModelNode& node;
    bool live;
    const robot::Visits& visits;

    [[nodiscard]] std::string place() const { return fmt::format("{}:{}", tree.name, index + 1); }
};

template <class Visit>
void forNodes(const VisitReport& report, const TreeModel& tree, const Visit& visit)
{
    const TreeLife& life = report.lives.at(tree.name);
    const std::vector<robot::Visits>& visits = report.visits.of(tree.name);
    for (std::size_t i = 0; i < tree.nodes.size(); ++i)
        visit(Seen{tree, i, tree.nodes[i], life.live[i], visits[i]});
}

template <class Visit>
void forLiveNodes(const VisitReport& report, const Visit& visit)
{
    for (const TreeModel& tree : report.trees)
        if (tree.written())
            forNodes(report, tree, [&visit](const Seen& seen) {
                if (seen.live)
                    visit(seen);
            });
}

/// How many live nodes below this one were never ticked either.
std::size_t missedBelow(const VisitReport& report, const Seen& top)
{
    const TreeLife& life = report.lives.at(top.tree.name);
    std::size_t count = 0;
    for (std::size_t i = top.index + 1; i < top.tree.nodes.size() && top.tree.nodes[i].depth > top.node.depth;
         ++i)
        count += life.live[i] ? 1 : 0;
    return count;
}

bool isTopmostMissed(const VisitReport& report, const Seen& seen)
{
    return seen.visits.ticks == 0 &&
           (seen.node.parent < 0 ||
            report.visits.of(seen.tree.name)[static_cast<std::size_t>(seen.node.parent)].ticks > 0);
}

bool isOneWay(const VisitReport& report, const Seen& seen)
{
    return seen.node.type == BT::NodeType::CONDITION && enteredTree(seen.node).empty() &&
           seen.visits.ticks > 0 && (seen.visits.success == 0 || seen.visits.failure == 0) &&
           !report.constant(seen.node);
}

}  // namespace

VisitTotals totalsOf(const VisitReport& report, const TreeModel& tree)
{
    VisitTotals totals;
    if (tree.written())
        forNodes(report, tree, [&totals](const Seen& seen) {
            totals.live += seen.live ? 1 : 0;
            totals.visited += seen.live && seen.visits.ticks > 0 ? 1 : 0;
        });
    return totals;
}

void writeVisitSummary(std::ostream& out, const VisitReport& report)
{
    out << fmt::format("{:<40} {:>7} {:>6} {:>6}\n", "tree", "visited", "live", "share");
    for (const TreeModel& tree : report.trees) {
        const VisitTotals totals = totalsOf(report, tree);
        if (!tree.written())
            out << fmt::format("{:<40} not written\n", tree.name);
        else if (totals.live == 0)
            out << fmt::format("{:<40} not entered\n", tree.name);
        else
            out << fmt::format("{:<40} {:>7} {:>6} {:>4} %\n", tree.name, totals.visited, totals.live,
                               100 * totals.visited / totals.live);
    }
}

void writeVisitOutlines(std::ostream& out, const VisitReport& report)
{
    for (const TreeModel& tree : report.trees) {
        const VisitTotals totals = totalsOf(report, tree);
        if (totals.live == 0)
            continue;
        out << fmt::format("{}: visited {} of {} live nodes\n{:>9} {:>9} {:>9} {:>9} {:>7}\n", tree.name,
                           totals.visited, totals.live, "ticks", "SUCCESS", "FAILURE", "RUNNING", "halts");
        forNodes(report, tree, [&out](const Seen& seen) {
            const robot::Visits& v = seen.visits;
            if (seen.live || v.ticks > 0)
                out << fmt::format("{:>9} {:>9} {:>9} {:>9} {:>7}", v.ticks, v.success, v.failure, v.running,
                                   v.halts);
            else
                out << fmt::format("{:>9} {:>37}", "off", "");
            out << "  " << std::string(2 * seen.node.depth, ' ') << nodeText(seen.node) << '\n';
        });
        out << '\n';
    }
}

void writeVisitGaps(std::ostream& out, const VisitReport& report)
{
    out << "Live nodes never visited, the topmost of each branch:\n";
    forLiveNodes(report, [&](const Seen& seen) {
        if (!isTopmostMissed(report, seen))
            return;
        const std::size_t below = missedBelow(report, seen);
        out << fmt::format("  {}: {}{}\n", seen.place(), nodeText(seen.node),
                           below > 0 ? fmt::format("  (and {} below)", below) : "");
    });
    out << "Live conditions never seen both ways:\n";
    forLiveNodes(report, [&](const Seen& seen) {
        if (isOneWay(report, seen))
            out << fmt::format("  {}: {}  (only {}, {} times)\n", seen.place(), nodeText(seen.node),
                               seen.visits.success > 0 ? "SUCCESS" : "FAILURE", seen.visits.ticks);
    });
}

void writeVisitTotal(std::ostream& out, const VisitReport& report)
{
    VisitTotals all;
    for (const TreeModel& tree : report.trees) {
        const VisitTotals totals = totalsOf(report, tree);
        all.visited += totals.visited;
        all.live += totals.live;
    }
    out << fmt::format("visited {} of {} live nodes\n", all.visited, all.live);
}

nlohmann::ordered_json visitJson(const VisitReport& report)
{
    using nlohmann::ordered_json;
    ordered_json trees = ordered_json::array();
    VisitTotals all;
    for (const TreeModel& tree : report.trees) {
        const VisitTotals totals = totalsOf(report, tree);
        all.visited += totals.visited;
        all.live += totals.live;
        ordered_json nodes = ordered_json::array();
        forNodes(report, tree, [&](const Seen& seen) {
            const robot::Visits& v = seen.visits;
            nodes.push_back({{"id", seen.node.id},
                             {"live", seen.live},
                             {"ticks", v.ticks},
                             {"success", v.success},
                             {"failure", v.failure},
                             {"running", v.running},
                             {"halts", v.halts}});
        });
        trees.push_back({{"name", tree.name},
                         {"written", tree.written()},
                         {"visited", totals.visited},
                         {"live", totals.live},
                         {"nodes", nodes}});
    }
    ordered_json missed = ordered_json::array();
    ordered_json one_way = ordered_json::array();
    forLiveNodes(report, [&](const Seen& seen) {
        if (seen.visits.ticks == 0)
            missed.push_back({{"tree", seen.tree.name}, {"index", seen.index}, {"id", seen.node.id}});
        if (isOneWay(report, seen))
            one_way.push_back({{"tree", seen.tree.name},
                               {"index", seen.index},
                               {"id", seen.node.id},
                               {"only", seen.visits.success > 0 ? "SUCCESS" : "FAILURE"}});
    });
    return {{"visited", all.visited},
            {"live", all.live},
            {"trees", trees},
            {"never_visited", missed},
            {"never_both_ways", one_way}};
}

}  // namespace vemra::app
