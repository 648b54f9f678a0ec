#include <gtest/gtest.h>

#include "lumo/polycurve.h"
#include "lumo/repair.h"
#include "support/path_builder.h"

namespace {

template <class T>
class RepairMembers : public testing::Test {
 protected:
  static Lumo::PolycurveT<T> Parse(const char* svg) {
    const auto path = test::ParsePath<T>(svg);
    Lumo::PolycurveT<T> curve;
    curve.SetPoints(path.points.data(), path.types.data(), path.points.size());
    return curve;
  }
  static std::string Svg(const Lumo::PolycurveT<T>& curve) {
    return test::ToSvg(curve.GetPoints(), curve.GetNodeTypes(), static_cast<int>(curve.GetPointCount()));
  }
};
using PointTypes = testing::Types<tagPOINT, TavMath::DPoint>;
TYPED_TEST_SUITE(RepairMembers, PointTypes);

TYPED_TEST(RepairMembers, ForwardToTheRepairsAndLeaveCopiesAlone) {
  auto path = this->Parse("M0,0 L100,0 L100,5 L200,5 M9,9");
  const auto copy = path;
  EXPECT_TRUE(path.RepairCurves({}));
  EXPECT_EQ(this->Svg(path), "M0,0 L100,0 L200,5 ");
  EXPECT_EQ(copy.GetPointCount(), 5u);
  path = this->Parse("M0,0 L100,0 L100,5 L200,5 L200,5");
  EXPECT_TRUE(path.RemoveZeroLengthSegments());
  EXPECT_EQ(this->Svg(path), "M0,0 L100,0 L100,5 L200,5 ");
  EXPECT_TRUE(path.RemoveShortSegments(6));
  EXPECT_EQ(this->Svg(path), "M0,0 L100,0 L200,5 ");
  path = this->Parse("M0,0 C0,100 500,900 1000,900 C1500,900 2000,100 2000,0");
  EXPECT_TRUE(path.RepairContinuity({}));
  EXPECT_EQ(path.GetNodeTypes()[3].Continuity(), ContinuityType::smooth);
  Lumo::PolycurveT<TypeParam> empty;
  EXPECT_TRUE(empty.RepairCurves({}) && empty.RepairContinuity({}) && empty.RemoveZeroLengthSegments() &&
              empty.RemoveShortSegments(5));
}

}  // namespace
