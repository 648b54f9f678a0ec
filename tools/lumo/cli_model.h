#pragma once
// The command line as data: what the manual page and the shells' completions are written from. It is read off
// the parser itself, so that none of them can say what the program does not do.

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace tool {

struct CliOption {
  /// With their dashes; empty for a positional one.
  std::vector<std::string> names;
  /// What stands for its value: "LENGTH", "round|miter|bevel"; empty for a flag. A positional one's name.
  std::string value;
  /// The values it may have, when they can be listed.
  std::vector<std::string> choices;
  std::string description;
  std::string defaultValue;
  bool positional = false;
  bool required = false;
  bool many = false;
  /// Its value names a file.
  bool file = false;
};

struct CliCommand {
  /// As typed: "lumo boolean union".
  std::string path;
  std::string name;
  std::string description;
  /// What stands below the options in the help: remarks, and lines that begin with kExample.
  std::string footer;
  std::vector<CliOption> options;
  std::vector<CliCommand> subcommands;
};

inline constexpr std::string_view kExample = "Example: ";

CliCommand Describe(const CLI::App& program);

/// The command and all below it, each before its subcommands.
std::vector<const CliCommand*> Flattened(const CliCommand& program);

/// An option whose value is one of a list.
CLI::Option* AddChoice(CLI::App& command, const std::string& name, std::string& value,
                       const std::vector<std::string>& choices, const std::string& what);

}  // namespace tool
