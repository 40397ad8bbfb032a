#pragma once

namespace CLI {
class App;
}

namespace vemra::app {

/// `vemra trees`: what the library of trees holds. Whatever is asked for runs while `program` parses, and
/// throws UserError or robot::InputError when it cannot be done. `exit_code` becomes 1 when a comparison
/// finds differences.
void addTreesCommand(CLI::App& program, int& exit_code);

}  // namespace vemra::app
