#include "app/trees/commands.h"

#include <fmt/format.h>
#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/trees/export.h"
#include "app/trees/liveness.h"
#include "app/trees/outline.h"
#include "app/trees/page/page.h"
#include "app/trees/search_commands.h"
#include "app/trees/shared_options.h"
#include "app/trees/tree_library.h"
#include "app/user_error.h"
#include "app/visits/commands.h"
#include "app/walks/commands.h"
#include "app/whole_number.h"
#include "robot/base/output_file.h"

namespace vemra::app {

namespace {

struct TreesOptions
{
    std::string plugin;
    bool names_only = false;
    bool json = false;
    bool off = false;
    std::string tree;
    std::vector<std::string> trees;
    std::size_t depth = std::numeric_limits<std::size_t>::max();
    bool expand = false;
    std::string html;
    std::vector<std::string> visits;
    std::string color;
    std::string format = "json";
    std::string out;
};

using Lives = std::map<std::string, TreeLife>;

std::vector<TreeModel> buildable(const TreeLibrary& library)
{
    std::vector<TreeModel> trees;
    for (const std::string& name : library.names()) {
        try {
            trees.push_back(library.build(name));
        } catch (const UserError&) {
            continue;
        }
    }
    return trees;
}

Lives livesOf(const TreeLibrary& library, const std::vector<TreeModel>& trees)
{
    return livenessOf(trees, kFirstTree,
                      [&library](const ModelNode& node) { return library.constantResult(node); });
}

/// What of a tree is never ticked, the topmost node of each branch, and the constant that does it.
void writeOff(std::ostream& out, const TreeModel& tree, const TreeLife& life)
{
    if (!life.entered) {
        out << fmt::format("{}: off: no live node enters it\n", tree.name);
        return;
    }
    for (std::size_t i = 0; i < tree.nodes.size(); ++i) {
        if (life.off_by[i] == TreeLife::kNone)
            continue;
        const auto by = static_cast<std::size_t>(life.off_by[i]);
        out << fmt::format("{}:{}: {}  off by line {}: {}\n", tree.name, i + 1, nodeText(tree.nodes[i]),
                           by + 1, nodeText(tree.nodes[by]));
    }
}

void list(const TreesOptions& options)
{
    const TreeLibrary library(options.plugin);
    if (options.names_only) {
        for (const std::string& name : library.names())
            std::cout << name << '\n';
        return;
    }
    const std::vector<TreeModel> trees = buildAll(library);
    const auto lives = livesOf(library, trees);
    if (options.off) {
        for (const TreeModel& tree : trees)
            writeOff(std::cout, tree, lives.at(tree.name));
        return;
    }
    nlohmann::ordered_json all = nlohmann::ordered_json::array();
    for (const TreeModel& tree : trees) {
        const std::size_t live = lives.at(tree.name).liveNodes();
        if (options.json)
            all.push_back({{"name", tree.name},
                           {"nodes", tree.nodes.size()},
                           {"live", live},
                           {"levels", tree.levels()},
                           {"written", tree.written()}});
        else if (tree.written())
            std::cout << fmt::format("{:<40} {:>5} {:<5} {:>5} live  {:>2} {}\n", tree.name,
                                     tree.nodes.size(), tree.nodes.size() == 1 ? "node" : "nodes", live,
                                     tree.levels(), tree.levels() == 1 ? "level" : "levels");
        else
            std::cout << fmt::format("{:<40}     not written\n", tree.name);
    }
    if (options.json)
        std::cout << all.dump(2) << '\n';
}

void showPage(const TreesOptions& options)
{
    const TreeLibrary library(options.plugin);
    if (!options.tree.empty())
        library.expect(options.tree);
    const std::vector<TreeModel> trees = buildAll(library);
    const Lives lives = livesOf(library, trees);
    VisitTable visits;
    for (const std::string& file : options.visits)
        visits.add(file, trees);
    std::ostringstream page;
    writePage(page, {trees, lives, options.visits.empty() ? nullptr : &visits,
                     options.tree.empty() ? kFirstTree : options.tree});
    robot::writeFile(options.html, page.str());
}

void show(const TreesOptions& options)
{
    if (!options.html.empty()) {
        showPage(options);
        return;
    }
    if (options.tree.empty())
        throw UserError("expected a TREE, or --html FILE for all trees");
    const TreeLibrary library(options.plugin);
    const TreeModel tree = library.build(options.tree);
    const bool color = colorWanted(options.color);
    // A tree of the library that cannot be built is no reason not to show another.
    const auto lives = color || options.off ? livesOf(library, buildable(library)) : Lives();
    if (options.off) {
        writeOff(std::cout, tree, lives.at(tree.name));
        return;
    }
    const OutlineStyle style{color, options.depth, options.expand,
                             [&lives](const std::string& name, std::size_t index) {
                                 const auto life = lives.find(name);
                                 return life == lives.end() || life->second.live.at(index);
                             }};
    writeOutline(
        std::cout, tree, style, [&library](const std::string& name) { return library.build(name); },
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
        *trees.add_subcommand("list", "All trees with their numbers of nodes, live nodes and levels");
    auto* names = list_command.add_flag("--names", options->names_only, "Names alone, a line each");
    auto* as_json = list_command.add_flag("--json", options->json, "As JSON")->excludes(names);
    list_command
        .add_flag("--off", options->off,
                  "What can never be ticked, and the constant that does it, instead of trees")
        ->excludes(names)
        ->excludes(as_json);
    list_command.footer(
        "Live is what can ever be ticked from RobotNode on. Off is what constant conditions switch off, what "
        "stands\n"
        "behind a loop without an end, and what no live node enters.");
    addPluginOption(list_command, options->plugin);
    list_command.callback([options] { list(*options); });

    CLI::App& show_command = *trees.add_subcommand(
        "show", "A tree as an outline, a node a line, with its ports, or all trees as a page");
    show_command
        .add_option("tree", options->tree, "Name of the tree; with --html the one that is opened first")
        ->type_name("TREE");
    auto* depth =
        show_command.add_option("--depth", options->depth, "Show so many levels; 1 is the root alone")
            ->type_name("N")
            ->check(wholeNumber(1));
    auto* expand = show_command.add_flag(
        "--expand", options->expand,
        "Go on into the trees that are entered, into each at the first place that enters it");
    auto* off = show_command.add_flag(
        "--off", options->off,
        "What of the tree can never be ticked, and the constant that does it; in colours it is dimmed "
        "without this");
    auto* html =
        show_command
            .add_option("--html", options->html,
                        "Write all trees as one page for a browser: it folds, finds, links trees with who "
                        "enters them and keys with who uses them")
            ->type_name("FILE")
            ->excludes(depth)
            ->excludes(expand)
            ->excludes(off);
    show_command
        .add_option("--visits", options->visits,
                    "Shade the page by these files that run --visits has written")
        ->type_name("FILE")
        ->needs(html);
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
    addVisitsCommand(trees);
    addWalkCommands(trees, exit_code);
}

}  // namespace vemra::app
