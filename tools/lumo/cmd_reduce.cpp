// lumo reduce: shrinks a drawing while a command keeps failing on it.

#include <signal.h>
#include <stdlib.h>
#include <filesystem>
#include <iostream>

#include "drawing_io.h"
#include "figures.h"
#include "files.h"
#include "input_error.h"
#include "reduction.h"
#include "shell_command.h"
#include "svg_read.h"
#include "svg_write.h"

namespace tool {

namespace {

struct Options : DrawingOptions {
  std::string command;
  bool anyFailure = false;
  std::size_t tries = 5000;
  double seconds = 10;
};

volatile sig_atomic_t interrupted = 0;

/// Until it goes, Ctrl-C ends the work, not the program: what has been reached is kept.
class Interruptible {
 public:
  Interruptible() {
    struct sigaction action = {};
    action.sa_handler = [](int) { interrupted = 1; };
    sigaction(SIGINT, &action, &before_);
  }
  ~Interruptible() { sigaction(SIGINT, &before_, nullptr); }
  Interruptible(const Interruptible&) = delete;
  Interruptible& operator=(const Interruptible&) = delete;

 private:
  struct sigaction before_ = {};
};

/// A folder for the drawings that the command is tried on.
class Workplace {
 public:
  Workplace() {
    std::string name = (std::filesystem::temp_directory_path() / "lumo-reduce-XXXXXX").string();
    if (!mkdtemp(name.data())) throw InputError(name + ": cannot be made");
    folder_ = name;
  }
  ~Workplace() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }
  Workplace(const Workplace&) = delete;
  Workplace& operator=(const Workplace&) = delete;

  Ending Try(const Options& options, const std::string& svg) const {
    const std::string file = (folder_ / "drawing.svg").string();
    WriteText(file, svg);
    std::string command = options.command;
    const std::string word = ShellWord(file);
    for (auto place = command.find("{}"); place != std::string::npos;
         place = command.find("{}", place + word.size()))
      command.replace(place, 2, word);
    return RunShell(command, file, std::chrono::duration<double>(options.seconds));
  }

 private:
  std::filesystem::path folder_;
};

std::size_t Nodes(const Document& document) {
  std::size_t nodes = 0;
  for (const Element& element : document.elements) nodes += element.path.GetPointCount();
  return nodes;
}

int Refuse(const std::string& why) {
  std::cerr << "lumo: " << why << '\n';
  return kNothing;
}

int Run(const Options& options) {
  const std::string source = ReadText(options.file);
  const std::string name = options.file == "-" ? "standard input" : options.file;
  const Document document = ReadSvgText(source, name);
  const Workplace workplace;
  const Ending wanted = workplace.Try(options, source);
  if (!wanted.Failed()) return Refuse("the command does not fail on " + name);
  const auto fails = [&](const std::string& svg) {
    const Ending ending = workplace.Try(options, svg);
    return options.anyFailure ? ending.Failed() : ending == wanted;
  };
  const std::string plain = SvgText(document);
  if (!fails(plain))
    return Refuse("the command ends with " + wanted.Text() + " on " + name +
                  ", but not when its elements are written as plain paths");

  const Interruptible interruptible;
  Document small;
  Reduction reduction;
  {
    Stage stage(options, "reduce", options.tries);
    reduction.holds = [&](const std::string& svg) {
      stage.Step();
      return fails(svg);
    };
    reduction.goOn = [&] { return interrupted == 0 && reduction.tries < options.tries; };
    small = reduction.Run(document);
  }
  const std::size_t bytes = SvgText(small).size();
  if (!options.output.empty()) SaveDocument(small, options.output);
  DeliverFigures(
      options, small,
      {{"ending", wanted.Text()},
       {"tries", reduction.tries},
       {"before",
        {{"elements", document.elements.size()}, {"nodes", Nodes(document)}, {"bytes", plain.size()}}},
       {"after", {{"elements", small.elements.size()}, {"nodes", Nodes(small)}, {"bytes", bytes}}}});
  return bytes < plain.size() ? kDone : kNothing;
}

}  // namespace

void AddReduce(CLI::App& program, int& exit) {
  auto* command = program.add_subcommand("reduce", "Shrinks a drawing while a command keeps failing on it");
  const auto options = std::make_shared<Options>();
  AddDrawing(*command, *options, Product::drawing, "The smallest drawing found");
  command
      ->add_option("--command", options->command,
                   "For the shell; {} stands for the drawing's file, which is its standard input too")
      ->required()
      ->type_name("COMMAND");
  command->add_flag("--any-failure", options->anyFailure,
                    "Accept every failure, not only the one that the whole drawing gives");
  command->add_option("--tries", options->tries, "Run the command at most this often")
      ->check(CLI::Range(std::size_t{1}, std::size_t{10'000'000}).description(""))
      ->type_name("N")
      ->capture_default_str();
  command
      ->add_option("--seconds", options->seconds,
                   "Stop the command after this time; that counts as a failure of its own kind")
      ->check(CLI::Range(0.001, 86400.0).description(""))
      ->type_name("S")
      ->capture_default_str();
  command->footer(
      "A command fails when it ends with a signal, with an exit code other than 0, or not in time. Taken "
      "away are "
      "elements, subpaths, segments, handles, attributes and digits, as long as the command fails as before. "
      "Ctrl-C "
      "keeps what has been reached. Exit code 1 when the command does not fail on the drawing, or nothing "
      "can be "
      "taken away.\n"
      "Example: lumo reduce crash.svg --command 'my-editor --export {}' -o small.svg");
  OnRun(*command, options, exit, Run);
}

}  // namespace tool
