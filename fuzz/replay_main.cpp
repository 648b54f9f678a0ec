// Runs a fuzz target over files and folders named on the command line: a reproducer for findings, and the way
// CI replays the seeds in every build kind.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

int Replay(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  if (!in) return std::fprintf(stderr, "%s: cannot be read\n", path.string().c_str()), 1;
  const std::vector<char> bytes{std::istreambuf_iterator<char>(in), {}};
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  int failures = 0, files = 0;
  for (int k = 1; k < argc; ++k) {
    const std::filesystem::path path = argv[k];
    if (!std::filesystem::is_directory(path)) {
      failures += Replay(path);
      ++files;
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(path)) {
      failures += Replay(entry.path());
      ++files;
    }
  }
  std::printf("%d files replayed, %d unreadable\n", files, failures);
  return failures != 0;
}
