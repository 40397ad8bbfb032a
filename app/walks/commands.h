#pragma once

namespace CLI {
class App;
}

namespace vemra::app {

/// The commands below `vemra trees` that play trees by chance: `walk`, `walks`.
void addWalkCommands(CLI::App& trees, int& exit_code);

}  // namespace vemra::app
