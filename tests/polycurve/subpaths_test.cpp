#include <gtest/gtest.h>

#include "support/curves.h"
#include "support/point_types.h"

namespace {

using Lumo::PolycurveT;
using Lumo::SubcurveRange;
using TavMath::DPoint;
using test::ParseCurve;

LUMO_TYPED_SUITE(Subpaths);

LUMO_TYPED_TEST(Subpaths, AreFoundByTheirMoveNodes) {
  const auto path = ParseCurve<T>("M0,0 L10,0 M5,5 M0,0 L10,0e L10,10 Z M0,0 L1,1");
  EXPECT_EQ(path.GetSubpathCount(), 4u);
  EXPECT_EQ(path.GetSubpathIndices(), (std::vector<SubcurveRange>{{0, 2}, {2, 3}, {3, 7}, {7, 9}}));
  EXPECT_EQ(path.GetSubpathRange(2), (SubcurveRange{3, 7}));
  std::size_t first = 99, end = 99;
  EXPECT_FALSE(path.GetSubpathRange(4, first, end));
  EXPECT_EQ(first, 99u);
  EXPECT_EQ(path.GetSubpath(2).GetPointCount(), 4u);
  EXPECT_TRUE(path.GetSubpath(4).IsEmpty());
  EXPECT_EQ(path.GetSubpaths().size(), 4u);
  const auto refs = path.GetSubpathRefs();
  ASSERT_EQ(refs.size(), 4u);
  EXPECT_EQ(refs[2].GetPoints(), path.GetPoints() + 3) << "no nodes are copied";
  EXPECT_EQ(path.GetSubpathCurves()[3].count, 2u);
  ASSERT_EQ(path.GetEnabledSubpathCurves().size(), 1u);
  EXPECT_EQ(path.GetEnabledSubpathCurves()[0].types, path.GetNodeTypes() + 3);
  EXPECT_TRUE(path.IsClosed(2));
  EXPECT_FALSE(path.IsClosed(0) || path.IsClosed(9) || path.IsLastSubpathClosed());
  EXPECT_TRUE(path.ContainsClosedSubpaths());
  const auto lone = ParseCurve<T>("M0,0 L10,0 L10,10 Z M5,5");
  EXPECT_TRUE(lone.ContainsOpenSubpaths(false));
  EXPECT_FALSE(lone.ContainsOpenSubpaths(true)) << "a lone move node is no real subpath";
}

LUMO_TYPED_TEST(Subpaths, LettersAreGroupsOfSubpathsAndNothingIsLost) {
  auto path = ParseCurve<T>("M0,0 L1,1 M5,5l L6,6 M7,7 L8,8 M9,9l L10,10");
  const auto letters = path.GetLetterCurves();
  ASSERT_EQ(letters.size(), 3u);
  EXPECT_EQ(letters[0].GetPointCount(), 2u) << "what stands before the first letter";
  EXPECT_EQ(letters[1].GetPointCount(), 4u);
  EXPECT_EQ(letters[2].GetPoint(0).x, 9);
  EXPECT_EQ(ParseCurve<T>("M5,5l L6,6 M9,9l L10,10").GetLetterCurves().size(), 2u)
      << "nothing before the first";
  EXPECT_TRUE(path.ClearLetterFlags());
  EXPECT_FALSE(path.ClearLetterFlags()) << "none left";
  EXPECT_EQ(path.GetLetterCurves().size(), 1u);
  EXPECT_TRUE(PolycurveT<T>().GetLetterCurves().empty());
}

LUMO_TYPED_TEST(Subpaths, SelectingOneClosedEndSelectsBoth) {
  auto path = ParseCurve<T>("M0,0 L10,0 L10,10 Z M0,0e L5,5");
  path.SetNodeType(3, path.GetNodeType(3) | NODETYPE::kEnabled);
  EXPECT_FALSE(path.IsEnabled(0));
  EXPECT_TRUE(path.EnableFirstAndLastInClosedSubpaths());
  EXPECT_TRUE(path.IsEnabled(0));
  EXPECT_FALSE(path.IsEnabled(5)) << "open subpaths keep their selection";
  EXPECT_TRUE(path.SetEnabled(3, false));
  EXPECT_FALSE(path.IsEnabled(0)) << "the setter writes both ends too";
}

LUMO_TYPED_TEST(Subpaths, ConvertToTheOtherPointType) {
  using Other = typename PolycurveT<T>::OtherPoint;
  const PolycurveT<Other> other(ParseCurve<T>("M0,0 L10,-7 Z"));
  EXPECT_EQ(other.GetPoint(1).y, -7);
  EXPECT_EQ(other.GetPointCount(), 3u);
  auto path = ParseCurve<T>("M1,1");
  EXPECT_TRUE(path.PushBack(other));
  EXPECT_EQ(path.GetPointCount(), 4u);
}

TEST(SubpathsDouble, BecomeIntegersHalfAwayFromZero) {
  const PolycurveT<tagPOINT> path(ParseCurve<DPoint>("M2.5,-2.5 L2.4,-2.4"));
  EXPECT_EQ(path.GetPoint(0), (tagPOINT{3, -3}));
  EXPECT_EQ(path.GetPoint(1), (tagPOINT{2, -2}));
}

}  // namespace
