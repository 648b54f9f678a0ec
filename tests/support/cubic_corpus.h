#pragma once
// The named cubics of tests/corpus/cubics.txt, and a walk over them and over random ones.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/cubics.h"

namespace LumoTest {

struct NamedCubic {
  std::string name;
  Cubic cubic;
};

inline const std::vector<NamedCubic>& CubicCorpus() {
  static const std::vector<NamedCubic> corpus = [] {
    std::vector<NamedCubic> read;
    std::ifstream in(LUMO_CORPUS_DIR "/cubics.txt");
    for (std::string line; std::getline(in, line);) {
      const std::size_t colon = line.find(':');
      if (line.empty() || line[0] == '#' || colon == std::string::npos) continue;
      NamedCubic entry{line.substr(0, colon), {}};
      std::istringstream numbers(line.substr(colon + 1));
      for (DPoint& p : entry.cubic) numbers >> p.x >> p.y;
      EXPECT_TRUE(numbers) << "unreadable corpus line: " << line;
      read.push_back(entry);
    }
    EXPECT_GT(read.size(), 10u) << "the corpus was not found";
    return read;
  }();
  return corpus;
}

/// Calls check(cubic) for every named cubic, its reversal, and `count` random ones; a failure names the
/// cubic.
template <class Check>
void ForEachCubic(std::uint64_t seed, int count, const Check& check) {
  const auto run = [&](const Cubic& c, const std::string& name) {
    SCOPED_TRACE(name + ": " + ToSvg(c));
    check(c);
  };
  for (const NamedCubic& entry : CubicCorpus()) {
    run(entry.cubic, entry.name);
    const Cubic& c = entry.cubic;
    run(Cubic{c[3], c[2], c[1], c[0]}, entry.name + ", reversed");
  }
  Random random(seed);
  for (int k = 0; k < count; ++k) {
    CubicShape shape;
    const Cubic c = RandomCubic(random, &shape);
    run(c, NameOf(shape));
    if (::testing::Test::HasFailure()) return;  // one is enough to look at
  }
}

/// The rounding of coordinates as large as the cubic's.
inline double UlpOf(const Cubic& c) {
  double largest = 0;
  for (const DPoint& p : c) largest = (std::max)({largest, std::abs(p.x), std::abs(p.y)});
  return largest * 2.220446049250313e-16;
}

}  // namespace LumoTest
