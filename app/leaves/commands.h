#pragma once

namespace CLI {
class App;
}

namespace vemra::app {

/// `vemra leaves`: what the trees ask of a host. Whatever is asked for runs while `program` parses, and
/// throws UserError when it cannot be done.
void addLeavesCommand(CLI::App& program);

}  // namespace vemra::app
