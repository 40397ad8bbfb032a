#pragma once

#include <iosfwd>

namespace CLI {
class App;
}

namespace vemra::app {

/// Writes the same for zsh: a file _vemra of a folder in $fpath, or a script to be sourced.
void writeZshCompletion(std::ostream& out, const CLI::App& program);

}  // namespace vemra::app
