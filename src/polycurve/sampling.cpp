// Points and nodes at equal distances along a path.

#include <algorithm>
#include <cmath>
#include <limits>

#include "lumo/polycurve.h"
#include "polycurve/path_segment.h"
#include "polycurve/split_writer.h"
#include "polycurve/tolerances.h"

namespace Lumo {
namespace {

/// Walks the segments in order with the lengths at which each begins and ends.
template <class T, class Visit>
void WalkWithLengths(const PolycurveT<T>& path, int count, Visit visit) {
  double before = 0;
  WalkSegments(path.GetNodeTypes(), count, [&](int first, int last) {
    const PathSegment segment = LoadSegment(path.GetPoints(), first, last);
    const double own = segment.Length();
    visit(segment, before, own);
    before += own;
  });
}

/// The whole length, by the same sums as the walk, so that the last segment ends exactly there.
template <class T>
double TotalLength(const PolycurveT<T>& path, int count) {
  double total = 0;
  WalkWithLengths(path, count, [&](const PathSegment&, double before, double own) { total = before + own; });
  return total;
}

}  // namespace

template <class T>
std::vector<T> PolycurveT<T>::GetEvenlySpacedPoints(std::size_t n) const {
  std::vector<T> points;
  const int count = IntCount();
  const double total = TotalLength(*this, count);
  const bool closed = GetSubpathCount() == 1 && IsLastSubpathClosed();
  if (n == 0 || !(total >= 0) || GetNodeTypes() == nullptr) return points;
  const double gaps = static_cast<double>(closed || n == 1 ? n : n - 1);
  try {
    points.reserve(n);
    // The last point of an open path is its end, exactly.
    const std::size_t inner = closed || n == 1 ? n : n - 1;
    T end{};
    WalkWithLengths(*this, count, [&](const PathSegment& segment, double before, double own) {
      while (points.size() < inner) {
        const double wanted = total * (static_cast<double>(points.size()) / gaps) - before;
        if (wanted > own || (wanted == own && own > 0)) break;  // the end is the next segment's start
        points.push_back(FromDouble<T>(segment.PointAt(own > 0 ? segment.ParameterAt(wanted / own) : 0)));
      }
      end = GetPoints()[segment.last];
    });
    const bool any = !points.empty();
    while (any && points.size() < n) points.push_back(end);
  } catch (...) {
    points.clear();
  }
  return points;
}

template <class T>
bool PolycurveT<T>::DivideEqually(std::size_t n) noexcept {
  const int count = IntCount();
  const double total = TotalLength(*this, count);
  if (n == 0 || !(total > 0) || !std::isfinite(total)) return false;
  // Node counts are 32-bit, and a division point takes up to three nodes.
  if (n > static_cast<std::size_t>(std::numeric_limits<int>::max() - count) / 3) return false;
  try {
    SplitWriter<T> writer(*this);
    std::vector<double> at;
    std::size_t next = 1;
    WalkWithLengths(*this, count, [&](const PathSegment& segment, double before, double own) {
      at.clear();
      const double slack = kOnNodeShare * total;
      for (; next < n; ++next) {
        const double wanted = total * (static_cast<double>(next) / static_cast<double>(n)) - before;
        if (wanted > own - slack) {
          if (wanted > own + slack) break;
          continue;  // a node stands there already
        }
        if (wanted <= slack) continue;
        const double t = segment.ParameterAt(wanted / own);
        if (t > 0 && t < 1) at.push_back(t);
      }
      if (!at.empty()) writer.Split(segment, at);
    });
    writer.Finish();
    return MoveData(std::move(writer.points), std::move(writer.types));
  } catch (...) {
    return false;
  }
}

#define LUMO_SAMPLING_MEMBERS(T)                                                           \
  LUMO_INSTANTIATE std::vector<T> PolycurveT<T>::GetEvenlySpacedPoints(std::size_t) const; \
  LUMO_INSTANTIATE bool PolycurveT<T>::DivideEqually(std::size_t) noexcept;
LUMO_SAMPLING_MEMBERS(tagPOINT)
LUMO_SAMPLING_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
