#pragma once
// Runs the program as a shell would.

#include <sys/wait.h>
#include <unistd.h>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>

namespace test {

struct Outcome {
  int exit = -1;
  std::string out;
  std::string error;
};

inline std::string Contents(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// A folder of its own for each test program's run, gone at its end.
class Folder {
 public:
  Folder() : path_(std::filesystem::temp_directory_path() / ("lumo-test-" + std::to_string(getpid()))) {
    std::filesystem::create_directories(path_);
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  std::string Write(const std::string& name, const std::string& text) const {
    std::ofstream(path_ / name, std::ios::binary) << text;
    return (path_ / name).string();
  }
  std::string Name(const std::string& name) const { return (path_ / name).string(); }

 private:
  std::filesystem::path path_;
};

inline const Folder& Scratch() {
  static const Folder folder;
  return folder;
}

/// The arguments are words of the shell.
inline Outcome Lumo(const std::string& arguments, const std::string& input = {}) {
  Outcome outcome;
  const std::string in = Scratch().Write("in", input);
  const std::string command = std::string(LUMO_TOOL) + " " + arguments + " <" + in + " >" +
                              Scratch().Name("out") + " 2>" + Scratch().Name("error");
  const int status = std::system(command.c_str());
  outcome.exit = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  outcome.out = Contents(Scratch().Name("out"));
  outcome.error = Contents(Scratch().Name("error"));
  return outcome;
}

/// Null when the output is not JSON.
inline nlohmann::json LumoJson(const std::string& arguments, const std::string& input = {}) {
  const Outcome outcome = Lumo(arguments, input);
  return nlohmann::json::parse(outcome.out, nullptr, false);
}

/// A drawing of this content with a viewBox of 100 by 100.
inline std::string Svg(const std::string& content) {
  return "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 100 100'>" + content + "</svg>";
}

}  // namespace test
