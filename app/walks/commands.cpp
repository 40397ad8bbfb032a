#include "app/walks/commands.h"

#include <fmt/format.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/trees/shared_options.h"
#include "app/trees/tree_library.h"
#include "app/user_error.h"
#include "app/visits/visit_file.h"
#include "app/walks/key_pool.h"
#include "app/walks/telling_walks.h"
#include "app/walks/walk.h"
#include "app/walks/walk_compare.h"
#include "app/walks/walk_record.h"
#include "app/whole_number.h"
#include "robot/base/output_file.h"
#include "robot/host/visit_counter.h"

namespace vemra::app {
namespace {

constexpr std::uint64_t kToRecord = 6000;
constexpr std::uint64_t kToCompare = 100;

struct WalkOptions
{
    std::string plugin;
    std::string tree;
    std::vector<std::string> trees;
    std::uint64_t number = 0;
    std::uint64_t count = 0;  ///< 0: as many as usual
    bool deeds = false;
    std::string record;
    std::string check;
    std::string against;
    std::string visits;
    std::string color;
};

/// Tells on a terminal which tree is walked.
class TreeProgress
{
public:
    explicit TreeProgress(std::size_t trees) : trees_(trees) {}
    ~TreeProgress() { wipe(); }
    TreeProgress(const TreeProgress&) = delete;
    TreeProgress& operator=(const TreeProgress&) = delete;

    void next(const std::string& tree)
    {
        ++at_;
        if (::isatty(STDERR_FILENO) == 1)
            std::cerr << "\r\033[K" << at_ << " of " << trees_ << " trees: " << tree << std::flush;
    }
    static void wipe()
    {
        if (::isatty(STDERR_FILENO) == 1)
            std::cerr << "\r\033[K" << std::flush;
    }

private:
    std::size_t trees_;
    std::size_t at_ = 0;
};

/// Those of a library's trees that were asked for; all that are written where none was. Throws UserError for
/// a name that is none.
std::vector<TreeModel> chosen(const TreeLibrary& library, std::vector<TreeModel> trees,
                              const std::vector<std::string>& names)
{
    for (const std::string& name : names)
        library.expect(name);
    std::erase_if(trees, [&names](const TreeModel& tree) {
        return names.empty() ? !tree.written()
                             : std::find(names.begin(), names.end(), tree.name) == names.end();
    });
    return trees;
}

void walk(const WalkOptions& options)
{
    const TreeLibrary library(options.plugin);
    const TreeModel tree = library.build(options.tree);
    const KeyPool pool(buildAll(library));
    Walker walker(options.plugin, pool);
    for (const WalkEvent& event : walker.walk(tree, options.number))
        if (!options.deeds || isDeed(event.kind))
            std::cout << lineOf(event) << '\n';
}

int record(const WalkOptions& options)
{
    const TreeLibrary library(options.plugin);
    std::vector<TreeModel> all = buildAll(library);
    const KeyPool pool(all);
    Walker walker(options.plugin, pool);
    const std::vector<TreeModel> trees = chosen(library, std::move(all), options.trees);
    TreeProgress progress(trees.size());
    // Where trees are named, what the file says of others stays.
    WalkRecord record;
    if (!options.trees.empty() && std::filesystem::exists(options.record))
        record = readWalkRecord(options.record);
    for (const TreeModel& tree : trees) {
        progress.next(tree.name);
        record[tree.name] = tellingWalks(walker, tree, options.count > 0 ? options.count : kToRecord);
    }
    robot::writeFile(options.record, textOf(record));
    return kDone;
}

int check(const WalkOptions& options)
{
    const WalkRecord before = readWalkRecord(options.check);
    const TreeLibrary library(options.plugin);
    std::vector<TreeModel> all = buildAll(library);
    const KeyPool pool(all);
    Walker walker(options.plugin, pool);
    const std::vector<TreeModel> trees = chosen(library, std::move(all), options.trees);
    TreeProgress progress(trees.size());
    robot::VisitCounter visits;
    std::size_t others = 0;
    const auto tell = [&others](const std::string& line) {
        TreeProgress::wipe();
        std::cout << line << '\n';
        ++others;
    };
    for (const TreeModel& tree : trees) {
        progress.next(tree.name);
        const auto found = before.find(tree.name);
        if (found == before.end()) {
            tell(fmt::format("{}: not in {}", tree.name, options.check));
            continue;
        }
        std::vector<std::uint64_t> differ;
        for (const RecordedWalk& walk : found->second)
            if (digestOf(walker.walk(tree, walk.number, options.visits.empty() ? nullptr : &visits)) !=
                walk.digest)
                differ.push_back(walk.number);
        if (!differ.empty())
            tell(fmt::format("{0}: {1} of {2} walks come out otherwise, as vemra trees walk {0} --number {3}",
                             tree.name, differ.size(), found->second.size(), differ.front()));
    }
    for (const auto& [name, walks] : before)
        if (options.trees.empty() && !library.has(name))
            tell(fmt::format("{}: in {} and no tree any more", name, options.check));
    TreeProgress::wipe();
    if (!options.visits.empty())
        robot::writeFile(options.visits, visitFileText(visits, "walks", 0));
    std::cout << fmt::format("{} of {} trees do something else than when {} was written\n", others,
                             trees.size(), options.check);
    return others == 0 ? kDone : kNotAsExpected;
}

int against(const WalkOptions& options)
{
    const TreeLibrary library(options.plugin);
    const TreeLibrary old_library(options.against);
    const std::vector<TreeModel> old_trees = buildAll(old_library);
    std::vector<TreeModel> all = buildAll(library);
    const std::vector<TreeModel> trees = chosen(library, all, options.trees);
    all.insert(all.end(), old_trees.begin(), old_trees.end());
    const KeyPool pool(all);
    Walker walker(options.plugin, pool);
    Walker old_walker(options.against, pool);
    TreeProgress progress(trees.size());
    const std::uint64_t count = options.count > 0 ? options.count : kToCompare;
    std::size_t others = 0;
    for (const TreeModel& tree : trees) {
        progress.next(tree.name);
        const auto old_tree = std::find_if(old_trees.begin(), old_trees.end(),
                                           [&tree](const TreeModel& old) { return old.name == tree.name; });
        if (old_tree == old_trees.end()) {
            TreeProgress::wipe();
            std::cout << tree.name << ": not in " << options.against << '\n';
            ++others;
            continue;
        }
        // Both are given the keys of both.
        const std::vector<TreeModel> both{tree, *old_tree};
        for (std::uint64_t number = 0; number < count; ++number) {
            const auto before = old_walker.walk(*old_tree, number, nullptr, both);
            const auto after = walker.walk(tree, number, nullptr, both);
            if (digestOf(before) == digestOf(after))
                continue;
            TreeProgress::wipe();
            std::cout << tree.name << ", walk " << number << ":\n";
            writeFirstDifference(std::cout, before, after, colorWanted(options.color));
            ++others;
            break;
        }
    }
    TreeProgress::wipe();
    std::cout << fmt::format("{} of {} trees do something else in {} walks\n", others, trees.size(), count);
    return others == 0 ? kDone : kNotAsExpected;
}

int walks(const WalkOptions& options)
{
    if (!options.record.empty())
        return record(options);
    if (!options.check.empty())
        return check(options);
    if (!options.against.empty())
        return against(options);
    throw UserError("vemra trees walks: expected --record, --check or --against");
}

}  // namespace

void addWalkCommands(CLI::App& trees, int& exit_code)
{
    const auto options = std::make_shared<WalkOptions>();
    const std::string by_chance =
        "In a walk a tree is ticked alone: what its leaves answer, whether the trees that it enters succeed, "
        "and what\n"
        "others write under its keys comes by chance, drawn for the number of the walk. It ends after 400 "
        "frames, each\n"
        "eighth after 3000.";

    CLI::App& walk_command =
        *trees.add_subcommand("walk", "What a tree does when all around it comes by chance");
    walk_command.add_option("tree", options->tree, "Name of the tree")->required()->type_name("TREE");
    walk_command.add_option("--number", options->number, "Number of the walk")
        ->type_name("N")
        ->check(wholeNumber(0))
        ->capture_default_str();
    walk_command.add_flag("--deeds", options->deeds,
                          "What the tree does alone, without what comes by chance");
    addPluginOption(walk_command, options->plugin);
    walk_command.footer(by_chance);
    walk_command.callback([options] { walk(*options); });

    CLI::App& walks_command =
        *trees.add_subcommand("walks", "Whether trees still do what they did, in many walks by chance");
    walks_command.add_option("tree", options->trees, "Names of trees; none: all trees")->type_name("TREE");
    walks_command
        .add_option(
            "--count", options->count,
            fmt::format(
                "Walks of each tree to look at: {} with --against, {} at most with --record, which ends "
                "where nothing new comes of them",
                kToCompare, kToRecord))
        ->type_name("N")
        ->check(wholeNumber(1, 100000));
    auto* record =
        walks_command
            .add_option(
                "--record", options->record,
                "Write what they do to this file, in those walks that come to what hardly one before came to")
            ->type_name("FILE");
    auto* check_option = walks_command
                             .add_option("--check", options->check,
                                         "Tell which trees do something else than when this file was written")
                             ->type_name("FILE")
                             ->excludes(record);
    walks_command
        .add_option("--against", options->against,
                    "Tell, tree by tree, where the walks part from those of this other library of trees")
        ->type_name("LIBRARY")
        ->excludes(record)
        ->excludes(check_option);
    walks_command
        .add_option("--visits", options->visits,
                    "Write to this file, for `vemra trees visits`, which nodes the walks of --check come to")
        ->type_name("FILE")
        ->needs(check_option);
    addColorOption(walks_command, options->color);
    addPluginOption(walks_command, options->plugin);
    walks_command.footer(
        by_chance +
        "\nExit codes: 0 no tree does something else, 1 some do, 2 what was given cannot be used.");
    walks_command.callback([options, &exit_code] { exit_code = walks(*options); });
}

}  // namespace vemra::app
