#pragma once
// Runs a command of the user's and watches how it ends.

#include <chrono>
#include <string>

namespace tool {

/// How a command ended.
struct Ending {
  enum class Kind { exited, signalled, stopped } kind = Kind::exited;
  /// The exit code or the signal; 0 for what was stopped because it took too long.
  int value = 0;
  bool operator==(const Ending&) const = default;
  bool Failed() const { return kind != Kind::exited || value != 0; }
  std::string Text() const;
};

/// Runs `sh -c command` with this file as standard input, silently, in a process group of its own, which is
/// killed when the time is over. An InputError when no process can be made.
Ending RunShell(const std::string& command, const std::string& inputFile,
                std::chrono::duration<double> limit);

/// A word of the shell that stands for this text.
std::string ShellWord(const std::string& text);

}  // namespace tool
