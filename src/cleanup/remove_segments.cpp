// Segments that are too short to mean anything.

#include <algorithm>

#include "cleanup/subpath.h"

namespace Lumo::cleanup {
namespace {

bool HasZeroLength(const CSegment& segment) {
  const DPoint* p = segment.Points();
  return std::all_of(p + 1, p + segment.PointCount(), [p](const DPoint& q) { return q == p[0]; });
}

/// As long as every control point lies within the limit the curve cannot be much longer; the arc length is
/// only worked out where it decides.
bool IsShort(const CSegment& segment, double minLine, double minBezier) {
  const double chord = Distance(segment.StartPoint(), segment.EndPoint());
  if (segment.IsLine()) return chord < minLine;
  return chord < minBezier && segment.Length() < minBezier;
}

/// Fewer segments would leave nothing of the subpath.
std::size_t FewestSegments(const Subpath& subpath) {
  const bool allLines = std::all_of(subpath.segments.begin(), subpath.segments.end(),
                                    [](const CSegment& segment) { return segment.IsLine(); });
  return subpath.IsClosed() && allLines ? 3 : 1;
}

template <class IsUnwanted>
bool HasAny(const Subpath& subpath, IsUnwanted isUnwanted) {
  return std::any_of(subpath.segments.begin(), subpath.segments.end(), isUnwanted);
}

/// Walks the subpath once from front to back and takes out what `isUnwanted` says, down to `fewest` segments.
/// A segment is judged with the start that it has after what went before it. Only for subpaths that have any.
template <class IsUnwanted>
int Sieve(Subpath& subpath, std::size_t fewest, IsUnwanted isUnwanted) {
  std::vector<CSegment> all;
  all.swap(subpath.segments);
  std::vector<CSegment>& kept = subpath.segments;
  kept.reserve(all.size());
  int removed = 0;
  std::size_t left = all.size();
  DPoint start = subpath.start;
  for (std::size_t k = 0; k < all.size(); ++k) {
    CSegment& segment = all[k];
    if (segment.StartPoint() != start) {
      const DVector shift = start - segment.StartPoint();
      segment.SetStartPoint(start);
      if (!segment.IsLine()) segment.SetControl(1, segment.Points()[1] + shift);
    }
    const bool isLast = k + 1 == all.size();
    if (!isLast && left > fewest && isUnwanted(segment)) {
      --left;
      ++removed;
      continue;
    }
    start = segment.EndPoint();
    kept.push_back(segment);
  }
  // The end of the subpath stays where it is: there the node before it goes.
  while (kept.size() > std::max<std::size_t>(fewest, 1) && isUnwanted(kept.back())) {
    TakeOutLast(subpath);
    ++removed;
  }
  return removed;
}

}  // namespace

int RemoveZeroLength(Subpath& subpath) {
  return HasAny(subpath, HasZeroLength) ? Sieve(subpath, 1, HasZeroLength) : 0;
}

int RemoveShort(Subpath& subpath, double minLineLength, double minBezierLength) {
  const auto isShort = [=](const CSegment& segment) {
    return IsShort(segment, minLineLength, minBezierLength);
  };
  if (!HasAny(subpath, isShort)) return 0;
  const double limit = std::max(minLineLength, minBezierLength);
  const TavMath::BoundsT<double> box = subpath.ControlBox();
  if (!(limit > 0) || (box.Width() < limit && box.Height() < limit)) return 0;
  return Sieve(subpath, FewestSegments(subpath), isShort);
}

}  // namespace Lumo::cleanup
