#pragma once

#include <array>
#include <nlohmann/json.hpp>
#include <optional>

namespace vemra::app {

/// A figure of a batch's lines, and how it is told.
struct BatchFigure
{
    const char* key;
    const char* title;
    double scale;
    const char* unit;
    bool more_is_better;
};

inline constexpr std::array<BatchFigure, 10> kBatchFigures = {{
    {"time_s", "time", 1, "s", false},
    {"after_hearing_s", "time from hearing the dock", 1, "s", false},
    {"attempts", "final approaches", 1, "", false},
    {"coverage", "floor cleaned", 100, "%", true},
    {"recleaned_m2", "cleaned again", 1, "m2", false},
    {"t97_s", "time to 97 %", 1, "s", false},
    {"run_m", "driven", 1, "m", false},
    {"turns", "turns", 1, "", false},
    {"trap_reports", "reports of a trap", 1, "", false},
    {"stall_s", "longest stall", 1, "s", false},
}};

inline std::optional<double> figureOf(const nlohmann::ordered_json& line, const BatchFigure& figure)
{
    const auto value = line.find(figure.key);
    if (value == line.end() || !value->is_number())
        return std::nullopt;
    return figure.scale * value->get<double>();
}

}  // namespace vemra::app
