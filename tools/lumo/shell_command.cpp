#include "shell_command.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <algorithm>
#include <cerrno>
#include <cstring>
#include <thread>

#include "input_error.h"

namespace tool {

namespace {

/// In the new process: only calls that are safe between fork and exec.
[[noreturn]] void Become(const char* command, const char* inputFile) {
  constexpr int kCannotRun = 127;
  setpgid(0, 0);
  const int in = open(inputFile, O_RDONLY | O_CLOEXEC);
  const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
  if (in < 0 || null < 0 || dup2(in, STDIN_FILENO) < 0 || dup2(null, STDOUT_FILENO) < 0 ||
      dup2(null, STDERR_FILENO) < 0)
    _exit(kCannotRun);
  execl("/bin/sh", "sh", "-c", command, static_cast<char*>(nullptr));
  _exit(kCannotRun);
}

Ending EndingOf(int status) {
  if (WIFSIGNALED(status)) return {Ending::Kind::signalled, WTERMSIG(status)};
  return {Ending::Kind::exited, WEXITSTATUS(status)};
}

}  // namespace

std::string Ending::Text() const {
  switch (kind) {
    case Kind::exited:
      return "exit code " + std::to_string(value);
    case Kind::signalled:
      return "signal " + std::to_string(value);
    case Kind::stopped:
      return "the time limit";
  }
  return {};
}

Ending RunShell(const std::string& command, const std::string& inputFile,
                std::chrono::duration<double> limit) {
  using Clock = std::chrono::steady_clock;
  const pid_t child = fork();
  if (child < 0) throw InputError(std::string("cannot run the command: ") + std::strerror(errno));
  if (child == 0) Become(command.c_str(), inputFile.c_str());
  setpgid(child, child);  // whichever of the two is first
  const auto end = Clock::now() + std::chrono::duration_cast<Clock::duration>(limit);
  constexpr std::chrono::microseconds kLongestNap{5000};
  std::chrono::microseconds nap{100};
  int status = 0;
  while (waitpid(child, &status, WNOHANG) == 0) {
    if (Clock::now() >= end) {
      kill(-child, SIGKILL);
      waitpid(child, &status, 0);
      return {Ending::Kind::stopped, 0};
    }
    std::this_thread::sleep_for(nap);
    nap = std::min(nap * 2, kLongestNap);
  }
  return EndingOf(status);
}

std::string ShellWord(const std::string& text) {
  std::string word = "'";
  for (const char c : text) word += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return word + "'";
}

}  // namespace tool
