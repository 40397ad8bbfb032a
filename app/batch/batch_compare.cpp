#include "app/batch/batch_compare.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <ostream>
#include <string>

#include "app/batch/batch_figures.h"
#include "robot/base/percentile.h"

namespace vemra::app {
namespace {

using Line = nlohmann::ordered_json;
using BySeed = std::map<std::uint64_t, const Line*>;

constexpr std::size_t kMostSeeds = 5;

BySeed bySeed(const std::vector<Line>& lines)
{
    BySeed seeds;
    for (const Line& line : lines)
        seeds[line.at("seed").get<std::uint64_t>()] = &line;
    return seeds;
}

struct Change
{
    std::uint64_t seed;
    double before;
    double after;
    [[nodiscard]] double by() const { return after - before; }
};

void printFigure(std::ostream& out, const BatchFigure& figure, std::vector<Change> changes)
{
    std::vector<double> differences;
    std::size_t better = 0;
    std::size_t worse = 0;
    for (const Change& change : changes) {
        differences.push_back(change.by());
        const double gain = figure.more_is_better ? change.by() : -change.by();
        better += gain > 0 ? 1 : 0;
        worse += gain < 0 ? 1 : 0;
    }
    std::sort(differences.begin(), differences.end());
    out << fmt::format("{:26} better {:4}  worse {:4}  5 % {:+8.1f}  median {:+8.1f}  95 % {:+8.1f} {}\n",
                       figure.title, better, worse, robot::percentileOf(differences, 0.05),
                       robot::percentileOf(differences, 0.5), robot::percentileOf(differences, 0.95),
                       figure.unit);
    std::stable_sort(changes.begin(), changes.end(), [&](const Change& a, const Change& b) {
        const double sign = figure.more_is_better ? 1 : -1;
        return sign * a.by() < sign * b.by();
    });
    for (std::size_t i = 0; i < std::min(kMostSeeds, worse); ++i)
        out << fmt::format("    seed {:>6}: {:.1f}, was {:.1f}\n", changes[i].seed, changes[i].after,
                           changes[i].before);
}

}  // namespace

void printComparison(std::ostream& out, const std::vector<Line>& before, const std::vector<Line>& after)
{
    const BySeed olds = bySeed(before);
    const BySeed news = bySeed(after);
    std::size_t both = 0;
    std::size_t lost = 0;
    std::string outcome;
    std::map<const BatchFigure*, std::vector<Change>> changes;
    for (const auto& [seed, old_line] : olds) {
        const auto found = news.find(seed);
        if (found == news.end()) {
            ++lost;
            continue;
        }
        ++both;
        const Line& line = *found->second;
        if (line.at("good") != old_line->at("good"))
            outcome += fmt::format("    seed {:>6}: {}, was {}; {}\n", seed, line.value("ended", ""),
                                   old_line->value("ended", ""), line.at("replay").get<std::string>());
        for (const BatchFigure& figure : kBatchFigures) {
            const auto was = figureOf(*old_line, figure);
            const auto is = figureOf(line, figure);
            if (was && is)
                changes[&figure].push_back({seed, *was, *is});
        }
    }
    out << fmt::format("{} seeds in both", both);
    if (lost + (news.size() - both) > 0)
        out << fmt::format("; only in the first: {}, only in the second: {}", lost, news.size() - both);
    out << '\n';
    if (both == 0)
        return;
    out << (outcome.empty() ? "all came out as before\n" : "came out otherwise:\n" + outcome);
    for (const BatchFigure& figure : kBatchFigures)
        if (const auto found = changes.find(&figure); found != changes.end())
            printFigure(out, figure, found->second);
}

}  // namespace vemra::app
