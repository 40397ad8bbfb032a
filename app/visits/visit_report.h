#pragma once

#include <iosfwd>
#include <map>
#include <nlohmann/json_fwd.hpp>
#include <string>
#include <vector>

#include "app/trees/liveness.h"
#include "app/visits/visit_file.h"

namespace vemra::app {

/// What came of many runs: trees, which of their nodes are live, and how often each was visited.
struct VisitReport
{
    std::vector<TreeModel> trees;
    std::map<std::string, TreeLife> lives;
    VisitTable visits;
    ConstantResult constant;
};

struct VisitTotals
{
    std::size_t visited = 0;  ///< live nodes that were ticked
    std::size_t live = 0;     ///< of trees that are written
};

[[nodiscard]] VisitTotals totalsOf(const VisitReport& report, const TreeModel& tree);

/// Trees with their shares, a line each.
void writeVisitSummary(std::ostream& out, const VisitReport& report);
/// Each tree as an outline with the counts before each node; "off" where a node is not live.
void writeVisitOutlines(std::ostream& out, const VisitReport& report);
/// The topmost live nodes that were never ticked, and live conditions that were never seen both ways.
void writeVisitGaps(std::ostream& out, const VisitReport& report);
/// "visited N of M live nodes".
void writeVisitTotal(std::ostream& out, const VisitReport& report);
[[nodiscard]] nlohmann::ordered_json visitJson(const VisitReport& report);

}  // namespace vemra::app
