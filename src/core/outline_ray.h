#pragma once
// How the horizontal line through a point meets an outline: the fill test of lines and cubics without
// flattening.
//
// An end of a segment counts as below the point's height when its y is less, and as above otherwise, so that
// a ray through a vertex meets each of two segments that pass through the height exactly once, and a segment
// along the ray not at all. A cubic is halved until each part is decided by its ends alone (its control box
// lies beside, above or below the point, or the point outside the strip that the part shares with its chord),
// so the answer depends only on where the ends of its parts lie, and neighbouring parts always agree about a
// shared end.

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

#include "core/closest.h"
#include "lumo/point_types.h"
#include "math/point_traits.h"
#include "math/simd.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {

/// Feed the segments of closed outlines in any order.
template <class T>
class OutlineRay {
 public:
  /// bothSides: also find out whether the point is surrounded.
  explicit OutlineRay(const T& point, bool bothSides = false) noexcept
      : stored_(point), point_(ToDouble(point)), bothSides_(bothSides) {}

  /// Whether the point lies on one of the segments.
  bool IsOnOutline() const noexcept { return on_; }
  /// The even-odd answer.
  bool IsInside() const noexcept { return on_ || odd_; }
  /// Whether segments cross the point's height on both of its sides.
  bool IsSurrounded() const noexcept { return on_ || (left_ && right_); }

  void AddLine(const T& a, const T& b) noexcept {
    const bool below = a.y < stored_.y;
    if (below == (b.y < stored_.y)) {
      // Level with the ray, or touching the height from above: no crossing, but the point may lie on it.
      if (a.y == stored_.y && b.y == stored_.y)
        on_ |= std::min(a.x, b.x) <= stored_.x && stored_.x <= std::max(a.x, b.x);
      on_ |= a == stored_ || b == stored_;
      return;
    }
    if (std::min(a.x, b.x) > stored_.x) return Count(true);
    if (std::max(a.x, b.x) < stored_.x) return Count(false);
    const double cross = LineCross(a, b, stored_);
    if (cross == 0) {
      on_ = true;
    } else {
      Count((cross > 0) == below);  // the point lies left of a rising line, or right of a falling one
    }
  }

  void AddCubic(const T* p) noexcept {
    if constexpr (std::is_same_v<T, DPoint>) {
      Add(p, kMaxDepth);
    } else {
      DPoint bezier[4];
      LoadCubic(p, bezier);
      Add(bezier, kMaxDepth);
    }
  }

 private:
  /// Halvings of a cubic: more than the bits of a double's fraction, so that a part then is one place.
  static constexpr int kMaxDepth = 64;
  static constexpr double kReach = std::numeric_limits<double>::max() / 8;
  /// A part no larger than this, relative to the cubic's coordinates, is one place: halving it further only
  /// rounds.
  static constexpr double kRounding = 4 * std::numeric_limits<double>::epsilon();

  void Count(bool right) noexcept {
    odd_ ^= right;
    right_ |= right;
    left_ |= !right;
  }

  /// A part of a cubic. Most are told by their boxes, without a call.
  void Add(const DPoint p[4], int depth) noexcept {
    using namespace TavMath;
    const auto pair = [p](int k) { return TwoDoubles{p[k].x, p[k].y}; };
    const TwoDoubles low = Lesser(Lesser(pair(0), pair(1)), Lesser(pair(2), pair(3)));
    const TwoDoubles high = Greater(Greater(pair(0), pair(1)), Greater(pair(2), pair(3)));
    const double minX = low[0], minY = low[1], maxX = high[0], maxY = high[1];
    if (!(minY <= point_.y && point_.y <= maxY)) return;
    if (minX > point_.x || maxX < point_.x) {
      AddBeside(p, minX > point_.x);
    } else if (!on_) {
      AddAround(p, depth, {maxX - minX, maxY - minY});
    }
  }

  /// A part whose box holds the point.
  [[gnu::noinline]] void AddAround(const DPoint p[4], int depth, DVector size) noexcept {
    if (depth == kMaxDepth) {
      double most = 0, sum = 0;
      for (int k = 0; k < 4; ++k) {
        most = std::max({most, std::abs(p[k].x), std::abs(p[k].y)});
        sum += std::abs(p[k].x) + std::abs(p[k].y);
      }
      // Halving needs sums that stay finite; a curve without them encloses nothing that could be told.
      if (!(sum < kReach)) return;
      onePlace_ = kRounding * most;
    }
    const bool onePlace = depth == 0 || (size.x <= onePlace_ && size.y <= onePlace_);
    if (onePlace || p[0] == point_ || p[3] == point_) {
      on_ = true;
      return;
    }
    if (!bothSides_ && AddAsChord(p, onePlace_ * (size.x + size.y))) return;
    DPoint half[7];
    TavMath::CubicBezier::Split(0.5, p, half, half + 3);
    Add(half, depth - 1);
    Add(half + 3, depth - 1);
  }

  /// A part and its chord lie in the strip along the chord that holds the control points. For a point outside
  /// the strip they make the same turn, and the ray meets both an even or both an odd number of times.
  /// `rounding` is what the sides of points in the part's box may be wrong by.
  bool AddAsChord(const DPoint p[4], double rounding) noexcept {
    const DVector chord = p[3] - p[0];
    const double side = TavMath::Cross(chord, point_ - p[0]);
    const double side1 = TavMath::Cross(chord, p[1] - p[0]), side2 = TavMath::Cross(chord, p[2] - p[0]);
    const double low = std::min({0.0, side1, side2}), high = std::max({0.0, side1, side2});
    if (!(side < low - 2 * rounding || side > high + 2 * rounding)) return false;
    const bool below = p[0].y < point_.y;
    if (below != (p[3].y < point_.y)) Count((side > 0) == below);
    return true;
  }

  /// The whole part lies on one side of the point.
  void AddBeside(const DPoint p[4], bool right) noexcept {
    if ((p[0].y < point_.y) != (p[3].y < point_.y)) return Count(right);
    // Both ends on the same side of the height: an even number of crossings, which only being surrounded asks
    // for.
    if (!bothSides_ || (right ? right_ : left_)) return;
    double t[2];
    const int turns = TavMath::CubicBezier::GetHorizontalTangents(p, t);
    for (int k = 0; k < turns; ++k) {
      const bool below = TavMath::CubicBezier::Evaluate(p, t[k]).y < point_.y;
      if (below != (p[0].y < point_.y)) (right ? right_ : left_) = true;
    }
  }

  T stored_;
  DPoint point_;
  bool bothSides_;
  double onePlace_ = 0;
  bool on_ = false;
  bool odd_ = false;
  bool left_ = false;
  bool right_ = false;
};

}  // namespace Lumo
