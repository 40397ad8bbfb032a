#include "app/trees/commands.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/trees/export.h"
#include "app/trees/outline.h"
#include "app/trees/search_commands.h"
#include "app/trees/shared_options.h"
#include "app/trees/tree_library.h"
#include "app/user_error.h"
#include "app/whole_number.h"
#include "robot/base/output_file.h"

namespace vemra::app {

namespace {

// The tree that a robot starts with.
constexpr const char* kFirstTree = "RobotNode";

struct TreesOptions
{
    std::string plugin;
    bool names_only = false;
    bool json = false;
    std::string tree;
    std::vector<std::string> trees;
    std::size_t depth = std::numeric_limits<std::size_t>::max();
    bool expand = false;
    std::string color;
    std::string format = "json";
    std::string out;
};

void list(const TreesOptions& options)
{
    const TreeLibrary library(options.plugin);
    if (options.names_only) {
        for (const std::string& name : library.names())
            std::cout << name << '\n';
        return;
    }
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const std::string& name : library.names()) {
        const TreeModel tree = library.build(name);
        if (options.json)
            all.push_back({{"name", name},
                           {"nodes", tree.nodes.size()},
                           {"levels", tree.levels()},
                           {"written", tree.written()}});
        else if (tree.written())
            std::cout << fmt::format("{:<40} {:>5} {:<5}  {:>2} {}\n", name, tree.nodes.size(),
                                     tree.nodes.size() == 1 ? "node" : "nodes", tree.levels(),
                                     tree.levels() == 1 ? "level" : "levels");
        else
            std::cout << fmt::format("{:<40}     not written\n", name);
    }
    if (options.json)
        std::cout << all.dump(2) << '\n';
}

void show(const TreesOptions& options)
{
    const TreeLibrary library(options.plugin);
    const OutlineStyle style{colorWanted(options.color), options.depth, options.expand};
    writeOutline(
        std::cout, library.build(options.tree), style,
        [&library](const std::string& name) { return library.build(name); },
        [&library](const std::string& name) { return library.has(name); });
}

void exportTrees(const TreesOptions& options)
{
    const TreeLibrary library(options.plugin);
    std::vector<std::string> names;
    for (const std::string& name : options.trees.empty() ? library.names() : options.trees) {
        library.expect(name);
        if (std::find(names.begin(), names.end(), name) == names.end())
            names.push_back(name);
    }
    std::vector<TreeModel> trees;
    trees.reserve(names.size());
    for (const std::string& name : names)
        trees.push_back(library.build(name));

    std::ostringstream text;
    if (options.format == "json")
        exportJson(text, trees);
    else if (options.format == "dot")
        exportDot(text, trees);
    else {
        const bool whole = options.trees.empty() && library.has(kFirstTree);
        exportXml(text, trees, whole ? kFirstTree : names.empty() ? "" : names.front());
    }
    if (options.out.empty())
        std::cout << text.str();
    else
        robot::writeFile(options.out, text.str());
}

}  // namespace

void addTreesCommand(CLI::App& program, int& exit_code)
{
    const auto options = std::make_shared<TreesOptions>();
    CLI::App& trees =
        *program.add_subcommand("trees", "The behaviour trees: list, show, export, search, compare");
    trees.require_subcommand(1);

    CLI::App& list_command =
        *trees.add_subcommand("list", "All trees with their numbers of nodes and levels");
    auto* names = list_command.add_flag("--names", options->names_only, "Names alone, a line each");
    list_command.add_flag("--json", options->json, "As JSON")->excludes(names);
    addPluginOption(list_command, options->plugin);
    list_command.callback([options] { list(*options); });

    CLI::App& show_command =
        *trees.add_subcommand("show", "A tree as an outline, a node a line, with its ports");
    show_command.add_option("tree", options->tree, "Name of the tree")->required()->type_name("TREE");
    show_command.add_option("--depth", options->depth, "Show so many levels; 1 is the root alone")
        ->type_name("N")
        ->check(wholeNumber(1));
    show_command.add_flag(
        "--expand", options->expand,
        "Go on into the trees that are entered, into each at the first place that enters it");
    addColorOption(show_command, options->color);
    addPluginOption(show_command, options->plugin);
    show_command.callback([options] { show(*options); });

    CLI::App& export_command =
        *trees.add_subcommand("export", "Trees as JSON, as XML for tree editors, or as a graph");
    export_command.add_option("tree", options->trees, "Names of trees; none: all trees")->type_name("TREE");
    export_command
        .add_option("--format", options->format,
                    "json: nodes in creation order; xml: for tree editors, with all node types declared; "
                    "dot: a graph for Graphviz")
        ->check(CLI::IsMember({"json", "xml", "dot"}))
        ->capture_default_str();
    export_command.add_option("--out", options->out, "File to write, instead of standard output")
        ->type_name("FILE");
    addPluginOption(export_command, options->plugin);
    export_command.callback([options] { exportTrees(*options); });

    addSearchCommands(trees, exit_code);
}

}  // namespace vemra::app
