#pragma once

namespace CLI {
class App;
}

namespace vemra::app {

/// The commands below `vemra trees` that look through all trees: `where`, `callers`, `keys`, `diff`.
void addSearchCommands(CLI::App& trees, int& exit_code);

}  // namespace vemra::app
