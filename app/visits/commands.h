#pragma once

namespace CLI {
class App;
}

namespace vemra::app {

/// `vemra trees visits`: what many runs visited of the trees.
void addVisitsCommand(CLI::App& trees);

}  // namespace vemra::app
