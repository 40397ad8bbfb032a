#include "app/completion/commands.h"

#include <CLI/CLI.hpp>
#include <iostream>

#include "app/completion/bash.h"
#include "app/completion/zsh.h"

namespace vemra::app {

void addCompletionCommand(CLI::App& program)
{
    CLI::App& completion = *program.add_subcommand("completion", "Completion of this command in a shell");
    completion.require_subcommand(1);
    CLI::App& bash = *completion.add_subcommand("bash", "Print the script for bash");
    bash.footer("To use it in this shell: source <(vemra completion bash)");
    bash.callback([&program] { writeBashCompletion(std::cout, program); });
    CLI::App& zsh = *completion.add_subcommand("zsh", "Print the script for zsh");
    zsh.footer("To use it in this shell: source <(vemra completion zsh)");
    zsh.callback([&program] { writeZshCompletion(std::cout, program); });
}

}  // namespace vemra::app
