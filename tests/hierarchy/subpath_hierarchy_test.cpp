#include "lumo/subpath_hierarchy.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>
#include <string>

#include "lumo/measure.h"
#include "support/curves.h"
#include "support/point_types.h"

namespace {

using Lumo::ConstDrawCurveT;
using Lumo::PolycurveT;
using Lumo::SubpathHierarchy;
using Lumo::SubpathTreeNode;
using TavMath::DPoint;
using test::MakePoint;

LUMO_TYPED_SUITE(Hierarchy);

/// A closed square, counter-clockwise (negative area) or clockwise.
template <class T>
void AddSquare(PolycurveT<T>& path, double x, double y, double size, bool clockwise = false) {
  const T start = MakePoint<T>(x, y), opposite = MakePoint<T>(x + size, y + size);
  const T beside = MakePoint<T>(x + size, y), above = MakePoint<T>(x, y + size);
  const T corner[5] = {start, clockwise ? above : beside, opposite, clockwise ? beside : above, start};
  const NODETYPE types[5] = {0x0C, 0x44, 0x44, 0x44, 0x48};
  path.PushBack(corner, types, 5);
}

template <class T>
void AddDisc(PolycurveT<T>& path, double x, double y, double r) {
  const double h = 0.5522847498 * r;
  const double xy[13][2] = {{r, 0},   {r, h},   {h, r},  {0, r},  {-h, r}, {-r, h}, {-r, 0},
                            {-r, -h}, {-h, -r}, {0, -r}, {h, -r}, {r, -h}, {r, 0}};
  for (int k = 0; k < 13; ++k) {
    const unsigned char type = k == 0 ? 0x0C : k == 12 ? 0x88 : k % 3 == 0 ? 0x84 : 0xC0;
    path.PushBack(MakePoint<T>(x + xy[k][0], y + xy[k][1]), NODETYPE(type));
  }
}

template <class T>
SubpathHierarchy Tree(const PolycurveT<T>& path, bool group = false) {
  return SubpathHierarchy(path.GetPoints(), path.GetNodeTypes(), static_cast<int>(path.GetPointCount()),
                          group);
}

/// The tree as nested lists of the node index at which each subpath starts: "0(5(10)15)"; "g" is a group.
template <class T>
std::string Shape(const SubpathTreeNode& node, const PolycurveT<T>& path) {
  std::string text;
  for (std::size_t k = 0; k < node.GetNumberOfChildren(); ++k) {
    const SubpathTreeNode& child = node.GetChild(k);
    text += child.GetNodes() ? std::to_string(child.GetNodes() - path.GetNodeTypes()) : std::string(1, 'g');
    if (child.GetNumberOfChildren() > 0) text.append(1, '(').append(Shape(child, path)).append(1, ')');
    if (k + 1 < node.GetNumberOfChildren()) text += ',';
  }
  return text;
}

LUMO_TYPED_TEST(Hierarchy, NestsEqualSquaresAndReversesAdoptedOnes) {
  PolycurveT<T> equal;
  AddSquare(equal, 0, 0, 100);
  AddSquare(equal, 0, 0, 100);
  EXPECT_EQ(Shape(Tree(equal), equal), "0(5)");

  PolycurveT<T> adopting;
  AddSquare(adopting, 10, 10, 20);
  AddSquare(adopting, 50, 50, 20);
  AddSquare(adopting, 200, 0, 20);
  AddSquare(adopting, 0, 0, 100);
  EXPECT_EQ(Shape(Tree(adopting), adopting), "10,15(5,0)");
}

LUMO_TYPED_TEST(Hierarchy, KeepsOpenSubpathsBesideTheTreeAndCutsGroupsAtLetterFlags) {
  PolycurveT<T> path;
  const auto open = [&](double x) {
    path.MoveTo(MakePoint<T>(x, 10));
    path.LineTo(MakePoint<T>(x + 5, 10));
  };
  AddSquare(path, 0, 0, 100);  // 0
  open(20);                    // 5, inside the square
  open(40);                    // 7
  open(60);                    // 9, separator: not added
  path.SetLetter(9, true);
  open(80);  // 11
  EXPECT_EQ(Shape(Tree(path, false), path), "0,5,7,11");
  EXPECT_EQ(Shape(Tree(path, true), path), "0,g(5,7),g(11)");
  AddSquare(path, 18, 0, 30);  // 13: around the open ones, which it does not adopt
  EXPECT_EQ(Shape(Tree(path, false), path), "0(13),5,7,11");
}

LUMO_TYPED_TEST(Hierarchy, CountsAreasByDirectionAndDropsCutOffs) {
  PolycurveT<T> path;
  AddSquare(path, 0, 0, 100, true);
  AddSquare(path, 10, 10, 50, false);
  const SubpathHierarchy tree = Tree(path);
  ASSERT_EQ(Shape(tree, path), "0(5)");
  EXPECT_EQ(tree.GetChild(0).GetArea(), 10000);
  EXPECT_EQ(tree.GetChild(0).GetAreaWithChildren(), 7500);
  EXPECT_EQ(tree.GetArea(), 0);
  EXPECT_EQ(tree.GetTotalNumberOfPoints(), 10);

  SubpathHierarchy positive = tree, negative = tree;
  positive.EliminateCutOffs(true);
  EXPECT_EQ(Shape(positive, path), "0(5)");
  negative.EliminateCutOffs(false);
  EXPECT_EQ(Shape(negative, path), "");

  const auto flat = test::ParseCurve<T>("M0,0 L50,0 Z");  // there and back: an area of 0 is not positive
  positive = negative = Tree(flat);
  ASSERT_EQ(Shape(positive, flat), "0");
  positive.EliminateCutOffs(true);
  EXPECT_EQ(Shape(positive, flat), "");
  negative.EliminateCutOffs(false);
  EXPECT_EQ(Shape(negative, flat), "0");

  PolycurveT<T> back;
  tree.AppendToPolycurve(back);
  EXPECT_TRUE(back == path);
  PolycurveT<tagPOINT> integer;
  tree.AppendToPolycurve(integer);
  EXPECT_EQ(integer.GetPointCount(), 10u);
}

/// The plain definition of insertion, used as the oracle.
template <class T>
std::string OneByOne(const PolycurveT<T>& path) {
  SubpathHierarchy tree;
  for (const auto& range : path.GetSubpathIndices()) {
    const int count = static_cast<int>(range.end - range.first);
    tree.AddNode(
        SubpathTreeNode(path.GetPoints() + range.first, path.GetNodeTypes() + range.first, count, 0));
  }
  return Shape(tree, path);
}

LUMO_TYPED_TEST(Hierarchy, BuildsTheSameTreeAsInsertionOneByOne) {
  std::mt19937 random(7);
  const auto number = [&](int limit) { return static_cast<double>(random() % static_cast<unsigned>(limit)); };
  int nested = 0;
  for (int round = 0; round < 90; ++round) {
    PolycurveT<T> path;
    // Few are compared each with each, many are looked up in indexes.
    const int count = round < 60 ? 60 : round - 60;
    for (int k = 0; k < count; ++k) {
      const double size = std::pow(2.0, number(10)) * 4;
      random() % 2 ? AddSquare(path, number(3000), number(3000), size, random() % 2 == 0)
                   : AddDisc(path, number(3000), number(3000), size);
    }
    const std::string shape = Shape(Tree(path), path);
    ASSERT_EQ(shape, OneByOne(path)) << "round " << round;
    nested += shape.find("((") == std::string::npos && shape.find('(') != std::string::npos;
  }
  EXPECT_GT(nested, 30) << "the drawings must really nest";
}

LUMO_TYPED_TEST(Hierarchy, FindsTheDepthOfConcentricRingsInAnyOrder) {
  std::mt19937 random(11);
  std::vector<int> radius;
  for (int k = 1; k <= 40; ++k) radius.push_back(100 * k);
  std::shuffle(radius.begin(), radius.end(), random);
  PolycurveT<T> path;
  for (const int r : radius) AddDisc(path, 50, -70, r);
  const SubpathHierarchy tree = Tree(path);
  const SubpathTreeNode* node = &tree;
  int depth = 0;
  for (; node->GetNumberOfChildren() == 1; ++depth) {
    node = &node->GetChild(0);
    const double disc = M_PI * std::pow(100.0 * (40 - depth), 2);
    EXPECT_NEAR(std::abs(node->GetArea()), disc, 2e-3 * disc);
  }
  EXPECT_EQ(depth, 40);
}

TEST(SamplePoint, LiesStrictlyInsideOnTheGridWhereverAGridPointDoes) {
  std::mt19937 random(3);
  int onGrid = 0;
  for (int round = 0; round < 4000; ++round) {
    const int reach = round % 4 == 0 ? 4 : 40;
    const auto number = [&] { return static_cast<int>(random() % static_cast<unsigned>(reach)); };
    tagPOINT p[4] = {{number(), number()}, {number(), number()}, {number(), number()}, {0, 0}};
    p[3] = p[0];
    const NODETYPE types[4] = {0x0C, 0x44, 0x44, 0x48};
    const auto cross = [](tagPOINT a, tagPOINT b, double x, double y) {
      return (b.x - a.x) * (y - a.y) - (b.y - a.y) * (x - a.x);
    };
    const double turn = cross(p[0], p[1], p[2].x, p[2].y);
    if (turn == 0) continue;
    const auto inside = [&](double x, double y) {
      return cross(p[0], p[1], x, y) * turn > 0 && cross(p[1], p[2], x, y) * turn > 0 &&
             cross(p[2], p[0], x, y) * turn > 0;
    };
    bool gridPointExists = false;
    for (int x = 0; x < reach; ++x) {
      for (int y = 0; y < reach; ++y) gridPointExists = gridPointExists || inside(x, y);
    }
    const DPoint sample = SubpathTreeNode(p, types, 4, 0).GetSamplePoint();
    EXPECT_TRUE(inside(sample.x, sample.y)) << round;
    if (gridPointExists) {
      EXPECT_EQ(sample.x, std::floor(sample.x)) << round;
      EXPECT_EQ(sample.y, std::floor(sample.y)) << round;
      ++onGrid;
    }
  }
  EXPECT_GT(onGrid, 2000);
}

TEST(SamplePoint, OfAFigureOfEightHasNonZeroWinding) {
  // One lobe runs each way: the signed area is nearly 0, but each lobe has an inside.
  const auto path = test::ParseCurve<DPoint>("M0,0 C100,90 100,-90 0,0 C-100,90 -100,-90 0,0 Z");
  const DPoint sample = Tree(path).GetChild(0).GetSamplePoint();
  EXPECT_TRUE(Lumo::IsPointInShape(path.GetPoints(), path.GetNodeTypes(), 7, sample));
}

TEST(SubpathHierarchy, SurvivesNothingAndNonsense) {
  EXPECT_EQ(SubpathHierarchy(static_cast<const DPoint*>(nullptr), nullptr, 5, true).GetNumberOfChildren(),
            0u);
  const double nan = std::nan(""), inf = INFINITY;
  const DPoint points[] = {{nan, 1}, {inf, nan}, {-inf, 2}, {nan, 1}};
  const NODETYPE types[] = {0x0C, 0x44, 0x44, 0x48};
  const SubpathHierarchy tree(points, types, 4, false);
  EXPECT_EQ(tree.GetNumberOfChildren(), 1u);
  const NODETYPE headless[] = {0x44, 0xC0, 0x84, 0xC8};
  const DPoint some[] = {{0, 0}, {1, 1}, {2, 0}, {1e300, -1e300}};
  EXPECT_EQ(SubpathHierarchy(some, headless, 4, false).GetNumberOfChildren(), 1u);
}

LUMO_TYPED_TEST(Hierarchy, IsTheSameByEveryConstructorAndGivesTheSameNodesBack) {
  PolycurveT<T> path;
  AddSquare(path, 0, 0, 100);
  AddDisc(path, 50, 50, 30);
  AddSquare(path, 45, 45, 10, true);
  path.MoveTo(MakePoint<T>(200, 10));
  path.LineTo(MakePoint<T>(205, 10));
  AddSquare(path, 300, 0, 20);
  path.MoveTo(MakePoint<T>(210, 10));
  path.LineTo(MakePoint<T>(215, 10));
  const SubpathHierarchy tree = Tree(path);
  const std::string shape = "0(5(18)),25,23,30";
  EXPECT_EQ(Shape(tree, path), shape);
  const std::vector<ConstDrawCurveT<T>> views{{path.GetPoints(), path.GetNodeTypes(), path.GetPointCount()},
                                              {nullptr, nullptr, 3}};
  EXPECT_EQ(Shape(SubpathHierarchy(views), path), shape);
  EXPECT_EQ(Shape(SubpathHierarchy(std::vector<PolycurveT<T>>{path, PolycurveT<T>()}), path), shape);
  std::vector<SubpathTreeNode> nodes;
  for (const bool closed : {true, false}) {
    for (const auto& view : path.GetSubpathCurves()) {
      if (view.types[0].IsClosed() == closed)
        nodes.emplace_back(view.points, view.types, static_cast<int>(view.count), 0);
    }
  }
  EXPECT_EQ(Shape(SubpathHierarchy(nodes), path), shape);

  PolycurveT<tagPOINT> ints;
  PolycurveT<DPoint> doubles;
  std::vector<DPoint> points;
  std::vector<NODETYPE> types;
  tree.AppendToPolycurve(ints);
  tree.AppendToPolycurve(doubles);
  tree.AppendNodes(points, types);
  EXPECT_EQ(tree.GetTotalNumberOfPoints(), static_cast<int>(path.GetPointCount()));
  EXPECT_EQ(doubles.GetPointCount(), path.GetPointCount());
  EXPECT_EQ(PolycurveT<DPoint>(points.data(), types.data(), points.size()), doubles);
  EXPECT_EQ(PolycurveT<tagPOINT>(doubles), ints) << "points are rounded one by one";
  EXPECT_NEAR(tree.GetAreaWithChildren(), path.GetArea(), 1e-9);
}

}  // namespace
