#pragma once

namespace CLI {
class App;
}

namespace vemra::app {

/// `vemra completion`: scripts for shells, made from the commands and options that `program` has, so that it
/// is added last.
void addCompletionCommand(CLI::App& program);

}  // namespace vemra::app
