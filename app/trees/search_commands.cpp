#include "app/trees/search_commands.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>

#include "app/near_names.h"
#include "app/trees/compare.h"
#include "app/trees/import_json.h"
#include "app/trees/keys.h"
#include "app/trees/outline.h"
#include "app/trees/shared_options.h"
#include "app/user_error.h"
#include "leaves/contract.h"

namespace vemra::app {

namespace {

constexpr int kDiffers = 1;

struct SearchOptions
{
    std::string plugin;
    std::string name;
    std::vector<std::string> ports;
    std::string old;
    std::string color;
    bool names_only = false;
    bool json = false;
};

/// A place as "Tree:line: ", where the line is that of the tree's outline.
std::string place(const TreeModel& tree, std::size_t node)
{
    return fmt::format("{}:{}: ", tree.name, node + 1);
}

void where(const SearchOptions& options)
{
    std::vector<std::pair<std::string, std::string>> wanted;
    for (const std::string& port : options.ports) {
        const std::size_t sign = port.find('=');
        if (sign == std::string::npos || sign == 0)
            throw UserError("--port " + port + ": expected PORT=VALUE");
        wanted.emplace_back(port.substr(0, sign), port.substr(sign + 1));
    }
    const TreeLibrary library(options.plugin);
    std::set<std::string> known;
    for (const leaf::LeafContract& leaf : leaf::all())
        known.emplace(leaf.id);
    for (const BT::TreeNodeManifest& type : library.nodeTypes())
        known.insert(type.registration_ID);
    if (!known.contains(options.name))
        throw UserError("there is no node type '" + options.name + "'" +
                        didYouMean(options.name, std::vector<std::string>(known.begin(), known.end())));
    for (const TreeModel& tree : buildAll(library))
        for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
            const ModelNode& node = tree.nodes[i];
            const bool fits =
                node.id == options.name && std::all_of(wanted.begin(), wanted.end(), [&](const auto& port) {
                    const std::string* text = node.port(port.first);
                    return text != nullptr && *text == port.second;
                });
            if (fits)
                std::cout << place(tree, i) << nodeText(node) << '\n';
        }
}

void callers(const SearchOptions& options)
{
    const TreeLibrary library(options.plugin);
    library.expect(options.name);
    for (const TreeModel& tree : buildAll(library))
        for (std::size_t i = 0; i < tree.nodes.size(); ++i)
            if (enteredTree(tree.nodes[i]) == options.name)
                std::cout << place(tree, i) << nodeText(tree.nodes[i]) << '\n';
}

std::array<std::size_t, 4> counts(const std::vector<KeyPlace>& places)
{
    std::array<std::size_t, 4> counts{};
    for (const KeyPlace& place : places)
        ++counts[static_cast<std::size_t>(place.use)];
    return counts;
}

void allKeys(const SearchOptions& options, const std::map<std::string, std::vector<KeyPlace>>& keys)
{
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    if (!options.json && !options.names_only)
        std::cout << fmt::format("{:<44} {:>7} {:>7} {:>7} {:>7}\n", "key", "writes", "erases", "tests",
                                 "reads");
    for (const auto& [key, places] : keys) {
        const auto [writes, erases, tests, reads] = counts(places);
        if (options.names_only)
            std::cout << key << '\n';
        else if (options.json)
            all.push_back(
                {{"key", key}, {"writes", writes}, {"erases", erases}, {"tests", tests}, {"reads", reads}});
        else
            std::cout << fmt::format("{:<44} {:>7} {:>7} {:>7} {:>7}\n", key, writes, erases, tests, reads);
    }
    if (options.json)
        std::cout << all.dump(2) << '\n';
}

void oneKey(const SearchOptions& options, const std::map<std::string, std::vector<KeyPlace>>& keys)
{
    const auto found = keys.find(options.name);
    if (found == keys.end()) {
        std::vector<std::string> known;
        known.reserve(keys.size());
        for (const auto& [key, places] : keys)
            known.push_back(key);
        throw UserError("no tree uses a key '" + options.name + "'" + didYouMean(options.name, known));
    }
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const auto& [tree, node, use] : found->second)
        if (options.json)
            all.push_back(
                {{"tree", tree->name}, {"node", node}, {"use", toText(use)}, {"id", tree->nodes[node].id}});
        else
            std::cout << place(*tree, node) << toText(use) << "  " << nodeText(tree->nodes[node]) << '\n';
    if (options.json)
        std::cout << all.dump(2) << '\n';
}

void keys(const SearchOptions& options)
{
    const TreeLibrary library(options.plugin);
    const std::vector<TreeModel> trees = buildAll(library);
    const auto used = keysOf(trees);
    if (options.name.empty())
        allKeys(options, used);
    else
        oneKey(options, used);
}

int diff(const SearchOptions& options)
{
    const std::vector<TreeModel> before = importJson(options.old);
    const TreeLibrary library(options.plugin);
    const std::vector<TreeModel> after = buildAll(library);
    return writeDifferences(std::cout, before, after, colorWanted(options.color)) ? kDiffers : kDone;
}

}  // namespace

void addSearchCommands(CLI::App& trees, int& exit_code)
{
    const auto options = std::make_shared<SearchOptions>();
    const std::string places =
        "\nEach place is TREE:LINE, where the line is that of `vemra trees show TREE`.";

    CLI::App& where_command =
        *trees.add_subcommand("where", "Where nodes of one type stand, with their ports");
    where_command.add_option("node", options->name, "Node type: a leaf, a control node or a decorator")
        ->required()
        ->type_name("NODE");
    where_command
        .add_option("--port", options->ports, "Only nodes with this text in this port; may be repeated")
        ->type_name("PORT=VALUE")
        ->allow_extra_args(false);
    addPluginOption(where_command, options->plugin);
    where_command.footer(places);
    where_command.callback([options] { where(*options); });

    CLI::App& callers_command = *trees.add_subcommand("callers", "Where a tree is entered");
    callers_command.add_option("tree", options->name, "Name of the tree")->required()->type_name("TREE");
    addPluginOption(callers_command, options->plugin);
    callers_command.footer(places);
    callers_command.callback([options] { callers(*options); });

    CLI::App& keys_command =
        *trees.add_subcommand("keys", "Who writes, erases, tests and reads a key of the blackboard");
    keys_command
        .add_option("key", options->name, "The key; without it, all keys with the numbers of their uses")
        ->type_name("KEY");
    auto* names =
        keys_command.add_flag("--names", options->names_only, "Names of all keys alone, a line each");
    keys_command.add_flag("--json", options->json, "As JSON")->excludes(names);
    addPluginOption(keys_command, options->plugin);
    keys_command.footer(places + "\nKeys that no tree writes come from the leaves.");
    keys_command.callback([options] { keys(*options); });

    CLI::App& diff_command = *trees.add_subcommand("diff", "What changed since an export was made");
    diff_command.add_option("old", options->old, "File that `vemra trees export --format json` wrote")
        ->required()
        ->type_name("FILE");
    addColorOption(diff_command, options->color);
    addPluginOption(diff_command, options->plugin);
    diff_command.footer("Exit codes: 0 no tree differs, 1 some do, 2 what was given cannot be used.");
    diff_command.callback([options, &exit_code] { exit_code = diff(*options); });
}

}  // namespace vemra::app
