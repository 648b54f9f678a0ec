#pragma once
// RapidCheck generators of paths. A counterexample shrinks by dropping subpaths and segments and by moving
// coordinates towards zero.

#include <rapidcheck.h>

#include <vector>

#include "support/generators.h"
#include "support/path_builder.h"

namespace test {

namespace detail {

struct SegmentPlan {
  bool curve;
  std::vector<int> at;  // six coordinates
  unsigned char flags;
};
struct SubpathPlan {
  bool closed;
  int x, y;
  unsigned char flags;
  std::vector<SegmentPlan> segments;
};

inline void ApplyFlags(NODETYPE& type, unsigned char flags) {
  type.Set(NODETYPE::kEnabled, (flags & 1) != 0);
  type.SetContinuity(static_cast<ContinuityType>((flags >> 1) % 3));
  if (type.IsMove()) type.Set(NODETYPE::kLetter, (flags & 0x10) != 0);
}

template <class T>
Path<T> BuildPath(const std::vector<SubpathPlan>& plan) {
  Path<T> path;
  for (const SubpathPlan& subpath : plan) {
    const std::size_t first = path.points.size();
    path.Add(NODETYPE::kMove | NODETYPE::kUser, MakePoint<T>(subpath.x, subpath.y));
    ApplyFlags(path.types.back(), subpath.flags);
    for (const SegmentPlan& segment : subpath.segments) {
      const auto point = [&](std::size_t k) {
        return MakePoint<T>(segment.at[2 * k], segment.at[2 * k + 1]);
      };
      if (segment.curve) {
        path.Add(NODETYPE::kControl, point(1));
        path.Add(NODETYPE::kControl, point(2));
      }
      path.Add(
          static_cast<unsigned char>((segment.curve ? NODETYPE::kCurve : NODETYPE::kLine) | NODETYPE::kUser),
          point(0));
      ApplyFlags(path.types.back(), segment.flags);
    }
    if (!subpath.closed || subpath.segments.empty()) continue;
    path.points.back() = path.points[first];
    path.types[first].Set(NODETYPE::kClosed, true);
    path.types.back().Set(NODETYPE::kClosed, true);
    path.types.back().Set(NODETYPE::kUser, false);
    ApplyFlags(path.types.back(), subpath.flags);
  }
  return path;
}

}  // namespace detail

/// Well-formed paths of zero or more subpaths; few distinct coordinates, so that coincidences are common.
template <class T>
rc::Gen<Path<T>> GenPath(int range = 100) {
  const auto coordinate = rc::gen::inRange(-range, range + 1);
  const auto segment = rc::gen::build<detail::SegmentPlan>(
      rc::gen::set(&detail::SegmentPlan::curve), rc::gen::set(&detail::SegmentPlan::flags),
      rc::gen::set(&detail::SegmentPlan::at, rc::gen::container<std::vector<int>>(6, coordinate)));
  const auto subpath = rc::gen::build<detail::SubpathPlan>(
      rc::gen::set(&detail::SubpathPlan::closed), rc::gen::set(&detail::SubpathPlan::flags),
      rc::gen::set(&detail::SubpathPlan::x, coordinate), rc::gen::set(&detail::SubpathPlan::y, coordinate),
      rc::gen::set(&detail::SubpathPlan::segments,
                   rc::gen::container<std::vector<detail::SegmentPlan>>(segment)));
  return rc::gen::map(
      rc::gen::scale(0.15, rc::gen::container<std::vector<detail::SubpathPlan>>(subpath)),
      [](const std::vector<detail::SubpathPlan>& plan) { return detail::BuildPath<T>(plan); });
}

/// Runs a RapidCheck property inside a GoogleTest test.
template <class Property>
void CheckProperty(const char* what, Property property) {
  if (!rc::check(what, property)) ADD_FAILURE() << what;
}

}  // namespace test

template <class T>
struct rc::Arbitrary<test::Path<T>> {
  static rc::Gen<test::Path<T>> arbitrary() { return test::GenPath<T>(); }
};
