#include <algorithm>
#include <limits>
#include <type_traits>

#include "boolean/engine.h"
#include "lumo/boolean.h"
#include "math/point_traits.h"

namespace Lumo {
namespace {

using Planar::InsideRule;
using Planar::Outcome;
using Planar::PathView;
using Planar::Request;

/// How often a result of integer points is rounded and cleaned: rounding may make outlines cross by a unit,
/// and the crossing has to be rounded again. It settles after one or two in all but contrived drawings.
constexpr int kRoundingPasses = 3;

InsideRule RuleOf(FillRule rule) {
  switch (rule) {
    case FillRule::evenOdd:
      return {InsideRule::Kind::evenOdd};
    case FillRule::nonZero:
      return {InsideRule::Kind::nonZero};
    case FillRule::positive:
      return {InsideRule::Kind::positive};
  }
  return {};
}

/// Path arrays of doubles: a view of a path, or a copy of one.
struct Shape {
  std::vector<DPoint> points;
  std::vector<NODETYPE> types;

  PathView View(int operand, bool open) const {
    return {points.data(), types.data(), static_cast<int>(points.size()), operand, open};
  }
};

template <class T>
int CountOf(const PolycurveT<T>& path) {
  constexpr std::size_t kMost = (std::numeric_limits<int>::max)() / 8;
  return static_cast<int>((std::min)(path.GetPointCount(), kMost));
}

template <class T>
Shape ShapeOf(const PolycurveT<T>& path) {
  Shape shape;
  const int n = CountOf(path);
  shape.points.reserve(static_cast<std::size_t>(n));
  for (int i = 0; i < n; ++i) shape.points.push_back(ToDouble(path.GetPoints()[i]));
  shape.types.assign(path.GetNodeTypes(), path.GetNodeTypes() + n);
  return shape;
}

/// An operand: double paths are read in place.
template <class T>
class Operand {
 public:
  explicit Operand(const PolycurveT<T>& path) : path_(path) {
    if constexpr (!std::is_same_v<T, DPoint>) copy_ = ShapeOf(path);
  }
  PathView View(int operand, bool open = false) const {
    if constexpr (std::is_same_v<T, DPoint>) {
      return {path_.GetPoints(), path_.GetNodeTypes(), CountOf(path_), operand, open};
    } else {
      return copy_.View(operand, open);
    }
  }

 private:
  const PolycurveT<T>& path_;
  Shape copy_;
};

void Round(std::vector<DPoint>& points) {
  for (DPoint& p : points) p = ToDouble(FromDouble<tagPOINT>(p));
}

/// The result as a path. Integer points: rounded, then cleaned of the crossings that this made, and so on.
template <class T>
PolycurveT<T> ToPath(Outcome outcome) {
  if constexpr (std::is_same_v<T, DPoint>) {
    PolycurveT<T> path;
    path.SetPoints(std::move(outcome.points), std::move(outcome.types));
    return path;
  } else {
    bool computed = outcome.computed;
    for (int pass = 0; computed && pass < kRoundingPasses; ++pass) {
      Round(outcome.points);
      const Shape rounded{std::move(outcome.points), std::move(outcome.types)};
      outcome =
          Planar::Run({{rounded.View(0, true)}, {{}, {}, Planar::kOnlyA}, {}, Planar::OpenParts::keepAll});
      computed = outcome.computed;
    }
    std::vector<T> points;
    points.reserve(outcome.points.size());
    for (const DPoint& p : outcome.points) points.push_back(FromDouble<T>(p));
    PolycurveT<T> path;
    path.SetPoints(std::move(points), std::move(outcome.types));
    return path;
  }
}

template <class T>
PolycurveT<T> Combine(const PolycurveT<T>& a, const PolycurveT<T>& b, unsigned truth, FillRule ruleA,
                      FillRule ruleB) noexcept {
  try {
    const Operand<T> first(a), second(b);
    return ToPath<T>(Planar::Run({{first.View(0), second.View(1)}, {RuleOf(ruleA), RuleOf(ruleB), truth}}));
  } catch (...) {
    return {};
  }
}

/// The operation over a list, as a tree of pairs: every level handles all nodes once.
template <class T>
class ListOperation {
 public:
  ListOperation(const std::vector<PolycurveT<T>>& paths, unsigned truth, FillRule rule)
      : paths_(paths), truth_(truth), rule_(RuleOf(rule)) {}

  Outcome Run(std::size_t first, std::size_t last) const {
    if (last - first == 1) {
      const Operand<T> only(paths_[first]);
      return Planar::Run({{only.View(0)}, {rule_, {}, Planar::kOnlyA}});
    }
    if (last - first == 2) {
      const Operand<T> a(paths_[first]), b(paths_[first + 1]);
      return Planar::Run({{a.View(0), b.View(1)}, {rule_, rule_, truth_}});
    }
    const std::size_t middle = first + (last - first) / 2;
    return Join(Run(first, middle), Run(middle, last), truth_);
  }

  static Outcome Join(Outcome a, Outcome b, unsigned truth) {
    const Shape first{std::move(a.points), std::move(a.types)},
        second{std::move(b.points), std::move(b.types)};
    Outcome joined = Planar::Run({{first.View(0, false), second.View(1, false)}, {{}, {}, truth}});
    joined.computed |= a.computed || b.computed;
    return joined;
  }

 private:
  const std::vector<PolycurveT<T>>& paths_;
  unsigned truth_;
  InsideRule rule_;
};

template <class T>
PolycurveT<T> CombineList(const std::vector<PolycurveT<T>>& paths, unsigned truth, FillRule rule) noexcept {
  try {
    if (paths.empty()) return {};
    return ToPath<T>(ListOperation<T>(paths, truth, rule).Run(0, paths.size()));
  } catch (...) {
    return {};
  }
}

}  // namespace

template <class T>
PolycurveT<T> Union(const PolycurveT<T>& a, const PolycurveT<T>& b, FillRule ruleA, FillRule ruleB) noexcept {
  return Combine(a, b, Planar::kUnion, ruleA, ruleB);
}

template <class T>
PolycurveT<T> Intersect(const PolycurveT<T>& a, const PolycurveT<T>& b, FillRule ruleA,
                        FillRule ruleB) noexcept {
  return Combine(a, b, Planar::kIntersection, ruleA, ruleB);
}

template <class T>
PolycurveT<T> Subtract(const PolycurveT<T>& a, const PolycurveT<T>& b, FillRule ruleA,
                       FillRule ruleB) noexcept {
  return Combine(a, b, Planar::kDifference, ruleA, ruleB);
}

template <class T>
PolycurveT<T> Xor(const PolycurveT<T>& a, const PolycurveT<T>& b, FillRule ruleA, FillRule ruleB) noexcept {
  return Combine(a, b, Planar::kExclusive, ruleA, ruleB);
}

template <class T>
PolycurveT<T> Union(const std::vector<PolycurveT<T>>& paths, FillRule rule) noexcept {
  return CombineList(paths, Planar::kUnion, rule);
}

template <class T>
PolycurveT<T> Intersect(const std::vector<PolycurveT<T>>& paths, FillRule rule) noexcept {
  return CombineList(paths, Planar::kIntersection, rule);
}

template <class T>
PolycurveT<T> Subtract(const std::vector<PolycurveT<T>>& paths, FillRule rule) noexcept {
  if (paths.size() < 2) return CombineList(paths, Planar::kUnion, rule);
  try {
    const ListOperation<T> unite(paths, Planar::kUnion, rule);
    return ToPath<T>(
        ListOperation<T>::Join(unite.Run(0, 1), unite.Run(1, paths.size()), Planar::kDifference));
  } catch (...) {
    return {};
  }
}

template <class T>
PolycurveT<T> Xor(const std::vector<PolycurveT<T>>& paths, FillRule rule) noexcept {
  return CombineList(paths, Planar::kExclusive, rule);
}

template <class T>
PolycurveT<T> ClipToShape(const PolycurveT<T>& path, const PolycurveT<T>& shape, bool keepInside,
                          FillRule rulePath, FillRule ruleShape) noexcept {
  try {
    const Operand<T> first(path), second(shape);
    Request request{
        {first.View(0, true), second.View(1)},
        {RuleOf(rulePath), RuleOf(ruleShape), keepInside ? Planar::kIntersection : Planar::kDifference}};
    request.openParts = keepInside ? Planar::OpenParts::keepInsideB : Planar::OpenParts::keepOutsideB;
    return ToPath<T>(Planar::Run(request));
  } catch (...) {
    return {};
  }
}

template <class T>
PolycurveT<T> Simplify(const PolycurveT<T>& path, FillRule rule) noexcept {
  try {
    const Operand<T> only(path);
    return ToPath<T>(Planar::Run({{only.View(0)}, {RuleOf(rule), {}, Planar::kOnlyA}}));
  } catch (...) {
    return {};
  }
}

template <class T>
PolycurveT<T> PolycurveT<T>::Union(const PolycurveT& other, FillRule rule) const noexcept {
  return Lumo::Union(*this, other, rule, rule);
}

template <class T>
PolycurveT<T> PolycurveT<T>::Intersect(const PolycurveT& other, FillRule rule) const noexcept {
  return Lumo::Intersect(*this, other, rule, rule);
}

template <class T>
PolycurveT<T> PolycurveT<T>::Subtract(const PolycurveT& other, FillRule rule) const noexcept {
  return Lumo::Subtract(*this, other, rule, rule);
}

template <class T>
PolycurveT<T> PolycurveT<T>::Xor(const PolycurveT& other, FillRule rule) const noexcept {
  return Lumo::Xor(*this, other, rule, rule);
}

template <class T>
PolycurveT<T> PolycurveT<T>::ClipToShape(const PolycurveT& shape, bool keepInside,
                                         FillRule rule) const noexcept {
  return Lumo::ClipToShape(*this, shape, keepInside, rule, rule);
}

template <class T>
PolycurveT<T> PolycurveT<T>::Simplify(FillRule rule) const noexcept {
  return Lumo::Simplify(*this, rule);
}

LUMO_BOOLEAN(LUMO_INSTANTIATE, tagPOINT)
LUMO_BOOLEAN(LUMO_INSTANTIATE, TavMath::DPoint)

#define LUMO_BOOLEAN_MEMBERS(T)                                                                           \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::Union(const PolycurveT<T>&, FillRule) const noexcept;     \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::Intersect(const PolycurveT<T>&, FillRule) const noexcept; \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::Subtract(const PolycurveT<T>&, FillRule) const noexcept;  \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::Xor(const PolycurveT<T>&, FillRule) const noexcept;       \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::ClipToShape(const PolycurveT<T>&, bool, FillRule)         \
      const noexcept;                                                                                     \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::Simplify(FillRule) const noexcept;
LUMO_BOOLEAN_MEMBERS(tagPOINT)
LUMO_BOOLEAN_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
