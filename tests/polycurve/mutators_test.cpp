// What every writing member has in common: nothing is written through shared storage, and edits leave
// well-formed paths.

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "polycurve/mutators.h"
#include "support/oracles.h"
#include "support/point_types.h"

namespace {

using Lumo::PolycurveRefT;
using Lumo::PolycurveT;

LUMO_TYPED_SUITE(Mutators);

/// The names of the writing members, read from the public header.
std::set<std::string> WritersInHeader() {
  std::ifstream file(LUMO_CORPUS_DIR "/../../include/lumo/polycurve.h");
  std::stringstream text;
  text << file.rdbuf();
  std::string declarations = text.str();
  declarations.erase(declarations.find(" protected:"));
  declarations.erase(0, declarations.find("class LUMO_TEMPLATE_API PolycurveT"));
  std::set<std::string> names;
  const std::regex member(R"(\n  (bool|void|PolycurveT&|DrawCurveT<T>) (operator\S+?|\w+)\(([^;{]*)[;{])");
  for (std::sregex_iterator it(declarations.begin(), declarations.end(), member), end; it != end; ++it) {
    const std::string tail = (*it)[3];
    if (tail.find(") const") == std::string::npos) names.insert((*it)[2]);
  }
  return names;
}

TEST(MutatorList, NamesEveryWritingMemberOfTheClass) {
  // What is made of other members' work is tested with its subject.
  std::set<std::string> missing = WritersInHeader();
  EXPECT_GT(missing.size(), 80u) << "the header was not understood";
  missing.erase("OffsetCurve");
  for (const auto& mutator : test::MutatorList<tagPOINT>::All()) missing.erase(mutator.name);
  EXPECT_EQ(missing, std::set<std::string>());
}

LUMO_TYPED_TEST(Mutators, NeverWriteStorageThatOthersSee) {
  int changed = 0;
  for (const auto& mutator : test::MutatorList<T>::All()) {
    for (std::uint64_t seed = 0; seed < 40; ++seed) {
      test::Bits bits(seed);
      const auto nodes = seed % 8 == 7 ? test::RandomMalformedPath<T>(bits, 12) : test::RandomPath<T>(bits);
      const PolycurveT<T> original = test::ToCurve(nodes);
      PolycurveT<T> copy = original, own = test::ToCurve(nodes);
      PolycurveRefT<T> reference(nodes.points.data(), nodes.types.data(), nodes.points.size());
      const test::Path<T> before = nodes;
      test::Bits first(seed), second(seed), third(seed);
      const bool done = mutator.run(copy, first);
      EXPECT_EQ(mutator.run(reference, second), done)
          << mutator.name << " over a caller's arrays, seed " << seed;
      EXPECT_EQ(mutator.run(own, third), done) << mutator.name << " on storage of its own, seed " << seed;
      EXPECT_TRUE(test::ToPath(original) == before) << mutator.name << " wrote through a copy, seed " << seed;
      EXPECT_TRUE(nodes == before) << mutator.name << " wrote the caller's arrays, seed " << seed;
      EXPECT_TRUE(copy == own) << mutator.name << " depends on sharing, seed " << seed;
      EXPECT_TRUE(reference == own) << mutator.name << " depends on whose arrays they are, seed " << seed;
      changed += copy != original;
      if (!done && mutator.keepsForm) {
        EXPECT_TRUE(copy == original) << mutator.name << " failed and changed the path";
      }
    }
  }
  EXPECT_GT(changed, 1000);
}

LUMO_TYPED_TEST(Mutators, RandomScriptsKeepThePathWellFormed) {
  auto mutators = test::MutatorList<T>::All();
  std::erase_if(mutators, [](const auto& mutator) { return !mutator.keepsForm; });
  std::vector<int> succeeded(mutators.size());
  for (std::uint64_t seed = 0; seed < 300; ++seed) {
    test::Bits bits(seed);
    PolycurveT<T> path = test::ToCurve(test::RandomPath<T>(bits));
    std::string script;
    for (int step = 0; step < 30; ++step) {
      const auto k = static_cast<std::size_t>(bits.Below(static_cast<int>(mutators.size())));
      const auto before = test::ToPath(path);
      succeeded[k] += mutators[k].run(path, bits);
      script += mutators[k].name + " ";
      const auto after = test::ToPath(path);
      ASSERT_TRUE(test::IsWellFormed(after))
          << "seed " << seed << ": " << script << "\nfrom " << testing::PrintToString(before);
      if (path.GetPointCount() > 400) path.Truncate(0);
    }
  }
  for (std::size_t k = 0; k < mutators.size(); ++k) {
    if (mutators[k].name == "RepairNodeTypes")
      continue;  // true when something was wrong, and here nothing ever is
    EXPECT_GT(succeeded[k], 0) << mutators[k].name << " never did anything";
  }
}

LUMO_TYPED_TEST(Mutators, MalformedPathsAreHandledWithoutHarm) {
  const auto mutators = test::MutatorList<T>::All();
  for (std::uint64_t seed = 0; seed < 400; ++seed) {
    test::Bits bits(seed);
    PolycurveT<T> path = test::ToCurve(test::RandomMalformedPath<T>(bits, 24));
    for (int step = 0; step < 20; ++step) {
      mutators[static_cast<std::size_t>(bits.Below(static_cast<int>(mutators.size())))].run(path, bits);
      if (path.GetPointCount() > 400) path.Truncate(20);
      path.GetArea();
      path.IsPointInShape(T{1, 2}, true, true);
      path.GetSubpaths();
      path.FindClosestPoints(T{1, 2});
      path.GetPolyline(1);
    }
    ASSERT_EQ(path.GetPoints() == nullptr, path.IsEmpty());
  }
}

}  // namespace
