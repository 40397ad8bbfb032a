#pragma once

namespace CLI {
class App;
}

namespace vemra::app {

/// `vemra trees`: what the library of trees holds. Whatever is asked for runs while `program` parses, and
/// throws UserError or robot::InputError when it cannot be done.
void addTreesCommand(CLI::App& program);

}  // namespace vemra::app
