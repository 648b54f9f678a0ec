#pragma once
// One subpath while it is being repaired, and the steps of the repair.

#include <vector>

#include "lumo/repair.h"
#include "lumo/segment_list.h"
#include "math/point_traits.h"

namespace Lumo::cleanup {

struct Subpath {
  DPoint start;
  NODETYPE startType;
  std::vector<CSegment> segments;

  bool IsClosed() const { return startType.IsClosed(); }
  TavMath::BoundsT<double> ControlBox() const {
    TavMath::BoundsT<double> box;
    box.Add(start.x, start.y);
    for (const CSegment& segment : segments) box.Add(segment.ControlBox());
    return box;
  }
};

/// What the steps need to know about the kind of points that the result will be stored as.
struct Precision {
  bool isInteger;
};

std::vector<Subpath> Split(const CSegmentList& list);
CSegmentList Assemble(const std::vector<Subpath>& subpaths);

/// Puts the kinds of flags in order that the place of a node in its subpath decides; returns how many bytes
/// changed.
int FixTypes(Subpath& subpath);

/// Takes out the last of several segments: the one before it ends where it did, its handle moves along. The
/// end of the subpath keeps its place and flags.
void TakeOutLast(Subpath& subpath);

/// Each returns how many segments or handles it changed.
int RemoveZeroLength(Subpath& subpath);
int RemoveShort(Subpath& subpath, double minLineLength, double minBezierLength);
int SplitOverlapping(Subpath& subpath);
int FixOverlappingHandles(Subpath& subpath, double offset, Precision precision);
int FixTightEndpoints(Subpath& subpath, double radiusLimit, Precision precision);
int FixContinuity(Subpath& subpath, double angleLimit, Precision precision);

}  // namespace Lumo::cleanup
