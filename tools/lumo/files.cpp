#include "files.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <system_error>

#include "input_error.h"

namespace tool {

namespace {

/// To be called right after what failed. Streams promise no cause; the system underneath leaves one.
[[noreturn]] void Fail(const std::string& file, const std::string& what) {
  const int code = errno;
  const std::string cause = code == 0 ? "" : " (" + std::generic_category().message(code) + ")";
  throw InputError((file.empty() ? "''" : file) + ": " + what + cause);
}

}  // namespace

std::string ReadText(const std::string& file) {
  if (file == "-") return {std::istreambuf_iterator<char>(std::cin), {}};
  std::error_code error;
  if (std::filesystem::is_directory(file, error)) throw InputError(file + ": is a folder");
  errno = 0;
  std::ifstream in(file, std::ios::binary);
  if (!in) Fail(file, "cannot be opened");
  std::ostringstream contents;
  // An empty file leaves the target of this in failure, which says nothing about the source.
  contents << in.rdbuf();
  if (in.bad()) Fail(file, "cannot be read");
  return std::move(contents).str();
}

void WriteText(const std::string& file, const std::string& text) {
  if (file == "-") {
    std::cout << text;
    FlushOutput();
    return;
  }
  errno = 0;
  std::ofstream out(file, std::ios::binary);
  if (out) {
    out << text;
    out.close();
  }
  if (!out) Fail(file, "cannot be written");
}

void FlushOutput() {
  errno = 0;
  if (!std::cout.flush()) Fail("standard output", "cannot be written");
}

}  // namespace tool
