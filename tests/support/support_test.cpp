// The helpers themselves: a helper that cannot fail guards nothing.
#include <gtest/gtest.h>

#include "support/generators.h"
#include "support/guarded_array.h"
#include "support/oracles.h"
#include "support/path_builder.h"
#include "support/rapidcheck_paths.h"

namespace {

using test::IntPath;

TEST(PathBuilder, ClosesWithALineAndPrintsWhatItRead) {
  const auto path = test::ParsePath<tagPOINT>("M0,0e L10,0s C10,5 5,10 0,10 Z M5,5l");
  EXPECT_EQ(path.Bytes(), (std::vector<int>{0x0D, 0x54, 0xC0, 0xC0, 0x84, 0x48, 0x06}));
  EXPECT_EQ(test::ToSvg(path), "M0,0 L10,0 C10,5 5,10 0,10 L0,0 Z M5,5 ");
  EXPECT_EQ(test::ParsePath<tagPOINT>("M0,0 L5,5 L0,0 Z").count(), 3);
  EXPECT_TRUE(test::IsWellFormed(path));
}

TEST(GeneratedPaths, AreWellFormedAndVaried) {
  test::Bits bits(1);
  int curves = 0, closed = 0, lone = 0;
  for (int k = 0; k < 2000; ++k) {
    const auto path = test::RandomPath<tagPOINT>(bits);
    ASSERT_TRUE(test::IsWellFormed(path));
    ASSERT_TRUE(test::IsWellFormed(test::RandomPath<TavMath::DPoint>(bits)));
    for (const NODETYPE type : path.types) {
      curves += type.IsCurve();
      closed += type.IsMove() && type.IsClosed();
    }
    lone += path.count() == 1;
  }
  EXPECT_GT(curves, 1000);
  EXPECT_GT(closed, 500);
  EXPECT_GT(lone, 5);
}

TEST(GeneratedPaths, OfRapidCheckAreWellFormed) {
  test::CheckProperty("well formed",
                      [](const IntPath& path) { RC_ASSERT(test::WhyIllFormed(path).empty()); });
}

TEST(WellFormedness, NamesTheRuleThatIsBroken) {
  const struct {
    std::vector<NODETYPE> types;
    const char* why;
  } cases[] = {
      {{0x44}, "node 0 is not a move"},
      {{0x04, 0x84}, "without two control points"},
      {{0x04, 0xC0, 0x44}, "outside the pattern"},
      {{0x04, 0xC0, 0xC0}, "outside the pattern"},
      {{0x0C, 0x44, 0x44}, "one end only"},
      {{0x0C, 0x4C, 0x48}, "inner closed flag"},
      {{0x08, 0x44, 0x48}, "without the user flag"},
      {{0x0C, 0x44, 0x4C}, "last node with the user flag"},
      {{0x34, 0x44}, "continuity 3"},
  };
  for (const auto& test_case : cases) {
    const IntPath path{std::vector<tagPOINT>(test_case.types.size()), test_case.types};
    EXPECT_NE(test::WhyIllFormed(path).find(test_case.why), std::string::npos) << test::WhyIllFormed(path);
  }
  EXPECT_TRUE(test::IsWellFormed(IntPath{}));
}

#if !defined(LUMO_TEST_ASAN)
TEST(GuardedArrays, NoticeAWriteOutside) {
  for (const int at : {-1, 4}) {
    test::GuardedArray<tagPOINT> array(4);
    const tagPOINT saved = array.data()[at];
    array.data()[at].x = 7;
    EXPECT_FALSE(array.Intact());
    array.data()[at] = saved;
  }
}
#endif

TEST(Winding, OfNestedSquares) {
  const auto lines =
      test::Flatten(test::ParsePath<tagPOINT>("M0,0 L9,0 L9,9 L0,9 Z M3,3 L3,6 L6,6 L6,3 Z"), 8);
  EXPECT_EQ(test::WindingNumber(lines, {1, 1}), 1);
  EXPECT_EQ(test::WindingNumber(lines, {4, 4}), 0);
  EXPECT_EQ(test::WindingNumber(lines, {20, 4}), 0);
  EXPECT_DOUBLE_EQ(test::DistanceTo(lines, {12, 4}), 3);
}

}  // namespace
