#pragma once
// Reads pairs of cubics from a text file. One pair a line:
//   name | number of contacts, "overlap" after it when they share a stretch | 8 coordinates | 8 coordinates
// Lines that begin with # are comments.

#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "support/cubics.h"

namespace LumoTest {

struct NamedPair {
  std::string name;
  int count = 0;
  bool overlap = false;
  Cubic a, b;
};

inline std::vector<NamedPair> ReadNamedPairs(const char* path) {
  std::vector<NamedPair> pairs;
  std::ifstream in(path);
  for (std::string line; std::getline(in, line);) {
    if (line.empty() || line[0] == '#') continue;
    std::istringstream fields(line);
    std::string name, result, a, b;
    std::getline(fields, name, '|');
    std::getline(fields, result, '|');
    std::getline(fields, a, '|');
    std::getline(fields, b, '|');
    NamedPair pair;
    pair.name = name;
    pair.overlap = result.find("overlap") != std::string::npos;
    std::istringstream(result) >> pair.count;
    const auto read = [](const std::string& text, Cubic& c) {
      std::istringstream numbers(text);
      for (DPoint& p : c) numbers >> p.x >> p.y;
    };
    read(a, pair.a);
    read(b, pair.b);
    pairs.push_back(pair);
  }
  return pairs;
}

}  // namespace LumoTest
