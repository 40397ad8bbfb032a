#include "app/visits/commands.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <memory>
#include <nlohmann/json.hpp>

#include "app/trees/shared_options.h"
#include "app/trees/tree_library.h"
#include "app/visits/visit_report.h"

namespace vemra::app {
namespace {

struct VisitOptions
{
    std::string plugin;
    std::vector<std::string> files;
    std::vector<std::string> trees;
    bool summary = false;
    bool json = false;
};

void visits(const VisitOptions& options)
{
    const TreeLibrary library(options.plugin);
    VisitReport report;
    report.trees = buildAll(library);
    report.constant = [&library](const ModelNode& node) { return library.constantResult(node); };
    report.lives = livenessOf(report.trees, kFirstTree, report.constant);
    for (const std::string& file : options.files)
        report.visits.add(file, report.trees);
    for (const std::string& name : options.trees)
        library.expect(name);
    if (!options.trees.empty())
        std::erase_if(report.trees, [&options](const TreeModel& tree) {
            return std::find(options.trees.begin(), options.trees.end(), tree.name) == options.trees.end();
        });
    if (options.json) {
        std::cout << visitJson(report).dump(2) << '\n';
        return;
    }
    if (options.summary)
        writeVisitSummary(std::cout, report);
    else {
        writeVisitOutlines(std::cout, report);
        writeVisitGaps(std::cout, report);
    }
    writeVisitTotal(std::cout, report);
}

}  // namespace

void addVisitsCommand(CLI::App& trees)
{
    const auto options = std::make_shared<VisitOptions>();
    CLI::App& command = *trees.add_subcommand(
        "visits", "What runs visited of the trees, and which live nodes they never came to");
    command.add_option("file", options->files, "Files that run --visits has written")
        ->required()
        ->type_name("FILE");
    command.add_option("--tree", options->trees, "This tree alone; may be given more than once")
        ->type_name("TREE");
    auto* summary = command.add_flag("--summary", options->summary, "Each tree as a line");
    command.add_flag("--json", options->json, "As JSON")->excludes(summary);
    addPluginOption(command, options->plugin);
    command.footer(
        "Each place is TREE:LINE, where the line is that of `vemra trees show TREE`. The last line is\n"
        "`visited N of M live nodes`: of those trees that are written.");
    command.callback([options] { visits(*options); });
}

}  // namespace vemra::app
