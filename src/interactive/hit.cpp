#include <cstdint>
#include <limits>
#include <new>

#include "interactive/candidates.h"
#include "interactive/rect_test.h"
#include "interactive/tolerances.h"
#include "lumo/crv_hit.h"
#include "math/point_traits.h"
#include "tav/math/cubic_bezier.h"
#include "tav/math/rect.h"

namespace {

using namespace Lumo::Interactive;
using Lumo::DPoint;
using Lumo::ToDouble;

/// Where the foot of the cursor lies on the line a-b; the largest double, which no clamp accepts, when the
/// line has no length.
double LineParameter(const tagPOINT& a, const tagPOINT& b, const tagPOINT& cursor) {
  const TavMath::DVector along = ToDouble(b) - ToDouble(a);
  const double lengthSqrd = TavMath::LengthSqrd(along);
  if (!(lengthSqrd > 0)) return std::numeric_limits<double>::max();
  return TavMath::Dot(ToDouble(cursor) - ToDouble(a), along) / lengthSqrd;
}

void WriteCurveParameter(const tagPOINT* bezier, const tagRECT& rect, const tagPOINT& cursor, double* tOut) {
  DPoint p[4], nearest;
  Lumo::LoadCubic(bezier, p);
  double t = 0, distanceSqrd = 0;
  const RectCode code(rect);
  if (TavMath::CubicBezier::FindClosestPointOnBezier(p, ToDouble(cursor), t, nearest, distanceSqrd)) {
    *tOut = t;
  } else if (code(bezier[0]) == 0) {
    *tOut = 0;
  } else if (code(bezier[3]) == 0) {
    *tOut = 1;
  }
}

/// The rectangle as a test of one unsigned comparison per coordinate, for blocks of points.
class PointInRect {
 public:
  explicit PointInRect(const tagRECT& rect) noexcept
      : left_(static_cast<std::uint32_t>(rect.left)),
        low_(static_cast<std::uint32_t>(std::min(rect.top, rect.bottom))),
        width_(static_cast<std::uint32_t>(rect.right) - left_),
        height_(static_cast<std::uint32_t>(std::max(rect.top, rect.bottom)) - low_),
        empty_(rect.left > rect.right) {}
  bool IsEmpty() const noexcept { return empty_; }
  bool operator()(const tagPOINT& p) const noexcept {
    return (static_cast<std::uint32_t>(p.x) - left_ <= width_) &
           (static_cast<std::uint32_t>(p.y) - low_ <= height_);
  }

 private:
  std::uint32_t left_, low_, width_, height_;
  bool empty_;
};

/// Calls visit(i) for each user node or shown handle in the rectangle, in index order; false ends the walk.
template <class Visit>
void ForNodesInRect(const tagRECT* rect, const tagPOINT* points, const NODETYPE* types, int count,
                    Visit visit) {
  if (!rect || !points || !types) return;
  const PointInRect inside(*rect);
  if (inside.IsEmpty()) return;
  constexpr int kBlock = 256;
  for (int k = 0; k < count;) {
    const int end = count - k > kBlock ? k + kBlock : count;
    unsigned any = 0;
    for (int i = k; i < end; ++i) any |= static_cast<unsigned>(inside(points[i]));
    for (int i = k; any != 0 && i < end; ++i)
      if (types[i].IsUser() && inside(points[i]) && !visit(i)) return;
    k = end;
  }
}

}  // namespace

int CRV_BezierIntersectsRect(const tagPOINT* bezier, const tagRECT* rect, double tolerance) noexcept {
  if (!bezier || !rect || !HullTouchesRect(bezier, *rect)) return 0;
  DPoint p[4], polyline[kPickPoints];
  Lumo::LoadCubic(bezier, p);
  const int pieces = TavMath::AdaptiveBezierToLines(p, polyline, tolerance * tolerance, kPickPoints);
  return PiecesTouchRect(polyline, pieces, *rect);
}

int CRV_PathHit(const tagRECT* rect, const tagPOINT* cursor, double* tOut, const tagPOINT* points,
                const NODETYPE* types, int count, int clamp) noexcept {
  if (!rect || !points || !types || count < 1) return -1;
  const bool wantsParameter = tOut != nullptr && cursor != nullptr;
  int hit = -1;
  ForCandidates(points, types, count, 0, count, RectCode(*rect), [&](int i) {
    if (types[i].IsLine()) {
      if (!SegmentTouchesRect(points[i - 1], points[i], *rect)) return true;
      if (wantsParameter) {
        // Written before the clamp decides: a line that is passed over leaves its parameter behind.
        *tOut = LineParameter(points[i - 1], points[i], *cursor);
        if (clamp != 0 && !(*tOut >= 0 && *tOut <= 1)) return true;
      }
      hit = i;
      return false;
    }
    // The clamp does not apply: the nearest point of a curve always lies on it.
    if (!CRV_BezierIntersectsRect(points + (i - 1), rect, kPickTolerance)) return true;
    if (wantsParameter) WriteCurveParameter(points + (i - 1), *rect, *cursor, tOut);
    hit = i + 2;
    return false;
  });
  return hit;
}

int CRV_NodeHit(const tagRECT* rect, const tagPOINT* points, const NODETYPE* types, int count) noexcept {
  int node = -1, handle = -1;
  ForNodesInRect(rect, points, types, count, [&](int i) {
    if (types[i].IsOnCurve()) return node = i, false;
    if (handle < 0) handle = i;
    return true;
  });
  return node >= 0 ? node : handle;
}

std::vector<int> CRV_NodeHitAll(const tagRECT* rect, const tagPOINT* points, const NODETYPE* types,
                                int count) noexcept {
  std::vector<int> hits;
  try {
    ForNodesInRect(rect, points, types, count, [&](int i) { return hits.push_back(i), true; });
  } catch (const std::bad_alloc&) {
    hits.clear();
  }
  return hits;
}

int UTLIsRectOnPath(const tagPOINT* points, const NODETYPE* types, int count, const tagRECT* rect) noexcept {
  if (!rect || !points || !types || count < 1) return 0;
  return !ForCandidates(points, types, count, 0, count, RectCode(*rect), [&](int i) {
    if (types[i].IsLine()) return !SegmentTouchesRect(points[i - 1], points[i], *rect);
    const tagPOINT* const bezier = points + (i - 1);
    if (!HullTouchesRect(bezier, *rect)) return true;
    DPoint p[4], polyline[kFillPieces + 1];
    Lumo::LoadCubic(bezier, p);
    const tagRECT box = TavMath::GetPointsBBox(bezier, 4);
    const int pieces =
        TavMath::BezierToLines(p, polyline, TavMath::CalculateNumBezierLines(box, kFillPieces));
    return !PiecesTouchRect(polyline, pieces, *rect);
  });
}
