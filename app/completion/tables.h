#pragma once

#include <iosfwd>

namespace CLI {
class App;
}

namespace vemra::app {

/// Writes what bash and zsh both understand: functions that answer, for a path of commands ("/trees/show"),
/// the commands and options there, what completes the value of an option and what stands without one. What a
/// value is follows from its type name: {a,b} the words themselves, TREE, LEAF, NODE and KEY names that the
/// program lists, FAMILY a family of leaves, FILE and DIR what is on the disk.
void writeCompletionTables(std::ostream& out, const CLI::App& program);

}  // namespace vemra::app
