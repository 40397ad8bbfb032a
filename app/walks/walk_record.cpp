#include "app/walks/walk_record.h"

#include <fmt/format.h>

#include <charconv>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/user_error.h"

namespace vemra::app {
namespace {

constexpr std::size_t kDigits = 8;

std::vector<RecordedWalk> walksOf(const std::string& text, const std::string& where)
{
    std::vector<RecordedWalk> walks;
    std::istringstream words(text);
    for (std::string word; words >> word;) {
        RecordedWalk walk{};
        const char* const end = word.data() + word.size();
        const char* const colon = std::from_chars(word.data(), end, walk.number).ptr;
        if (end - colon != kDigits + 1 || *colon != ':' ||
            std::from_chars(colon + 1, end, walk.digest, 16).ptr != end)
            throw UserError(fmt::format("{}: '{}', expected NUMBER:8 hexadecimal digits", where, word));
        walks.push_back(walk);
    }
    if (walks.empty())
        throw UserError(where + ": expected a walk at least");
    return walks;
}

}  // namespace

std::string textOf(const WalkRecord& record)
{
    nlohmann::ordered_json trees = nlohmann::ordered_json::object();
    for (const auto& [name, walks] : record) {
        std::string words;
        for (const RecordedWalk& walk : walks)
            words += fmt::format("{}{}:{:08x}", words.empty() ? "" : " ", walk.number, walk.digest);
        trees[name] = words;
    }
    return nlohmann::ordered_json{{"trees", std::move(trees)}}.dump(1) + '\n';
}

WalkRecord readWalkRecord(const std::filesystem::path& file)
{
    std::ifstream in(file);
    if (!in || std::filesystem::is_directory(file))
        throw UserError(file.string() +
                        ": cannot be read; expected what `vemra trees walks --record` has written");
    WalkRecord record;
    try {
        const nlohmann::json read = nlohmann::json::parse(in);
        for (const auto& [name, words] : read.at("trees").get<std::map<std::string, std::string>>())
            record[name] = walksOf(words, file.string() + ": tree " + name);
    } catch (const nlohmann::json::exception& fault) {
        throw UserError(file.string() + ": " + fault.what() +
                        "; expected what `vemra trees walks --record` has written");
    }
    return record;
}

}  // namespace vemra::app
