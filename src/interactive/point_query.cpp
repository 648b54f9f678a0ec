#include <algorithm>
#include <cmath>
#include <limits>

#include "core/closest.h"
#include "interactive/candidates.h"
#include "lumo/crv_hit.h"
#include "math/point_traits.h"
#include "tav/math/cubic_bezier.h"
#include "tav/math/rect.h"

namespace {

using namespace Lumo::Interactive;
using Lumo::DPoint;
using Lumo::DVector;
using Lumo::ToDouble;

/// How deep the length of one curve may subdivide.
constexpr int kLengthAccuracy = 10;

double CurveLength(const tagPOINT* bezier) {
  DPoint p[4];
  Lumo::LoadCubic(bezier, p);
  const DVector derivative[3] = {3.0 * (p[1] - p[0]), 3.0 * (p[2] - p[1]), 3.0 * (p[3] - p[2])};
  return TavMath::CubicBezier::Length(derivative, kLengthAccuracy);
}

/// The line or curve node at or after i that ends a segment; -1 for none.
int SegmentEnd(const NODETYPE* types, int count, int i) {
  for (; i < count; ++i)
    if (Lumo::IsSegmentEnd(types, count, i)) return i;
  return -1;
}

/// The squared distance from the query to the nearest on-curve node: an upper bound of that to the path.
double NearestNodeSqrd(const tagPOINT* points, const NODETYPE* types, int count, const DPoint& query) {
  constexpr int kLanes = 8;
  constexpr double kFar = std::numeric_limits<double>::max();
  double nearest[kLanes];
  std::fill(nearest, nearest + kLanes, kFar);
  const auto sqrd = [&](int i) {
    const double dx = points[i].x - query.x, dy = points[i].y - query.y;
    return types[i].IsControl() ? kFar : dx * dx + dy * dy;
  };
  int k = 0;
  for (; count - k >= kLanes; k += kLanes)
    for (int lane = 0; lane < kLanes; ++lane) {
      const double distance = sqrd(k + lane);
      nearest[lane] = distance < nearest[lane] ? distance : nearest[lane];
    }
  for (; k < count; ++k) nearest[0] = std::min(nearest[0], sqrd(k));
  return *std::min_element(nearest, nearest + kLanes);
}

/// The square about a point with the given half side, cut to the 32-bit plane.
tagRECT SquareAbout(const DPoint& p, double radius) {
  return {TavMath::RoundToInt(std::floor(p.x - radius)), TavMath::RoundToInt(std::ceil(p.y + radius)),
          TavMath::RoundToInt(std::ceil(p.x + radius)), TavMath::RoundToInt(std::floor(p.y - radius))};
}

struct NearestOnPath {
  NearestOnPath(const tagPOINT& query, double limitSqrd) : nearest(query, limitSqrd) {}

  /// Tries every segment whose hull touches the rectangle.
  void Search(const tagPOINT* points, const NODETYPE* types, int count, const tagRECT& rect) {
    ForCandidates(points, types, count, 0, count, RectCode(rect), [&](int i) {
      if (types[i].IsLine()) {
        if (nearest.TryLine(points[i - 1], points[i])) endNode = i;
      } else if (nearest.TryCubic(points + (i - 1))) {
        endNode = i + 2;
      }
      return true;
    });
  }

  Lumo::Nearest<tagPOINT> nearest;
  int endNode = -1;
};

}  // namespace

void UTLGenerateNodeLengthArray(const tagPOINT* points, const NODETYPE* types, int count,
                                double* lengths) noexcept {
  if (!points || !types || !lengths) return;
  double total = 0;
  for (int i = 0; i < count; ++i) {
    if (StartsCurve(types, count, i)) {
      lengths[i] = total;
      total += CurveLength(points + (i - 1));
      lengths[i + 1] = lengths[i + 2] = total;
      i += 2;
      continue;
    }
    if (EndsLine(types, i)) total += TavMath::Distance(ToDouble(points[i - 1]), ToDouble(points[i]));
    lengths[i] = total;
  }
}

int UTLFastGotoPathLength(const tagPOINT* points, const NODETYPE* types, int count, const double* lengths,
                          double length, tagPOINT* out, int* endNode, double* t) noexcept {
  if (!points || !types || !lengths || count < 1 || std::isnan(length)) return 0;
  const double target = std::clamp(length, 0.0, std::max(0.0, lengths[count - 1]));
  const auto reached = static_cast<int>(std::lower_bound(lengths, lengths + count, target) - lengths);
  // Only trailing nodes without a segment can lie behind the last end; then the last segment it is.
  int end = SegmentEnd(types, count, reached);
  for (int k = reached - 1; end < 0 && k >= 0; --k)
    if (SegmentEnd(types, k + 1, k) == k) end = k;
  if (end < 0) return 0;

  const bool line = types[end].IsLine();
  const int start = end - (line ? 1 : 3);
  const double before = lengths[start], span = lengths[end] - before;
  const double fraction = span > 0 ? std::clamp((target - before) / span, 0.0, 1.0) : 0;
  DPoint p[4];
  double at = fraction;
  DPoint point;
  if (line) {
    point = TavMath::Lerp(ToDouble(points[start]), ToDouble(points[end]), at);
  } else {
    Lumo::LoadCubic(points + start, p);
    if (fraction > 0 && fraction < 1) at = TavMath::CubicBezier::GetCurveRelativeLengthParameter(p, fraction);
    point = TavMath::CubicBezier::Evaluate(p, at);
  }
  if (out != nullptr) *out = at == 1 ? points[end] : TavMath::RoundPoint(point);
  if (endNode != nullptr) *endNode = end;
  if (t != nullptr) *t = at;
  return 1;
}

int UTLGetClosestPointOnPath(const tagPOINT* points, const NODETYPE* types, int count, tagPOINT point,
                             tagPOINT* out, int* endNode, double* t) noexcept {
  if (!points || !types || count < 2) return 0;
  const DPoint query = ToDouble(point);
  // The nearest node bounds the search: only curves whose boxes come as near are solved.
  const double bound = NearestNodeSqrd(points, types, count, query);
  NearestOnPath search(point, bound);
  search.Search(points, types, count, SquareAbout(query, std::sqrt(bound)));
  if (!(search.nearest.distanceSqrd <= bound)) {
    // That node ends no segment (a lone move node): everything has to be looked at.
    constexpr int low = std::numeric_limits<int>::min(), high = std::numeric_limits<int>::max();
    search = NearestOnPath(point, std::numeric_limits<double>::max());
    search.Search(points, types, count, {low, high, high, low});
  }
  if (search.endNode < 0) return 0;
  if (out != nullptr) *out = TavMath::RoundPoint(search.nearest.point);
  if (endNode != nullptr) *endNode = search.endNode;
  if (t != nullptr) *t = search.nearest.t;
  return 1;
}
