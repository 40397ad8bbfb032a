#include "app/visits/visit_file.h"

#include <fmt/format.h>

#include <fstream>
#include <nlohmann/json.hpp>

#include "app/user_error.h"

namespace vemra::app {
namespace {

constexpr std::size_t kFields = 7;

using nlohmann::json;

json parsed(const std::filesystem::path& file)
{
    std::ifstream in(file);
    if (!in || std::filesystem::is_directory(file))
        throw UserError(file.string() + ": cannot be read; expected a file that run --visits has written");
    try {
        json read = json::parse(in);
        if (read.is_object() && read.contains("trees") && read["trees"].is_object())
            return read;
    } catch (const json::exception& fault) {
        throw UserError(file.string() + ": " + fault.what());
    }
    throw UserError(file.string() + ": expected an object with \"trees\", as run --visits writes it");
}

void addRow(std::vector<robot::Visits>& into, const TreeModel& tree, const json& row,
            const std::string& where)
{
    bool good = row.is_array() && row.size() == kFields && row[0].is_number_unsigned() && row[1].is_string();
    for (std::size_t i = 2; good && i < kFields; ++i)
        good = row[i].is_number_unsigned();
    if (!good)
        throw UserError(where + ": expected rows of index, type, ticks, success, failure, running, halts");
    const auto index = row[0].get<std::size_t>();
    if (index >= tree.nodes.size() || tree.nodes[index].id != row[1])
        throw UserError(fmt::format("{}: node {} was {} there: expected visits of the trees as they are",
                                    where, index, row[1].get<std::string>()));
    into[index] += {row[2], row[3], row[4], row[5], row[6]};
}

}  // namespace

void VisitTable::add(const std::filesystem::path& file, const std::vector<TreeModel>& trees)
{
    for (const TreeModel& tree : trees)
        trees_[tree.name].resize(tree.nodes.size());
    const json read = parsed(file);
    for (const auto& [name, rows] : read["trees"].items()) {
        const std::string where = fmt::format("{}: tree \"{}\"", file.string(), name);
        const auto tree = std::find_if(trees.begin(), trees.end(),
                                       [&name = name](const TreeModel& model) { return model.name == name; });
        if (tree == trees.end())
            throw UserError(where + ": there is no such tree");
        if (!rows.is_array())
            throw UserError(where + ": expected a list of rows");
        for (const json& row : rows)
            addRow(trees_[name], *tree, row, where);
    }
}

}  // namespace vemra::app
