#include <gtest/gtest.h>

#include "lumo/curve_segment.h"
#include "support/curves.h"
#include "support/oracles.h"

namespace {

using Lumo::CurveSegmentT;
using Lumo::PolycurveT;
using test::ParseCurve;
using test::ToCurve;
using test::ToPath;

/// Moves, lines and curves.
template <class T>
std::size_t Segments(const PolycurveT<T>& path) {
  std::size_t n = 0;
  for (std::size_t k = 0; k < path.GetPointCount(); ++k) n += !path.GetNodeType(k).IsControl();
  return n;
}

TEST(SegmentOfAPolycurve, ByNumberByEndAndByStart) {
  const auto path = ParseCurve<tagPOINT>("M0,0 L1,0 C2,0 3,0 4,0 L5,0 M6,0");
  using Segment = CurveSegmentT<tagPOINT>;
  EXPECT_EQ(Segment::FromEndIdx(path, 4)->number(), 2u);
  EXPECT_EQ(Segment::FromStartIdx(path, 1)->number(), 2u);
  EXPECT_EQ(Segment::FromStartIdx(path, 5)->number(), 6u) << "after a subpath's end comes the next move";
  EXPECT_EQ(Segment::FromEndIdx(path, 0)->type(), Lumo::CurveSegmentType::move);
  EXPECT_FALSE(Segment::FromNumber(path, 4)) << "a curve node";
  EXPECT_FALSE(Segment::FromEndIdx(path, 3)) << "a control point";
  for (const std::size_t beyond : {std::size_t{7}, std::size_t{8}, ~std::size_t{0}}) {
    EXPECT_FALSE(Segment::FromNumber(path, beyond));
    EXPECT_FALSE(Segment::FromEndIdx(path, beyond));
    EXPECT_FALSE(Segment::FromStartIdx(path, beyond));
  }
  EXPECT_FALSE(Segment::FromStartIdx(path, 6));
}

TEST(SegmentOfAPolycurve, AllAppendedInTurnGiveThePathBack) {
  test::Bits bits(61);
  for (int round = 0; round < 300; ++round) {
    const auto path = ToCurve(test::RandomPath<TavMath::DPoint>(bits));
    ASSERT_TRUE(Lumo::ValidSegments(path));
    PolycurveT<TavMath::DPoint> joined, loose;
    for (const auto& segment : Lumo::details::GetCurveSegments_Base(path)) {
      EXPECT_TRUE(segment->AppendTo(joined, true));
      EXPECT_TRUE(segment->AppendTo(loose, false));
    }
    EXPECT_EQ(ToPath(joined), ToPath(path));
    EXPECT_EQ(test::Flatten(ToPath(loose), 1).size(), Segments(path)) << "every segment is a subpath";
    EXPECT_TRUE(test::IsWellFormed(ToPath(loose)));
  }
}

TEST(SegmentOfAPolycurve, AppendedAloneIsAnOpenSubpath) {
  auto path = ParseCurve<tagPOINT>("M0,0 L9,0 L9,9 Z");
  EXPECT_TRUE((CurveSegmentT<tagPOINT>(path, 3).AppendTo(path, true))) << "its own path, and a closed one";
  EXPECT_EQ(test::ToSvg(ToPath(path)), "M0,0 L9,0 L9,9 L0,0 Z M9,9 L0,0 ");
  EXPECT_TRUE(test::IsWellFormed(ToPath(path)));
  EXPECT_TRUE((CurveSegmentT<tagPOINT>(path, 1).AppendTo(path, true)));
  EXPECT_EQ(test::ToSvg(ToPath(path)), "M0,0 L9,0 L9,9 L0,0 Z M9,9 L0,0 L9,0 ");
}

TEST(SegmentRange, KeepsItsPolycurveAlive) {
  auto range = [] {
    const auto path = ParseCurve<tagPOINT>("M0,0 L1,0 C2,0 3,0 4,0 L5,0");
    return Lumo::details::GetCurveSegments_Range(path, TavUtils::IndexRange(1, 100));
  }();
  std::vector<int> ends;
  for (const auto& segment : range) ends.push_back(segment->endpoint().x);
  EXPECT_EQ(ends, (std::vector<int>{1, 4, 5}));
}

}  // namespace
