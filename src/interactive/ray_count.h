#pragma once
// The even-odd rule by a ray from a point towards +x.

#include "lumo/node_type.h"
#include "lumo/point_types.h"
#include "tav/math/vector2d.h"

namespace Lumo::Interactive {

/// Counts what the ray meets. Every Add returns false, and counting is void, when the point lies on what is
/// added: on a vertex, on a horizontal piece, or where a piece passes within half a unit in x.
///
/// A vertex on the ray is no crossing of a piece. Pieces that arrive at or leave it from above and from below
/// are counted apart: passing through gives one of each, touching gives two of one, so that both sums are odd
/// when an odd number of vertices is passed through.
class RayCount {
 public:
  explicit RayCount(const tagPOINT& point) noexcept : p_(point) {}

  bool AddLine(const tagPOINT& a, const tagPOINT& b) noexcept;
  /// A cubic as at most 32 chords.
  bool AddCubic(const tagPOINT* bezier) noexcept;
  /// The segments of the nodes first .. end-1, which are one subpath or several.
  bool AddSegments(const tagPOINT* points, const NODETYPE* types, int count, int first, int end) noexcept;
  /// The line that closes the subpath first .. end-1 when its ends differ.
  bool AddClosingLine(const tagPOINT* points, int first, int end) noexcept;

  bool IsInside() const noexcept { return ((crossings_ & 1) ^ (upTouches_ & downTouches_ & 1)) != 0; }

 private:
  template <class T>
  bool AddPiece(const T& a, const T& b) noexcept;

  tagPOINT p_;
  unsigned crossings_ = 0;
  unsigned upTouches_ = 0;
  unsigned downTouches_ = 0;
};

}  // namespace Lumo::Interactive
