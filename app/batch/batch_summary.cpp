#include "app/batch/batch_summary.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <ostream>
#include <string>

#include "app/batch/batch_figures.h"
#include "robot/base/percentile.h"

namespace vemra::app {
namespace {

using Lines = std::vector<nlohmann::ordered_json>;

constexpr std::size_t kWorst = 10;

bool isGood(const nlohmann::ordered_json& line)
{
    return line.at("good").get<bool>();
}

// The failed ones first, then by floor left out or by time.
double badness(const nlohmann::ordered_json& line)
{
    const double failed = isGood(line) ? 0 : 1e9;
    return failed + (line.contains("coverage") ? 1e5 * (1 - line.at("coverage").get<double>())
                                               : line.at("time_s").get<double>());
}

}  // namespace

void printSummary(std::ostream& out, const Lines& lines)
{
    std::map<std::string, int> ended;
    for (const auto& line : lines)
        ++ended[line.contains("why") ? line.at("why").get<std::string>()
                                     : line.at("ended").get<std::string>()];
    const auto good = std::count_if(lines.begin(), lines.end(), isGood);
    out << fmt::format("{} of {} came out well", good, lines.size());
    for (const auto& [how, count] : ended)
        out << fmt::format("; {}: {}", how, count);
    out << '\n';
    for (const BatchFigure& figure : kBatchFigures) {
        std::vector<double> values;
        for (const auto& line : lines)
            if (const auto value = figureOf(line, figure); value && isGood(line))
                values.push_back(*value);
        if (values.empty())
            continue;
        std::sort(values.begin(), values.end());
        out << fmt::format(
            "{:26} least {:7.1f}  5 % {:7.1f}  median {:7.1f}  95 % {:7.1f}  most {:7.1f} {}\n", figure.title,
            values.front(), robot::percentileOf(values, 0.05), robot::percentileOf(values, 0.5),
            robot::percentileOf(values, 0.95), values.back(), figure.unit);
    }
    Lines worst = lines;
    std::stable_sort(worst.begin(), worst.end(),
                     [](const auto& a, const auto& b) { return badness(a) > badness(b); });
    worst.resize(std::min(worst.size(), kWorst));
    out << "the worst:\n";
    for (const auto& line : worst) {
        const double figure = line.contains("coverage") ? 100 * line.at("coverage").get<double>()
                                                        : line.at("time_s").get<double>();
        out << fmt::format("  {:>6.1f} {:2} {:11} ", figure, line.contains("coverage") ? "%" : "s",
                           line.at("ended").get<std::string>());
        if (const auto attempts = line.find("attempts"); attempts != line.end())
            out << fmt::format("{:>2} final approaches  ", attempts->get<int>());
        out << line.at("replay").get<std::string>() << '\n';
    }
}

}  // namespace vemra::app
