#pragma once
// What two segments have in common, without any table: the steps common to all pairs, and the parts that
// differ by kind.

#include "lumo/intersections.h"
#include "tav/math/bounds.h"
#include "tav/math/vector2d.h"

namespace Lumo {

using TavMath::DPoint;
using TavMath::DVector;

/// A segment by its control points (2 or 4), which stay the caller's.
struct PairSegment {
  const DPoint* p = nullptr;
  bool isCurve = false;

  const DPoint& Start() const { return p[0]; }
  const DPoint& End() const { return p[isCurve ? 3 : 1]; }
  DPoint At(double t) const;
  /// Of a line, from start to end at every parameter; of a cubic never zero unless all its points coincide.
  DVector Tangent(double t) const;
  double Curvature(double t) const;
  /// Of the control points. Empty, so that it meets nothing, when a coordinate is not finite or so large that
  /// the extents are not.
  TavMath::BoundsT<double> Box() const;
};

/// How the two lie on their path.
enum class Adjacency { none = 0, bFollowsA = 1, aFollowsB = 2, both = 3 };

struct PairContact {
  double ta, tb;
  DPoint point;
  bool touch;
  int overlap;  ///< index of the other end of a shared stretch, or -1
};

/// At most four contacts of ends, then crossings: nine of two cubics, or twelve places of a damaged pair.
struct PairContacts {
  static constexpr int kRoom = 20;
  PairContact at[kRoom];
  int count = 0;

  void Add(double ta, double tb, const DPoint& point, bool touch) {
    if (count < kRoom) at[count++] = {ta, tb, point, touch, -1};
  }
  void Link(int first, int second) {
    at[first].overlap = second;
    at[second].overlap = first;
  }
};

/// The margin by which boxes are grown before they are compared.
double PairMargin(const SegmentIntersectionSettings& settings) noexcept;

/// Everything that a and b have in common, ends first.
void IntersectPair(const PairSegment& a, const PairSegment& b, Adjacency adjacency,
                   const SegmentIntersectionSettings& settings, PairContacts& found) noexcept;

// --- by kind ---

/// The foot of a point on a segment: false when the nearest place is an end that the point lies beyond, or
/// the distance reaches the tolerance.
bool FindFoot(const PairSegment& on, const DPoint& p, double toleranceSqrd, double& t, DPoint& foot) noexcept;

/// Whether the stretches between two contacts coincide within the tolerance.
bool StretchesCoincide(const PairSegment& a, const PairSegment& b, const PairContact& first,
                       const PairContact& second, double toleranceSqrd) noexcept;

/// Where the insides of both meet, in the order of a's parameter.
struct InnerMeeting {
  double ta, tb;
  DPoint point;
};
struct InnerMeetings {
  int count = 0;
  bool overlap = false;  ///< the two are the ends of a shared stretch (and may be ends of a segment)
  InnerMeeting at[12];
};
void MeetLineLine(const PairSegment& a, const PairSegment& b, InnerMeetings& found) noexcept;
void MeetLineCubic(const PairSegment& line, const PairSegment& cubic, InnerMeetings& found) noexcept;
void MeetCubicCubic(const PairSegment& a, const PairSegment& b, InnerMeetings& found) noexcept;
/// Whether the segments meet without changing sides.
bool IsTangency(const PairSegment& a, const PairSegment& b, double ta, double tb) noexcept;

}  // namespace Lumo
