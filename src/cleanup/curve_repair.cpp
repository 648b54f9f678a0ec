// Curve repair: the path as subpaths of segments, mended step by step.

#include <algorithm>
#include <cmath>
#include <new>

#include "cleanup/subpath.h"
#include "cleanup/tolerances.h"
#include "core/segment_reader.h"
#include "lumo/repair.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {
namespace cleanup {
namespace {

bool IsFinite(const DPoint& p) { return std::isfinite(p.x) && std::isfinite(p.y); }

bool IsFinite(const CSegment& segment) {
  return std::all_of(segment.Points(), segment.Points() + segment.PointCount(),
                     [](const DPoint& p) { return IsFinite(p); });
}

/// Segments that touch a point that is not finite go; the next one starts where the last good one ended.
int DropNonFinite(Subpath& subpath) {
  const std::vector<CSegment>& all = subpath.segments;
  if (IsFinite(subpath.start) &&
      std::all_of(all.begin(), all.end(), [](const CSegment& segment) { return IsFinite(segment); }))
    return 0;
  std::vector<CSegment> kept;
  const std::size_t before = subpath.segments.size();
  int dropped = 0;
  for (CSegment segment : subpath.segments) {
    if (!IsFinite(segment.EndPoint())) continue;
    if (!IsFinite(subpath.start)) {  // the first finite end takes its place
      subpath.start = segment.EndPoint();
      continue;
    }
    segment.SetStartPoint(kept.empty() ? subpath.start : kept.back().EndPoint());
    if (IsFinite(segment)) {
      kept.push_back(segment);
      continue;
    }
    CSegment line = CLineSegment(segment.StartPoint(), segment.EndPoint());
    line.SetEndType(segment.EndType());
    kept.push_back(line);
    ++dropped;
  }
  dropped += static_cast<int>(before - kept.size());
  if (dropped > 0) subpath.segments.swap(kept);
  return dropped;
}

/// Move nodes that start nothing go; a letter that one of them starts is started by the next subpath.
int DropDangling(std::vector<Subpath>& subpaths) {
  const auto dangles = [](const Subpath& subpath) {
    return subpath.segments.empty() || !IsFinite(subpath.start);
  };
  if (std::none_of(subpaths.begin(), subpaths.end(), dangles)) return 0;
  std::vector<Subpath> kept;
  kept.reserve(subpaths.size());
  unsigned char letter = 0;
  int dropped = 0;
  for (Subpath& subpath : subpaths) {
    subpath.startType |= letter;
    letter = 0;
    if (dangles(subpath)) {
      letter = subpath.startType & NODETYPE::kLetter;
      ++dropped;
      continue;
    }
    kept.push_back(std::move(subpath));
  }
  subpaths.swap(kept);
  return dropped;
}

/// The last node of a closed subpath repeats its start.
int CloseGap(Subpath& subpath, double minLineLength) {
  if (!subpath.IsClosed() || subpath.segments.empty()) return 0;
  CSegment& last = subpath.segments.back();
  const DPoint end = last.EndPoint();
  if (end == subpath.start) return 0;
  if (Distance(end, subpath.start) < minLineLength) {
    if (!last.IsLine()) last.SetControl(2, last.Points()[2] + (subpath.start - end));
    last.SetEndPoint(subpath.start);
    return 1;
  }
  CSegment line = CLineSegment(end, subpath.start);
  NODETYPE closing = last.EndType();
  closing.SetKind(NODETYPE::kLine);
  line.SetEndType(closing);
  NODETYPE inner = last.EndType();
  inner.Set(NODETYPE::kClosed, false);
  inner |= NODETYPE::kUser;
  last.SetEndType(inner);
  subpath.segments.push_back(line);
  return 1;
}

DPoint Stored(const DPoint& p, Precision precision) {
  return precision.isInteger ? Lumo::ToDouble(TavMath::RoundPoint(p)) : p;
}

/// Rounds what a step has moved as it will be stored, so that the next round judges what the host will see.
void Round(Subpath& subpath, Precision precision) {
  if (!precision.isInteger) return;
  for (CSegment& segment : subpath.segments) {
    segment.SetStartPoint(Stored(segment.StartPoint(), precision));
    segment.SetControl(1, Stored(segment.Points()[1], precision));
    segment.SetControl(2, Stored(segment.Points()[2], precision));
    segment.SetEndPoint(Stored(segment.EndPoint(), precision));
  }
}

/// One round of the steps that look at geometry. Returns whether it changed, so that another round may find
/// more; flags of continuity that follow from it are right at once.
bool RepairGeometry(Subpath& subpath, const CurveRepairSettings& settings, Precision precision,
                    CurveRepairReport& report) {
  CurveRepairReport now;
  now.closedGaps = CloseGap(subpath, settings.GetMinLineLength());
  now.zeroLengthSegments = RemoveZeroLength(subpath);
  now.shortSegments = RemoveShort(subpath, settings.GetMinLineLength(), settings.GetMinBezierLength());
  if (settings.SplitOverlappingBeziers()) now.splitBeziers = SplitOverlapping(subpath);
  if (settings.FixOverlappingHandles())
    now.overlappingHandles = FixOverlappingHandles(subpath, settings.GetOverlappingHandleOffset(), precision);
  if (settings.FixTightEndpointRadius())
    now.tightEndpoints = FixTightEndpoints(subpath, settings.GetTightEndpointRadiusLimit(), precision);
  Round(subpath, precision);
  now.continuity = FixContinuity(subpath, settings.GetSmoothNodeAngleLimit(), precision);
  report.closedGaps += now.closedGaps;
  report.zeroLengthSegments += now.zeroLengthSegments;
  report.shortSegments += now.shortSegments;
  report.splitBeziers += now.splitBeziers;
  report.overlappingHandles += now.overlappingHandles;
  report.tightEndpoints += now.tightEndpoints;
  report.continuity += now.continuity;
  now.continuity = 0;
  return now.Any();
}

void Repair(std::vector<Subpath>& subpaths, const CurveRepairSettings& settings, Precision precision,
            CurveRepairReport& report) {
  for (Subpath& subpath : subpaths) report.strayNodes += DropNonFinite(subpath);
  report.danglingMoves += DropDangling(subpaths);
  for (Subpath& subpath : subpaths) {
    report.fixedTypes += FixTypes(subpath);
    for (int round = 0; round < kMaxRepairRounds; ++round)
      if (!RepairGeometry(subpath, settings, precision, report)) break;
  }
}

/// How many segments may begin at a move node and behind it, up to the next one.
std::size_t CountEnds(const NODETYPE* types, int move, int count) {
  std::size_t ends = 0;
  for (int i = move + 1; i < count && !types[i].IsMove(); ++i) ends += types[i].IsOnCurve();
  return ends;
}

/// The path as subpaths; one that does not begin with a move node is taken to begin with its first node.
template <class T>
std::vector<Subpath> Read(const T* points, const NODETYPE* types, int count, int* strayNodes) {
  std::vector<NODETYPE> copy;
  if (count > 0 && !types[0].IsMove()) {
    copy.assign(types, types + count);
    copy[0] &= static_cast<unsigned char>(~(NODETYPE::kKindMask | NODETYPE::kClosed));
    types = copy.data();
  }
  std::vector<Subpath> subpaths;
  int nodes = 0;
  const auto begin = [&](int i) {
    NODETYPE type = types[i];
    type.SetKind(NODETYPE::kMove);
    subpaths.push_back({ToDouble(points[i]), type, {}});
    subpaths.back().segments.reserve(CountEnds(types, i, count));
    ++nodes;
  };
  const auto add = [&](const CSegment& segment) {
    subpaths.back().segments.push_back(segment);
    nodes += segment.IsLine() ? 1 : 3;
  };
  if (points != nullptr) ReadSegments(points, types, count, begin, add);
  if (strayNodes != nullptr) *strayNodes = count - nodes;
  return subpaths;
}

/// Writes the types of subpaths that have the same nodes as the array.
void WriteTypes(const std::vector<Subpath>& subpaths, NODETYPE* types) {
  for (const Subpath& subpath : subpaths) {
    *types++ = subpath.startType;
    for (const CSegment& segment : subpath.segments) {
      for (int c = 1; c + 1 < segment.PointCount(); ++c) *types++ = segment.ControlType(c);
      *types++ = segment.EndType();
    }
  }
}

/// Whether nothing but types of nodes was mended.
bool KeptItsPoints(CurveRepairReport report) {
  report.fixedTypes = report.continuity = 0;
  return !report.Any();
}

/// Writes subpaths of no more nodes than the arrays hold; returns the count.
template <class T>
int WriteBack(const std::vector<Subpath>& subpaths, T* points, NODETYPE* types) {
  std::vector<DPoint> newPoints;
  std::vector<NODETYPE> newTypes;
  Assemble(subpaths).AppendTo(newPoints, newTypes);
  std::transform(newPoints.begin(), newPoints.end(), points,
                 [](const DPoint& p) { return FromDouble<T>(p); });
  std::copy(newTypes.begin(), newTypes.end(), types);
  return static_cast<int>(newTypes.size());
}

/// Runs step(subpath) on every subpath of the caller's arrays, which may only shrink. A path in which nothing
/// changed is not written; neither is anything when memory runs out.
template <class T, class Step>
int ShrinkInPlace(T* points, NODETYPE* types, int count, Step step) noexcept {
  if (points == nullptr || types == nullptr || count < 1) return count;
  try {
    std::vector<Subpath> subpaths = Read(points, types, count, nullptr);
    int changed = 0;
    for (Subpath& subpath : subpaths) changed += step(subpath);
    return changed > 0 ? WriteBack(subpaths, points, types) : count;
  } catch (const std::bad_alloc&) {
    return count;
  }
}

template <class T>
constexpr Precision PrecisionOf() {
  return {std::is_same_v<T, tagPOINT>};
}

/// Whether the box of the nodes first..end-1, curves and all, is smaller than size in both directions.
template <class T>
bool IsSmall(const T* points, const NODETYPE* types, int first, int end, double size) {
  TavMath::BoundsT<double> box;
  for (int i = first; i < end; ++i) {
    const DPoint p = ToDouble(points[i]);
    if (types[i].IsOnCurve()) box.Add(p.x, p.y);
    if (!types[i].IsCurve() || i - first < 3) continue;
    DPoint cubic[4];
    LoadCubic(points + i - 3, cubic);
    box.Add(TavMath::CubicBezier::GetTightBox(cubic));
  }
  return box.Width() < size && box.Height() < size;
}

}  // namespace
}  // namespace cleanup

using namespace cleanup;

template <class T>
std::size_t RemoveZeroLengthSegments(T* points, NODETYPE* types, std::size_t count) noexcept {
  return static_cast<std::size_t>(ShrinkInPlace(points, types, static_cast<int>(count), RemoveZeroLength));
}

template <class T>
int RemoveShortSegments(T* points, NODETYPE* types, int count, double minLineLength,
                        double minBezierLength) noexcept {
  return ShrinkInPlace(points, types, count, [=](Subpath& subpath) {
    const int removed = RemoveShort(subpath, minLineLength, minBezierLength);
    Round(subpath, PrecisionOf<T>());
    return removed;
  });
}

template <class T>
int RemoveSmallSubpaths(T* points, NODETYPE* types, int count, double size) noexcept {
  if (points == nullptr || types == nullptr || count < 1) return count;
  int kept = 0;
  for (int first = 0; first < count;) {
    int end = first + 1;
    while (end < count && !types[end].IsMove()) ++end;
    if (!IsSmall(points, types, first, end, size)) {
      std::copy(points + first, points + end, points + kept);
      std::copy(types + first, types + end, types + kept);
      kept += end - first;
    }
    first = end;
  }
  return kept;
}

template <class T>
int RepairContinuity(const T* points, NODETYPE* types, int count,
                     const CurveRepairSettings& settings) noexcept {
  if (points == nullptr || types == nullptr || count < 1) return 0;
  try {
    int strayNodes = 0, changed = 0;
    std::vector<Subpath> subpaths = Read(points, types, count, &strayNodes);
    if (strayNodes > 0 || !types[0].IsMove()) return 0;  // its nodes have no places in the list
    for (Subpath& subpath : subpaths)
      changed += FixContinuity(subpath, settings.GetSmoothNodeAngleLimit(), PrecisionOf<T>());
    WriteTypes(subpaths, types);
    return changed;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

template <class T>
bool RepairCurves(std::vector<T>& points, std::vector<NODETYPE>& types, const CurveRepairSettings& settings,
                  CurveRepairReport* report) noexcept {
  try {
    CurveRepairReport found;
    const auto count = std::min(points.size(), types.size());
    std::vector<Subpath> subpaths =
        Read(points.data(), types.data(), static_cast<int>(count), &found.strayNodes);
    Repair(subpaths, settings, PrecisionOf<T>(), found);
    if (KeptItsPoints(found) && count > 0 && types.front().IsMove() && points.size() == types.size()) {
      if (found.Any()) WriteTypes(subpaths, types.data());
      if (report != nullptr) *report = found;
      return true;
    }
    std::vector<DPoint> newPoints;
    std::vector<NODETYPE> newTypes;
    Assemble(subpaths).AppendTo(newPoints, newTypes);
    std::vector<T> stored(newPoints.size());
    std::transform(newPoints.begin(), newPoints.end(), stored.begin(),
                   [](const DPoint& p) { return FromDouble<T>(p); });
    points.swap(stored);
    types.swap(newTypes);
    if (report != nullptr) *report = found;
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

bool RepairCurves(CSegmentList& list, const CurveRepairSettings& settings,
                  CurveRepairReport* report) noexcept {
  try {
    CurveRepairReport found;
    std::vector<Subpath> subpaths = Split(list);
    Repair(subpaths, settings, {false}, found);
    list = Assemble(subpaths);
    if (report != nullptr) *report = found;
    return true;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace Lumo

LUMO_CURVE_REPAIR(LUMO_INSTANTIATE, tagPOINT)
LUMO_CURVE_REPAIR(LUMO_INSTANTIATE, TavMath::DPoint)
