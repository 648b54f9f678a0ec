#pragma once
// Paths for tests of intersection tables.

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "lumo/intersections.h"
#include "support/cubics.h"

namespace LumoTest {

inline constexpr unsigned char kMove = 0x04, kLine = 0x44, kCurve = 0x84, kControl = 0xC0;

/// A path under construction; the arrays stay where they are while a table looks at them.
struct Drawing {
  std::vector<DPoint> points;
  std::vector<NODETYPE> types;
  void Node(const DPoint& p, unsigned char type) { points.push_back(p), types.push_back(NODETYPE(type)); }
  Drawing& Move(const DPoint& p) { return Node(p, kMove), *this; }
  Drawing& Line(const DPoint& p) { return Node(p, kLine), *this; }
  Drawing& Curve(const Cubic& c) {
    return Node(c[1], kControl), Node(c[2], kControl), Node(c[3], kCurve), *this;
  }
  Drawing& Close() {
    types.back() |= 0x08;
    std::size_t start = types.size() - 1;
    while (!types[start].IsMove()) --start;
    types[start] |= 0x08;
    return *this;
  }
  int count() const { return static_cast<int>(points.size()); }
};

inline Drawing LinePath(const DPoint& p, const DPoint& q) { return Drawing().Move(p).Line(q); }
inline Drawing CurvePath(const Cubic& c) { return Drawing().Move(c[0]).Curve(c); }

/// The records on segment 0 of two paths, each a single segment.
struct Met {
  Lumo::SegmentIntersectionTable table;
  Drawing a, b;
  Met(Drawing first, Drawing second, const Lumo::SegmentIntersectionSettings& settings = {})
      : a(std::move(first)), b(std::move(second)) {
    table.AddCurve(a.points.data(), a.types.data(), a.count());
    table.AddCurve(b.points.data(), b.types.data(), b.count());
    EXPECT_TRUE(Lumo::FindAllIntersections(table, settings));
  }
  const Lumo::SegmentIntersections& on() const { return table.Segments()[0]; }
  double ta(std::size_t k) const { return on()[k]->GetIntersectionTime(); }
  double tb(std::size_t k) const { return on()[k]->GetPartner()->GetIntersectionTime(); }
};

}  // namespace LumoTest
