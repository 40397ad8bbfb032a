#pragma once

#include <iosfwd>

namespace CLI {
class App;
}

namespace vemra::app {

/// Writes the manual page of the program as man reads it, from the texts that --help prints.
void writeManual(std::ostream& out, const CLI::App& program);

/// `vemra manual`: prints it. It is added after all other commands.
void addManualCommand(CLI::App& program);

}  // namespace vemra::app
