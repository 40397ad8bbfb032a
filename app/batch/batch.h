#pragma once

namespace CLI {
class App;
}

namespace vemra::app {

/// `vemra batch`: many runs from seeds, and what came of them. As addRunCommand().
void addBatchCommand(CLI::App& program, int& exit_code);

}  // namespace vemra::app
