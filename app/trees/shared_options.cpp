#include "app/trees/shared_options.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <string_view>

namespace vemra::app {

void addPluginOption(CLI::App& command, std::string& file)
{
    file = ownTreeLibrary().string();
    command
        .add_option("--plugin", file,
                    "Library of trees to load, instead of the one that belongs to this program")
        ->type_name("FILE");
}

void addColorOption(CLI::App& command, std::string& choice)
{
    choice = "auto";
    command.add_option("--color", choice, "Colours; auto: on a terminal, unless NO_COLOR is set")
        ->check(CLI::IsMember({"auto", "always", "never"}))
        ->capture_default_str();
}

bool colorWanted(const std::string& choice)
{
    if (choice != "auto")
        return choice == "always";
    const char* const off = std::getenv("NO_COLOR");
    const char* const terminal = std::getenv("TERM");
    return ::isatty(STDOUT_FILENO) == 1 && (off == nullptr || *off == '\0') &&
           (terminal == nullptr || std::string_view(terminal) != "dumb");
}

std::vector<TreeModel> buildAll(const TreeLibrary& library)
{
    std::vector<TreeModel> trees;
    trees.reserve(library.names().size());
    for (const std::string& name : library.names())
        trees.push_back(library.build(name));
    return trees;
}

}  // namespace vemra::app
