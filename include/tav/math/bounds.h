#pragma once
#include <limits>

#include "lumo/export.h"

namespace TavMath {

/// A box of minimum and maximum coordinates. A default box is empty (minimum above maximum) and grows by Add.
template <class Scalar>
struct LUMO_TYPE BoundsT {
  /// The least and greatest coordinates.
  Scalar minx = (std::numeric_limits<Scalar>::max)();
  Scalar miny = (std::numeric_limits<Scalar>::max)();
  Scalar maxx = std::numeric_limits<Scalar>::lowest();
  Scalar maxy = std::numeric_limits<Scalar>::lowest();

  /// Whether it holds no point; a NaN counts as that.
  constexpr bool IsEmpty() const { return !(minx <= maxx && miny <= maxy); }
  /// The extents; meaningless for an empty box.
  constexpr Scalar Width() const { return maxx - minx; }
  constexpr Scalar Height() const { return maxy - miny; }
  /// Grows to hold a point; to hold a box, which may be empty.
  constexpr void Add(Scalar x, Scalar y) {
    minx = x < minx ? x : minx;
    maxx = x > maxx ? x : maxx;
    miny = y < miny ? y : miny;
    maxy = y > maxy ? y : maxy;
  }
  constexpr void Add(const BoundsT& b) {
    if (b.IsEmpty()) return;
    Add(b.minx, b.miny);
    Add(b.maxx, b.maxy);
  }
  /// Moves every edge outwards (inwards when negative).
  constexpr void Inflate(Scalar dx, Scalar dy) {
    minx -= dx;
    maxx += dx;
    miny -= dy;
    maxy += dy;
  }
  /// Edges count as inside.
  constexpr bool Contains(Scalar x, Scalar y) const {
    return minx <= x && x <= maxx && miny <= y && y <= maxy;
  }
  constexpr bool Contains(const BoundsT& b) const {
    return minx <= b.minx && b.maxx <= maxx && miny <= b.miny && b.maxy <= maxy;
  }
  /// Boxes that share an edge or a corner count as overlapping.
  constexpr bool Overlaps(const BoundsT& b) const {
    return minx <= b.maxx && b.minx <= maxx && miny <= b.maxy && b.miny <= maxy;
  }
  /// The same four numbers.
  friend constexpr bool operator==(const BoundsT& a, const BoundsT& b) {
    return a.minx == b.minx && a.miny == b.miny && a.maxx == b.maxx && a.maxy == b.maxy;
  }
};

}  // namespace TavMath
