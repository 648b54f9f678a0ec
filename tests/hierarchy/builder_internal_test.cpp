// The tree without sample points that offsetting builds for itself.
#include "hierarchy/builder.h"

#include <gtest/gtest.h>

#include <random>

#include "hierarchy/tolerances.h"
#include "support/curves.h"

namespace {

using namespace Lumo;
using Path = PolycurveT<TavMath::DPoint>;

/// A random quadrilateral, often crossing itself, of lines or cubics; one in eight is open.
void AddShape(Path& path, std::mt19937& random) {
  const auto number = [&](int limit) { return static_cast<double>(random() % static_cast<unsigned>(limit)); };
  const double x = number(600), y = number(600), size = 20 + number(400);
  const bool closed = random() % 8 != 0, curved = random() % 2 == 0;
  TavMath::DPoint corner[5];
  for (auto& p : corner) p = {x + number(static_cast<int>(size)), y + number(static_cast<int>(size))};
  corner[4] = corner[0];
  path.PushBack(corner[0], NODETYPE(closed ? 0x0C : 0x04));
  for (int k = 1; k < 5; ++k) {
    const unsigned char end = closed && k == 4 ? 0x08 : 0x04;
    for (int c = 0; c < 2 && curved; ++c)
      path.PushBack(corner[k] + TavMath::DVector{number(80), number(80)}, NODETYPE(0xC0));
    path.PushBack(corner[k], NODETYPE(static_cast<unsigned char>(end | (curved ? 0x80 : 0x40))));
  }
}

void ExpectSame(const SubpathTreeNode& a, const SubpathTreeNode& b) {
  EXPECT_EQ(a.GetNodes(), b.GetNodes());
  EXPECT_EQ(a.GetNumberOfPoints(), b.GetNumberOfPoints());
  ASSERT_EQ(a.GetNumberOfChildren(), b.GetNumberOfChildren());
  for (std::size_t k = 0; k < a.GetNumberOfChildren(); ++k) ExpectSame(a.GetChild(k), b.GetChild(k));
}

TEST(HierarchyBuilder, NestsAsTheTreeWithAllSamplePointsDoes) {
  std::mt19937 random(3);
  int nested = 0;
  for (std::size_t round = 0; round < 400; ++round) {
    Path path;
    for (std::size_t k = 0; k <= round % (2 * hierarchy::kFewSubpaths); ++k) AddShape(path, random);
    const int count = static_cast<int>(path.GetPointCount());
    const SubpathHierarchy full(path.GetPoints(), path.GetNodeTypes(), count, true);
    ExpectSame(HierarchyBuilder::Nesting(path.GetPoints(), path.GetNodeTypes(), count), full);
    if (HasFailure()) FAIL() << "round " << round;
    for (std::size_t k = 0; k < full.GetNumberOfChildren(); ++k)
      nested += full.GetChild(k).GetNodes() != nullptr && full.GetChild(k).GetNumberOfChildren() > 0;
  }
  EXPECT_GT(nested, 300) << "the shapes must really nest";
}

TEST(HierarchyBuilder, LeavesTheSamplePointsOfSubpathsThatAreApartUnsought) {
  const Path path = test::ParseCurve<TavMath::DPoint>("M0,0 L9,0 L0,9 Z M100,0 L109,0 L100,9 Z");
  const SubpathTreeNode tree = HierarchyBuilder::Nesting(path.GetPoints(), path.GetNodeTypes(), 8);
  ASSERT_EQ(tree.GetNumberOfChildren(), 2u);
  EXPECT_EQ(tree.GetChild(0).GetSamplePoint(), (TavMath::DPoint{0, 0}));
  EXPECT_EQ(tree.GetChild(1).GetSamplePoint(), (TavMath::DPoint{0, 0}));
}

}  // namespace
