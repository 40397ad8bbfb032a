#include "app/batch/batch_file.h"

#include <fstream>
#include <string>

#include "robot/base/input_error.h"

namespace vemra::app {
namespace {

bool isRun(const nlohmann::ordered_json& line)
{
    return line.is_object() && line.contains("seed") && line["seed"].is_number_unsigned() &&
           line.contains("good") && line["good"].is_boolean() && line.contains("time_s") &&
           line["time_s"].is_number() && line.contains("replay") && line["replay"].is_string();
}

}  // namespace

std::vector<nlohmann::ordered_json> readBatchFile(const std::filesystem::path& file)
{
    std::ifstream in(file);
    if (!in)
        throw robot::InputError(file.string(), 0, "cannot be read");
    std::vector<nlohmann::ordered_json> runs;
    int number = 0;
    for (std::string text; std::getline(in, text);) {
        ++number;
        nlohmann::ordered_json line = nlohmann::ordered_json::parse(text, nullptr, false);
        if (!isRun(line))
            throw robot::InputError(
                file.string(), number,
                "expected a run as vemra batch --out writes it: an object with seed, good, "
                "time_s and replay");
        runs.push_back(std::move(line));
    }
    if (runs.empty())
        throw robot::InputError(file.string(), 0, "holds no runs");
    return runs;
}

}  // namespace vemra::app
