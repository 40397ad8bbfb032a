#pragma once

#include <memory>
#include <string>
#include <vector>

#include "app/trees/tree_library.h"

namespace CLI {
class App;
}

namespace vemra::app {

/// Options that several commands have. Their text is read when the command runs.
void addPluginOption(CLI::App& command, std::string& file);
void addColorOption(CLI::App& command, std::string& choice);

/// What "auto", "always" or "never" comes to on this standard output.
[[nodiscard]] bool colorWanted(const std::string& choice);

/// All trees of a library, built.
[[nodiscard]] std::vector<TreeModel> buildAll(const TreeLibrary& library);

}  // namespace vemra::app
