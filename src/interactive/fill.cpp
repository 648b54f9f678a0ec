#include <algorithm>
#include <cmath>
#include <cstdint>

#include "interactive/candidates.h"
#include "interactive/ray_count.h"
#include "interactive/subpaths.h"
#include "interactive/tolerances.h"
#include "lumo/crv_hit.h"
#include "math/point_traits.h"
#include "math/roots.h"
#include "tav/math/cubic_bezier.h"
#include "tav/math/rect.h"

namespace {

using namespace Lumo::Interactive;
using Lumo::DPoint;
using Lumo::ToDouble;

tagRECT BoxOf(const tagPOINT* points, int first, int end) {
  return TavMath::GetPointsBBox(points + first, static_cast<std::size_t>(end - first));
}

/// Whether the outer rectangle contains the inner one: their union is the outer one.
bool Contains(const tagRECT& outer, const tagRECT& inner) {
  return outer.left <= inner.left && outer.top <= inner.top && inner.right <= outer.right &&
         inner.bottom <= outer.bottom;
}

/// The crossings of one row with a path whose subpaths are all closed, sorted; the leftmost ones when there
/// are more than the buffer holds. A piece counts when its ends lie on different sides of the row, ends on
/// the row counting as above it.
class RowCrossings {
 public:
  RowCrossings(const tagPOINT* points, const NODETYPE* types, int count, int row) noexcept : row_(row) {
    const auto code = [row](const tagPOINT& p) {
      return static_cast<unsigned char>((p.y < row) | (p.y >= row) << 1);
    };
    ForCandidates(points, types, count, 0, count, code, [&](int i) {
      if (types[i].IsLine()) {
        Add(ToDouble(points[i - 1]), ToDouble(points[i]));
      } else {
        AddCubic(points + (i - 1));
      }
      return true;
    });
    ForSubpaths(types, count, [&](int first, int end) {
      if (end - first >= 2) Add(ToDouble(points[end - 1]), ToDouble(points[first]));
      return true;
    });
  }

  /// The middle of the widest stretch inside that holds a grid point strictly, rounded, and the stretch's
  /// width; 0 when there is none. The stretch is gone then: the next call gives the next widest.
  double TakeWidest(int& x) noexcept {
    double best = 0;
    int at = -1;
    for (int k = 0; k + 1 < size_; k += 2) {
      const double low = std::floor(at_[k]) + 1, high = std::ceil(at_[k + 1]) - 1;
      if (low > high || !(at_[k + 1] - at_[k] > best)) continue;
      best = at_[k + 1] - at_[k];
      x = TavMath::RoundToInt(std::clamp(std::floor(0.5 * (at_[k] + at_[k + 1])), low, high));
      at = k;
    }
    if (at >= 0) at_[at + 1] = at_[at];
    return best;
  }

  /// Parts the stretches at nodes on the row, where the outline touches it or runs along it.
  void PartAtNodes(const tagPOINT* points, const NODETYPE* types, int count) noexcept {
    for (int i = 0; i < count; ++i) {
      if (points[i].y != row_ || !types[i].IsOnCurve()) continue;
      for (int end = 0; end < 2; ++end) AddAt(points[i].x);
    }
  }

 private:
  /// The curve itself, not its chords: between two roots of y(t) = row it stays on one side, and a root with
  /// the same side before and after is no crossing.
  void AddCubic(const tagPOINT* bezier) noexcept {
    DPoint p[4];
    Lumo::LoadCubic(bezier, p);
    const double height[4] = {p[0].y - row_, p[1].y - row_, p[2].y - row_, p[3].y - row_};
    double roots[3];
    const int n = TavMath::Roots::SolveCubic(height, roots);
    const bool ends = height[3] < 0;
    bool below = height[0] < 0;
    for (int k = 0; k < n; ++k) {
      const double between = k + 1 < n ? 0.5 * (roots[k] + roots[k + 1]) : 1;
      const bool after = k + 1 < n ? TavMath::CubicBezier::Evaluate(p, between).y < row_ : ends;
      if (after != below) AddAt(TavMath::CubicBezier::Evaluate(p, roots[k]).x);
      below = after;
    }
    if (below != ends) AddAt(std::abs(height[0]) < std::abs(height[3]) ? p[0].x : p[3].x);
  }

  void Add(const DPoint& a, const DPoint& b) noexcept {
    if ((a.y < row_) == (b.y < row_)) return;
    AddAt(a.x + (row_ - a.y) / (b.y - a.y) * (b.x - a.x));
  }

  void AddAt(double x) noexcept {
    double* const place = std::upper_bound(at_, at_ + size_, x);
    if (place == at_ + kFaceCrossings) return;
    size_ = std::min(size_ + 1, kFaceCrossings);
    std::move_backward(place, at_ + size_ - 1, at_ + size_);
    *place = x;
  }

  int row_;
  int size_ = 0;
  double at_[kFaceCrossings];
};

/// The k-th of n rows in an order that soon covers them all evenly: bits of k reversed (van der Corput,
/// 1935).
std::int64_t RowOrder(int k, std::int64_t n) {
  double fraction = 0;
  double digit = 0.5;
  for (unsigned bits = static_cast<unsigned>(k) + 1; bits != 0; bits >>= 1, digit *= 0.5)
    if ((bits & 1) != 0) fraction += digit;
  return static_cast<std::int64_t>(fraction * static_cast<double>(n));
}

/// The middle of the widest stretch of the candidate's row that is wider than `least` and whose middle lies
/// inside; its width, or 0.
double WidestInside(const tagPOINT* points, const NODETYPE* types, int count, double least,
                    tagPOINT& candidate) noexcept {
  const auto isInside = [&] {
    int inside = 0;
    return UTLIsPointInFill(points, types, count, candidate, &inside) != 0 && inside != 0;
  };
  const auto next = [&](RowCrossings& row) {
    int x = 0;
    const double width = row.TakeWidest(x);
    candidate.x = x;
    return width;
  };
  RowCrossings row(points, types, count, candidate.y);
  double width = next(row);
  if (!(width > least) || isInside()) return width;
  // On the outline: a stretch beside it may do.
  RowCrossings parted(points, types, count, candidate.y);
  parted.PartAtNodes(points, types, count);
  for (int k = 0; k < kFaceTries; ++k) {
    width = next(parted);
    if (!(width > least) || isInside()) return width;
  }
  return 0;
}

}  // namespace

int UTLIsPointInFill(const tagPOINT* points, const NODETYPE* types, int count, tagPOINT point,
                     int* inside) noexcept {
  RayCount ray(point);
  if (points != nullptr && types != nullptr && count > 0) {
    if (!ray.AddSegments(points, types, count, 0, count)) return 0;
    const bool off =
        ForSubpaths(types, count, [&](int first, int end) { return ray.AddClosingLine(points, first, end); });
    if (!off) return 0;
  }
  if (inside != nullptr) *inside = ray.IsInside();
  return 1;
}

int UTLIsSubpathHole_Ex(const tagPOINT* points, const NODETYPE* types, int count, int first,
                        int offset) noexcept {
  const std::int64_t node = std::int64_t{first} + offset;
  if (!points || !types || first < 0 || first >= count || node < 0 || node >= count) return 0;
  const tagRECT box = BoxOf(points, first, NextMove(types, count, first));
  bool hole = false;
  ForSubpaths(types, count, [&](int other, int end) {
    if (other == first || !types[other].IsClosed() || !Contains(BoxOf(points, other, end), box)) return true;
    RayCount ray(points[node]);
    const bool off =
        ray.AddSegments(points, types, count, other, end) && ray.AddClosingLine(points, other, end);
    hole ^= off && ray.IsInside();
    return true;
  });
  return hole;
}

int UTLIsSubpathHole(const tagPOINT* points, const NODETYPE* types, int count, int first) noexcept {
  return UTLIsSubpathHole_Ex(points, types, count, first, 0);
}

int UTLGetFacePoint(const tagPOINT* points, const NODETYPE* types, int count, tagPOINT* out) noexcept {
  if (!points || !types || !out || count < 3) return 0;
  const tagRECT box = BoxOf(points, 0, count);
  const std::int64_t rows = std::int64_t{box.bottom} - box.top - 1;  // strictly between the two
  const bool all = rows <= kFaceRows;  // then every row is looked at and the widest of all is taken
  double best = 0;
  int finds = 0;
  for (int k = 0; k < kFaceRows && k < rows && (all || finds < kFaceFinds); ++k) {
    const std::int64_t row = all ? k : RowOrder(k, rows);
    const auto y = static_cast<int>(box.top + 1 + row);
    tagPOINT candidate{0, y};
    const double width = WidestInside(points, types, count, best, candidate);
    if (!(width > best)) continue;
    best = width;
    *out = candidate;
    ++finds;
  }
  return best > 0;
}
