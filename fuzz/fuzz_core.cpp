// Path arrays, navigation, counting, flags and segments over arrays that may break every rule. Results stay
// in range, counts agree with each other, reversal twice restores what is well formed, and nothing outside
// the arrays is touched.
#include "lumo/crv_navigation.h"
#include "lumo/curve_segment.h"
#include "lumo/path_array.h"
#include "path_bytes.h"

namespace {

using fuzz::Require;

void Navigate(const NODETYPE* types, int count, int i) {
  const auto inside = [count](int k) { return k >= 0 && k < count; };
  for (const auto step : {NN, PN, NNControl, PNControl}) {
    const int next = step(types, i, count);
    Require(inside(i) ? inside(next) : next == i);
  }
  for (const auto index : {CRV_FirstNodeOfThisSubpath, CRV_LastNodeOfThisSubpath, CRV_GetArcBefore,
                           CRV_GetArcAfter, CRV_GetUserNode})
    Require(index(types, count, i) == -1 || inside(index(types, count, i)));
  const int other = OtherClosedEnd(types, i, count);
  Require(other == -1 || inside(other));
  Require(CRV_IsFirstOrLastSubpathNode(types, count, i) ==
          (CRV_IsFirstSubpathNode(types, count, i) || CRV_IsLastSubpathNode(types, count, i)));
  CRV_IsThisSubpathClosed(types, count, i);
  CRV_TwoNodesInSameSubpath(types, count, i, count - 1 - i);
  if (inside(i)) Require(CRV_CountNodesInSubpath(types + i, i, count) <= count - i);
}

void Count(const NODETYPE* types, int count) {
  const int lines = CRV_HowManyLines(types, count), curves = CRV_HowManyCurves(types, count);
  Require(Lumo::GetSegmentCount(types, count) == lines + curves);
  Require(CRV_HowManyOpenSubpaths(types, count) <= CRV_NumSubpaths(types, count));
  Require((CRV_HowManyOpenSubpaths(types, count) > 0) == (CRV_ContainsOpenSubpath(types, count, false) != 0));
  Require(CRV_HowManyEnabled(types, count) ==
          CRV_GetNumberOfUserNodes(types, static_cast<unsigned>(count), true));
  Require(CRV_HowManyEnabledSubpaths(types, count) <= CRV_NumSubpaths(types, count) + 1);
  Require(CRV_HowManyEnabledLines(types, count) <= lines && CRV_HowManyEnabledCurves(types, count) <= curves);
  Require(CRV_HowManyEnabledNotFirstOrLastInSubpath(types, count) <= count);
  Require(CRV_HowManyEnabledNotFirstOrLastInOpenSubpath(types, count) <= CRV_HowManyEnabled(types, count));
  CRV_ContainsOpenSubpath(types, count, true);
  CRV_ENABLINGINFO info;
  const int enabled = CRV_GetEnablingInfo(types, count, 0, count / 2, &info);
  Require(enabled <= count && (info.flags & CRV_ENABLINGINFO::kAlways) != 0);
}

template <class T>
void Segments(const fuzz::Path<T>& path) {
  const auto count = path.points.size();
  std::size_t steps = 0;
  for (const auto& segment : Lumo::details::GetCurveSegments_Raw(path.types.data(), path.points.data(),
                                                                 TavUtils::IndexRange(0, count))) {
    Require(++steps <= count);
    if (!segment) continue;
    Require(segment->endIndex() < count);
    segment->prev().prev();
    segment->next().next();
    Lumo::ClosestPoint<T, Lumo::SegmentPosition> nearest;
    if (segment->FindClosestPoint(path.points[0], nearest))
      Require(nearest.position.t >= 0 && nearest.position.t <= 1 && nearest.distanceSqrd >= 0);
    segment->IsPointOnCurve(path.points[0], 3);
    segment->GetPointsBBox();
  }
  Lumo::ValidSegments(path.types.data(), count);
  for (int k = -1; k <= path.count(); ++k) {
    Lumo::FirstNodeToSegmentIndex(path.types.data(), path.count(), k);
    const int last = Lumo::SegmentToLastNodeIndex(path.types.data(), path.count(), k);
    Require(last < 0 || Lumo::LastNodeToSegmentIndex(path.types.data(), path.count(), last) == k);
    Lumo::SegmentToFirstNodeIndex(path.types.data(), path.count(), k);
    T out{};
    if (k < path.count()) CRV_GetPointOnCurve(&out, path.points.data(), path.types.data(), k, 0.3);
    CRV_SegmentIsShort(path.points.data(), path.types.data(), path.count(), k, 70000);
    CRV_SegmentsAreClose(path.points.data(), path.types.data(), path.count(), k, path.count() - k, 9, 0);
  }
}

void SetFlags(std::vector<NODETYPE> types) {
  const int count = static_cast<int>(types.size());
  const std::vector<NODETYPE> before = types;
  for (int i = -1; i <= count; i += 1 + count / 40) {
    CRV_SetEnabled(types.data(), count, i, i);
    CRV_SetCont(types.data(), count, i, ContinuityType::symmetric);
    CRV_EnableOneControl(types.data(), count, i);
    CRV_EnableSubpath(types.data(), count, i, 1);
  }
  CRV_EnableAllNodes(types.data(), count);
  CRV_DisableAllNodes(types.data(), count);
  for (std::size_t k = 0; k < types.size(); ++k) Require(types[k].Kind() == before[k].Kind());
}

template <class T>
void Move(fuzz::Path<T> path, int at, int n) {
  const fuzz::Path<T> before = path;
  const int count = path.count();
  Lumo::Reverse(path.points.data(), path.types.data(), count);
  Lumo::Reverse(path.points.data(), path.types.data(), count - 1, 0);
  for (std::size_t k = 0; k < before.points.size(); ++k) Require(path.points[k] == before.points[k]);
  path = before;
  path.points.resize(before.points.size() + static_cast<std::size_t>(n));
  path.types.resize(path.points.size());
  PathInsNext(path.types.data(), path.points.data(), at, n, count);
  if (at < count) PathDelNext(path.types.data(), path.points.data(), at, n, count + n);
  for (std::size_t k = 0; k < before.points.size(); ++k)
    Require(path.points[k] == before.points[k] && path.types[k] == before.types[k]);
}

template <class T>
void All(fuzz::Input input) {
  const int spread = fuzz::Spread(input.Byte());
  const int at = input.Byte(), n = input.Byte() % 9;
  const fuzz::Path<T> path = fuzz::TakePath<T>(input, spread);
  if (path.points.empty()) return;
  for (int i = -1; i <= path.count(); ++i) Navigate(path.types.data(), path.count(), i);
  Count(path.types.data(), path.count());
  Segments(path);
  SetFlags(path.types);
  Move(path, at, n);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  All<tagPOINT>({data, size});
  All<TavMath::DPoint>({data, size});
  return 0;
}
