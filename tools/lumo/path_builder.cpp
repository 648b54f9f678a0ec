#include "path_builder.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "lumo/point_types.h"

namespace tool {

namespace {

using TavMath::DVector;

/// Ends this close, as a fraction of their coordinates, are one point. Relative commands add up rounding
/// errors of a few units in the last place per segment; a gap that somebody drew is at least a millionth.
constexpr double kSameEnd = 1e-11;

/// The widest arc, in radians of the unit circle, that one cubic stands for. On a circle the errors in length
/// cancel to 4e-10 with eighths; where an ellipse bends differently at both ends of a piece they do not, and
/// twelfths keep them to 2e-8 (eighths: 6e-7 at an axis ratio of 4).
constexpr double kWidestArcOfCircle = std::numbers::pi / 4;
constexpr double kWidestArcOfEllipse = std::numbers::pi / 6;

/// The handle length for an arc of the unit circle of 0 < angle <= pi / 2 under which the cubic and the arc
/// enclose the same area with the centre. With s = sin, c = cos of the angle the cubic's sector is
///   3/20 (4 h (1 - c) + 10/3 s - h^2 s),
/// set equal to angle / 2; the smaller root, in the form that does not cancel.
double HandleOfArc(double angle) {
  // Below this the difference between angle and sine has lost too many digits, and the usual handle is as
  // good.
  constexpr double kSmallArc = 0.01;
  if (angle < kSmallArc) return 4.0 / 3.0 * std::tan(angle / 4);
  const double s = std::sin(angle);
  const double bend = 2 * (1 - std::cos(angle));
  const double excess = 10.0 / 3.0 * (angle - s);
  return excess / (bend + std::sqrt(bend * bend - excess * s));
}

}  // namespace

bool SameEnd(DPoint a, DPoint b, double times) {
  const double size = std::max({std::abs(a.x), std::abs(a.y), std::abs(b.x), std::abs(b.y)});
  return std::max(std::abs(a.x - b.x), std::abs(a.y - b.y)) <= times * kSameEnd * size;
}

void PathBuilder::MoveTo(DPoint p) {
  current_ = start_ = p;
  open_ = false;
  moved_ = true;
}

void PathBuilder::Begin() {
  if (open_) return;
  open_ = true;
  moved_ = false;
  first_ = points_.size();
  Append(start_, NODETYPE::kMove | NODETYPE::kUser);
}

void PathBuilder::Append(DPoint p, unsigned char type) {
  points_.push_back(p);
  types_.push_back(type);
  current_ = p;
}

void PathBuilder::LineTo(DPoint p) {
  Begin();
  Append(p, NODETYPE::kLine | NODETYPE::kUser);
}

void PathBuilder::CubicTo(DPoint c1, DPoint c2, DPoint p) {
  Begin();
  Append(c1, NODETYPE::kControl);
  Append(c2, NODETYPE::kControl);
  Append(p, NODETYPE::kCurve | NODETYPE::kUser);
}

void PathBuilder::QuadraticTo(DPoint c, DPoint p) {
  constexpr double kTwoThirds = 2.0 / 3.0;
  const DPoint from = current_;
  CubicTo(from + kTwoThirds * (c - from), p + kTwoThirds * (c - p), p);
}

void PathBuilder::Arc(DPoint center, double rx, double ry, double rotation, double from, double turn,
                      DPoint last) {
  const double widest = std::abs(rx - ry) <= kSameEnd * rx ? kWidestArcOfCircle : kWidestArcOfEllipse;
  // A turn of exactly eight times the widest arc must not need nine because of rounding.
  constexpr double kRounding = 1e-9;
  const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(turn) / widest - kRounding)));
  const double step = turn / pieces;
  const double handle = std::copysign(HandleOfArc(std::abs(step)), step);
  const DVector xAxis{rx * std::cos(rotation), rx * std::sin(rotation)};
  const DVector yAxis{-ry * std::sin(rotation), ry * std::cos(rotation)};
  const auto at = [&](double angle) { return std::cos(angle) * xAxis + std::sin(angle) * yAxis; };
  const auto along = [&](double angle) {
    return handle * (std::cos(angle) * yAxis - std::sin(angle) * xAxis);
  };
  DVector radius = at(from);
  for (int k = 1; k <= pieces; ++k) {
    const double a0 = from + (k - 1) * step;
    const double a1 = from + k * step;
    const DVector next = at(a1);
    const DPoint end = k == pieces ? last : center + next;
    CubicTo(center + (radius + along(a0)), center + (next - along(a1)), end);
    radius = next;
  }
}

void PathBuilder::ArcTo(double rx, double ry, double degrees, bool largeArc, bool sweep, DPoint p) {
  const DPoint from = current_;
  if (from == p) return;
  rx = std::abs(rx);
  ry = std::abs(ry);
  if (rx == 0 || ry == 0) return LineTo(p);
  // Half the chord, in the axes of the ellipse and divided by its radii: there the ellipse is the unit
  // circle.
  const double rotation = std::fmod(degrees, 360.0) * (std::numbers::pi / 180);
  const double c = std::cos(rotation), s = std::sin(rotation);
  const DVector half = 0.5 * (from - p);
  DVector u{(c * half.x + s * half.y) / rx, (c * half.y - s * half.x) / ry};
  const double chord = TavMath::Length(u);
  if (chord > 1) {
    rx *= chord;
    ry *= chord;
    u = u * (1 / chord);
  }
  // The centre lies on the chord's bisector, at the distance that completes the radius.
  const double sqrd = std::min(1.0, TavMath::LengthSqrd(u));
  const double reach = sqrd > 0 ? std::sqrt((1 - sqrd) / sqrd) : 0;
  const double side = largeArc == sweep ? -reach : reach;
  const DVector m{side * u.y, -side * u.x};
  const DPoint middle = TavMath::Midpoint(from, p);
  const DPoint center{middle.x + c * rx * m.x - s * ry * m.y, middle.y + s * rx * m.x + c * ry * m.y};
  const double begin = std::atan2(u.y - m.y, u.x - m.x);
  const double end = std::atan2(-u.y - m.y, -u.x - m.x);
  constexpr double kTurn = 2 * std::numbers::pi;
  double turn = end - begin;
  if (sweep && turn < 0) turn += kTurn;
  if (!sweep && turn > 0) turn -= kTurn;
  if (!std::isfinite(turn) || turn == 0) return LineTo(p);
  Arc(center, rx, ry, rotation, begin, turn, p);
}

void PathBuilder::Ellipse(DPoint center, double rx, double ry) {
  const DPoint right{center.x + rx, center.y};
  const DPoint bottom{center.x, center.y + ry};
  const DPoint left{center.x - rx, center.y};
  const DPoint top{center.x, center.y - ry};
  MoveTo(right);
  // Quadrant by quadrant, so that the four extreme points are exact.
  constexpr double kQuadrant = std::numbers::pi / 2;
  Arc(center, rx, ry, 0, 0, kQuadrant, bottom);
  Arc(center, rx, ry, 0, kQuadrant, kQuadrant, left);
  Arc(center, rx, ry, 0, 2 * kQuadrant, kQuadrant, top);
  Arc(center, rx, ry, 0, 3 * kQuadrant, kQuadrant, right);
  Close();
}

void PathBuilder::Close() {
  if (!open_) {
    if (!moved_) return;
    // A start that is closed at once: a dot, which a round stroke shows.
    LineTo(start_);
  } else if (SameEnd(current_, start_)) {
    points_.back() = start_;
  } else {
    LineTo(start_);
  }
  types_[first_] |= NODETYPE::kClosed;
  // Of the two nodes at the seam, the user sees the first.
  types_.back() |= NODETYPE::kClosed;
  types_.back().Set(NODETYPE::kUser, false);
  current_ = start_;
  open_ = false;
}

}  // namespace tool
