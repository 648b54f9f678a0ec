#include "cleanup/subpath.h"

namespace Lumo::cleanup {

std::vector<Subpath> Split(const CSegmentList& list) {
  std::vector<Subpath> subpaths;
  subpaths.reserve(list.SubpathCount());
  for (std::size_t k = 0; k < list.SubpathCount(); ++k) {
    const CSegmentList::Subpath& from = list.GetSubpath(k);
    const auto begin = list.Segments().begin() + static_cast<std::ptrdiff_t>(from.firstSegment);
    const auto end = list.Segments().begin() + static_cast<std::ptrdiff_t>(list.SubpathEnd(k));
    subpaths.push_back({from.start, from.startType, {begin, end}});
  }
  return subpaths;
}

CSegmentList Assemble(const std::vector<Subpath>& subpaths) {
  CSegmentList list;
  for (const Subpath& subpath : subpaths) {
    list.AppendMove(subpath.start, subpath.startType);
    for (const CSegment& segment : subpath.segments) list.Append(segment);
  }
  return list;
}

namespace {

NODETYPE FixedControl(NODETYPE type) {
  type.SetKind(NODETYPE::kControl);
  type.Set(NODETYPE::kClosed | NODETYPE::kContinuityMask, false);
  if (!type.IsEnabled()) type.Set(NODETYPE::kUser, false);
  return type;
}

NODETYPE FixedEnd(const CSegment& segment, bool isLast, bool isClosed) {
  NODETYPE type = segment.EndType();
  type.SetKind(segment.IsLine() ? NODETYPE::kLine : NODETYPE::kCurve);
  type.Set(NODETYPE::kClosed, isLast && isClosed);
  type.Set(NODETYPE::kUser, !(isLast && isClosed));
  return type;
}

}  // namespace

int FixTypes(Subpath& subpath) {
  int changed = !subpath.startType.IsUser();
  subpath.startType |= NODETYPE::kUser;
  for (std::size_t k = 0; k < subpath.segments.size(); ++k) {
    CSegment& segment = subpath.segments[k];
    const NODETYPE end = FixedEnd(segment, k + 1 == subpath.segments.size(), subpath.IsClosed());
    changed += end.value != segment.EndType().value;
    segment.SetEndType(end);
    for (int c = 1; c < 3 && !segment.IsLine(); ++c) {
      const NODETYPE control = FixedControl(segment.ControlType(c));
      changed += control.value != segment.ControlType(c).value;
      segment.SetControlType(c, control);
    }
  }
  return changed;
}

void TakeOutLast(Subpath& subpath) {
  std::vector<CSegment>& segments = subpath.segments;
  const CSegment gone = segments.back();
  segments.pop_back();
  CSegment& previous = segments.back();
  const DVector shift = gone.EndPoint() - previous.EndPoint();
  previous.SetEndPoint(gone.EndPoint());
  if (!previous.IsLine()) previous.SetControl(2, previous.Points()[2] + shift);
  NODETYPE type = gone.EndType();
  type.SetKind(previous.IsLine() ? NODETYPE::kLine : NODETYPE::kCurve);
  previous.SetEndType(type);
}

}  // namespace Lumo::cleanup
