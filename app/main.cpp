#include <CLI/CLI.hpp>
#include <iostream>

#include "app/batch/batch.h"
#include "app/completion/commands.h"
#include "app/leaves/commands.h"
#include "app/manual.h"
#include "app/near_names.h"
#include "app/run.h"
#include "app/trees/commands.h"
#include "app/user_error.h"
#include "version/version.h"

namespace {

using namespace vemra::app;

/// The innermost command that was named.
const CLI::App& named(const CLI::App& program)
{
    const CLI::App* at = &program;
    for (auto below = at->get_subcommands(); !below.empty(); below = at->get_subcommands())
        at = below.front();
    return *at;
}

std::string pathOf(const CLI::App& command)
{
    const CLI::App* above = command.get_parent();
    return above == nullptr ? command.get_name() : pathOf(*above) + " " + command.get_name();
}

/// Names that could stand where something unknown was found.
std::vector<std::string> expectedAt(const CLI::App& command)
{
    std::vector<std::string> names;
    for (const CLI::App* below : command.get_subcommands([](const CLI::App*) { return true; }))
        names.push_back(below->get_name());
    for (const CLI::Option* option : command.get_options())
        for (const std::string& name : option->get_lnames())
            names.push_back("--" + name);
    return names;
}

int refuse(const CLI::App& program, const CLI::ParseError& fault)
{
    const CLI::App& command = named(program);
    const std::vector<std::string> unknown = program.remaining(true);
    std::cerr << "vemra: ";
    if (unknown.empty())
        std::cerr << fault.what();
    else {
        const std::string given = unknown.front().substr(0, unknown.front().find('='));
        std::cerr << (given.starts_with('-') ? "there is no option '" : "not expected here: '") << given
                  << "'" << didYouMean(given, expectedAt(command));
    }
    std::cerr << "\nSee " << pathOf(command) << " --help\n";
    return kBadInput;
}

}  // namespace

int main(int argc, char** argv)
{
    std::ios::sync_with_stdio(false);
    CLI::App program("Behaviour trees of a robot floor cleaner", "vemra");
    program.set_version_flag("--version", vemra::version(), "Print the version and exit");
    program.set_help_flag("-h,--help", "Print this help and exit");
    program.require_subcommand(1);
    int exit_code = kDone;
    addRunCommand(program, exit_code);
    addBatchCommand(program, exit_code);
    addTreesCommand(program, exit_code);
    addLeavesCommand(program);
    addManualCommand(program);
    addCompletionCommand(program);
    // Set last: commands take over the footer that is there when they are added.
    program.footer(
        "Examples:\n"
        "  vemra trees show Escape --expand | less -R\n"
        "  vemra trees export RobotNode --format xml --out robot.xml\n"
        "  vemra leaves show Rotate\n"
        "Exit codes: 0 done; 1 trees diff has found differences, or a run was not as its scenario expects; 2 "
        "what was "
        "given cannot be used.");

    try {
        program.parse(argc, argv);
    } catch (const CLI::Success& wish) {
        program.exit(wish);
    } catch (const CLI::ParseError& fault) {
        return refuse(program, fault);
    } catch (const std::exception& fault) {
        std::cout.flush();
        std::cerr << "vemra: " << fault.what() << '\n';
        return kBadInput;
    }
    if (!std::cout.flush()) {
        std::cerr << "vemra: standard output: cannot be written\n";
        return kBadInput;
    }
    return exit_code;
}
