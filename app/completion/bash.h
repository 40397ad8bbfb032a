#pragma once

#include <iosfwd>

namespace CLI {
class App;
}

namespace vemra::app {

/// Writes a bash script that completes commands, options and their values. What a value is follows from its
/// type name: {a,b} the words themselves, TREE, LEAF, NODE and KEY names that the program lists, FAMILY a
/// family of leaves, FILE and DIR what is on the disk.
void writeBashCompletion(std::ostream& out, const CLI::App& program);

}  // namespace vemra::app
