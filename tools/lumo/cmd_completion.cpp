// lumo completion: lets a shell complete the program's command line.

#include <iostream>

#include "commands.h"
#include "completion.h"

namespace tool {

void AddCompletion(CLI::App& program, int& exit) {
  auto* command =
      program.add_subcommand("completion", "Prints what a shell needs to complete lumo's command line");
  const auto shell = std::make_shared<std::string>();
  AddChoice(*command, "SHELL", *shell, {"bash", "zsh", "fish"}, "The shell")->required();
  command->footer(
      "The packages install it. By hand: in bash, read it from ~/.bashrc as in the example; in zsh, write it "
      "to a "
      "file _lumo in a folder of $fpath; in fish, to ~/.config/fish/completions/lumo.fish.\n"
      "Example: source <(lumo completion bash)\n"
      "Example: lumo completion fish >~/.config/fish/completions/lumo.fish");
  command->callback([shell, &program, &exit] {
    const CliCommand model = Describe(program);
    std::cout << (*shell == "bash"  ? BashCompletion(model)
                  : *shell == "zsh" ? ZshCompletion(model)
                                    : FishCompletion(model));
    exit = kDone;
  });
}

}  // namespace tool
