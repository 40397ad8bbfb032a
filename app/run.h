#pragma once

namespace CLI {
class App;
}

namespace vemra::app {

/// `vemra run`: plays a scenario in a home. It runs while `program` parses, and throws UserError or
/// robot::InputError when it cannot.
void addRunCommand(CLI::App& program, int& exit_code);

}  // namespace vemra::app
