#include <algorithm>
#include <cmath>

#include "lumo/shapes.h"
#include "math/point_traits.h"
#include "polycurve/arc_pieces.h"
#include "polycurve/tolerances.h"
#include "tav/math/angle.h"
#include "tav/math/matrix.h"

namespace Lumo {
namespace {

constexpr int kMaxPieces = 5;

bool IsQuarterBoundary(double angle) {
  return std::abs(angle - std::round(angle / kQuarterTurn) * kQuarterTurn) <= kAngleRounding;
}

/// The point of the unit circle; exact at the quarter turns, where a cosine would leave a trace of a zero.
DPoint UnitPoint(double angle) {
  if (!IsQuarterBoundary(angle)) return TavMath::AsPoint(TavMath::Radians::AngleToVector(angle));
  constexpr DPoint kAxes[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
  return kAxes[static_cast<int>(std::round(angle / kQuarterTurn)) & 3];
}

/// Where the arc begins (in [0, 2 pi)) and how far it goes (more than 0, at most a turn).
struct Sweep {
  double start;
  double end;
  bool fullTurn;
};

Sweep FindSweep(double startAngle, double endAngle) {
  const double start = TavMath::Radians::NormalizeAngle(startAngle);
  if (startAngle == endAngle) return {start, start + kFullTurn, true};
  // A whole turn, as the caller's own rounding leaves it, must neither vanish nor begin a second one.
  double end = endAngle;
  if (end <= start) {
    if (start - end >= kFullTurn) end = start - std::fmod(start - end, kFullTurn);
    end += kFullTurn;
    if (end - start < kFullTurnSlack) end += kFullTurn;
  } else if (end - start > kFullTurn + kFullTurnSlack) {
    end = start + std::fmod(end - start - kFullTurnSlack, kFullTurn) + kFullTurnSlack;
  }
  end = std::min(end, start + kFullTurn);
  return {start, end, std::abs(start + kFullTurn - end) <= kAngleRounding};
}

/// The shape on the unit circle, node by node.
struct UnitShape {
  DPoint points[kMaxPieNodes];
  NODETYPE types[kMaxPieNodes];
  std::size_t count = 0;

  void Add(const DPoint& p, int type) {
    points[count] = p;
    types[count++] = static_cast<unsigned char>(type);
  }
};

void AddArc(UnitShape& shape, const Sweep& sweep, bool userOnEnd) {
  constexpr int kJoint = NODETYPE::kCurve | NODETYPE::kSmooth;
  const double firstQuarter = std::floor(sweep.start / kQuarterTurn);
  double from = sweep.start;
  bool wholeBefore = false;  // the piece before began at a quarter boundary
  for (int j = 1; j <= kMaxPieces && from < sweep.end; ++j) {
    const double to = std::min((firstQuarter + j) * kQuarterTurn, sweep.end);
    const bool onlyPiece = from == sweep.start && to == sweep.end;
    if (to - from <= kAngleRounding && !onlyPiece) continue;
    const double f = ArcHandleFactor(to - from);
    const DPoint p0 = shape.points[shape.count - 1], p1 = UnitPoint(to);
    if (wholeBefore && IsQuarterBoundary(to)) {
      shape.types[shape.count - 1].SetContinuity(ContinuityType::symmetric);
    }
    shape.Add({p0.x - f * p0.y, p0.y + f * p0.x}, NODETYPE::kControl);
    shape.Add({p1.x + f * p1.y, p1.y - f * p1.x}, NODETYPE::kControl);
    shape.Add(p1, userOnEnd ? kJoint : kJoint | NODETYPE::kUser);
    wholeBefore = IsQuarterBoundary(from);
    from = to;
  }
}

/// The bytes of the nodes at the ends, and what a wedge adds.
void FinishPie(UnitShape& shape, bool userOnEnd) {
  shape.types[0] = NODETYPE::kMove | NODETYPE::kClosed;
  shape.types[0].Set(NODETYPE::kUser, !userOnEnd);
  // The arc meets the closing line at a corner that the user sees, also where the inner arc nodes are hidden.
  shape.types[shape.count - 1] = NODETYPE::kCurve | NODETYPE::kUser;
  shape.Add({0, 0}, NODETYPE::kLine | NODETYPE::kClosed);
}

void FinishEllipse(UnitShape& shape, const Sweep& sweep) {
  const auto continuity = IsQuarterBoundary(sweep.end) ? ContinuityType::symmetric : ContinuityType::smooth;
  shape.types[0] = NODETYPE::kMove | NODETYPE::kClosed | NODETYPE::kUser;
  shape.types[shape.count - 1] = NODETYPE::kCurve | NODETYPE::kClosed;
  shape.types[0].SetContinuity(continuity);
  shape.types[shape.count - 1].SetContinuity(continuity);
  shape.points[shape.count - 1] = shape.points[0];
}

void FinishArc(UnitShape& shape) {
  shape.types[0] = NODETYPE::kMove | NODETYPE::kUser;
  shape.types[shape.count - 1] = NODETYPE::kCurve | NODETYPE::kUser;
}

bool AllFinite(std::initializer_list<double> values) {
  return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

}  // namespace

template <class T>
std::size_t BuildLine(T* points, NODETYPE* types, const DPoint& a, const DPoint& b) noexcept {
  if (!points || !types || !AllFinite({a.x, a.y, b.x, b.y})) return 0;
  points[0] = FromDouble<T>(a);
  points[1] = FromDouble<T>(b);
  types[0] = NODETYPE::kMove | NODETYPE::kUser;
  types[1] = NODETYPE::kLine | NODETYPE::kUser;
  return 2;
}

template <class T>
std::size_t BuildEllipse(T* points, NODETYPE* types, const DPoint& center, double rx, double ry,
                         double startAngle, double endAngle, bool pie, bool userOnEnd) noexcept {
  if (!points || !types || !AllFinite({center.x, center.y, rx, ry, startAngle, endAngle})) return 0;
  const Sweep sweep = FindSweep(startAngle, endAngle);
  UnitShape shape;
  if (pie) shape.Add({0, 0}, NODETYPE::kMove);
  shape.Add(UnitPoint(sweep.start), NODETYPE::kLine | NODETYPE::kUser);
  AddArc(shape, sweep, userOnEnd);
  if (pie) {
    FinishPie(shape, userOnEnd);
  } else if (sweep.fullTurn) {
    FinishEllipse(shape, sweep);
  } else {
    FinishArc(shape);
  }
  TavMath::ConstructMatrix({rx, 0}, {0, ry}, center).TransformPoints(shape.points, shape.count);
  for (std::size_t k = 0; k < shape.count; ++k) {
    points[k] = FromDouble<T>(shape.points[k]);
    types[k] = shape.types[k];
  }
  return shape.count;
}

template <class T>
void BuildCircle(T* points, NODETYPE* types, const DPoint& center, double r) noexcept {
  BuildEllipse(points, types, center, r, r, 0, 0, false, false);
}

LUMO_SHAPE_ELLIPSE(LUMO_INSTANTIATE, tagPOINT)
LUMO_SHAPE_ELLIPSE(LUMO_INSTANTIATE, TavMath::DPoint)

}  // namespace Lumo
