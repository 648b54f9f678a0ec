#pragma once
// The smoothing step on points alone: how handles are brought in line with a line or with each other.

#include <cmath>

#include "edit/tolerances.h"
#include "lumo/node_type.h"
#include "math/point_traits.h"

namespace Lumo::smoothing {

/// The plain root, not hypot: it is exact for axis-parallel and for 3-4-5 directions on every platform, and
/// integer handles are truncated, where an ulp is a unit.
inline double PlainLength(const DVector& d) { return std::sqrt(LengthSqrd(d)); }

/// p + offset. For integer points each coordinate of the offset is first biased and truncated.
inline DPoint Displaced(const DPoint& p, const DVector& offset, double) { return p + offset; }
inline tagPOINT Displaced(const tagPOINT& p, const DVector& offset, double bias) {
  return {TavMath::TruncateToInt(p.x + std::trunc(offset.x + bias)),
          TavMath::TruncateToInt(p.y + std::trunc(offset.y + bias))};
}
/// p - offset, the offset converted in the same way.
inline DPoint DisplacedBack(const DPoint& p, const DVector& offset, double) { return p - offset; }
inline tagPOINT DisplacedBack(const tagPOINT& p, const DVector& offset, double bias) {
  return {TavMath::TruncateToInt(p.x - std::trunc(offset.x + bias)),
          TavMath::TruncateToInt(p.y - std::trunc(offset.y + bias))};
}

// Beside a line the offset of an integer handle is biased by half a unit, between two curves it is not: hosts
// compare with stored drawings, so both stay although the first does not round negative offsets.
inline constexpr double kBesideLineBias = 0.5;
inline constexpr double kBetweenCurvesBias = 0.0;

/// A line from `from` comes in at node; its outgoing handle is put on the extension of the line.
template <class T>
void TurnOutgoing(const T& node, const T& from, T& handle) {
  const DVector line = ToDouble(node) - ToDouble(from);
  const double in = PlainLength(line), out = PlainLength(ToDouble(node) - ToDouble(handle));
  if (!(in > kMinSmoothingLength)) return;
  handle = Displaced(node, DVector{line.x * out / in, line.y * out / in}, kBesideLineBias);
}

/// A line leaves node towards `to`; its incoming handle is put on the extension of the line.
template <class T>
void TurnIncoming(const T& node, const T& to, T& handle) {
  const DVector line = ToDouble(to) - ToDouble(node);
  const double out = PlainLength(line), in = PlainLength(ToDouble(node) - ToDouble(handle));
  if (!(out > kMinSmoothingLength)) return;
  handle = DisplacedBack(node, DVector{line.x * in / out, line.y * in / out}, kBesideLineBias);
}

/// Both handles are put parallel to the chord between them (not to the bisector of their directions).
template <class T>
void Align(const T& node, T& incoming, T& outgoing, bool isSymmetric) {
  const DVector chord = ToDouble(outgoing) - ToDouble(incoming);
  double in = PlainLength(ToDouble(node) - ToDouble(incoming));
  double out = PlainLength(ToDouble(node) - ToDouble(outgoing));
  const double length = PlainLength(chord);
  if (isSymmetric) in = out = (in + out) * 0.5;
  if (!(length > kMinSmoothingLength)) return;
  incoming = DisplacedBack(node, DVector{chord.x * in / length, chord.y * in / length}, kBetweenCurvesBias);
  outgoing = Displaced(node, DVector{chord.x * out / length, chord.y * out / length}, kBetweenCurvesBias);
}

/// Whether a node of this byte takes part in smoothing at all.
inline bool IsSmoothed(NODETYPE type) {
  return type.IsOnCurve() && !type.IsCusp() && (type & (NODETYPE::kClosed | NODETYPE::kUser)) != 0;
}

/// The step at node i, where the incoming segment ends at index `end` (i itself, or its closed twin) and the
/// outgoing one begins with index `after`.
template <class T>
void Step(T* points, const NODETYPE* types, int i, int end, int after) {
  const bool curvedOut = types[after].IsControl();
  if (types[end].IsLine() && end >= 1) {
    if (curvedOut) TurnOutgoing(points[i], points[end - 1], points[after]);
  } else if (types[end].IsCurve() && end >= 1) {
    if (curvedOut)
      Align(points[i], points[end - 1], points[after], types[i].Continuity() == ContinuityType::symmetric);
    if (types[after].IsLine()) TurnIncoming(points[i], points[after], points[end - 1]);
  }
}

}  // namespace Lumo::smoothing
