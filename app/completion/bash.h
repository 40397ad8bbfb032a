#pragma once

#include <iosfwd>

namespace CLI {
class App;
}

namespace vemra::app {

/// Writes a bash script that completes commands, options and their values.
void writeBashCompletion(std::ostream& out, const CLI::App& program);

}  // namespace vemra::app
