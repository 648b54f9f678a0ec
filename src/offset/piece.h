#pragma once
// Offset pieces: what one source segment becomes.

#include <span>
#include <vector>

#include "offset/append.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo::Offset {

using TavMath::Cubic;

/// A source path that is offset: one subpath. `closed`: its last node repeats its first.
struct Source {
  const DPoint* points;
  const NODETYPE* nodes;
  int count;
  bool closed;
};

/// One line or one cubic of a piece; a line uses the first and the last point.
struct Part {
  Cubic curve;
  bool line;

  const DPoint& Start() const { return curve[0]; }
  const DPoint& End() const { return curve[3]; }
  /// Moves the start; its handle moves along, so that the tangent stays.
  void MoveStart(const DPoint& to);
};

/// The offset of one source segment: a line, or the cubics of a curve in order, empty when the segment has no
/// direction.
struct Piece {
  std::span<Part> parts;  ///< in the one vector of all
  DVector startTangent;
  DVector endTangent;
  int startNode;  ///< source indices of the segment's two ends
  int endNode;
  double sourceLength;  ///< of the chord

  bool IsUsable() const {
    return !parts.empty() && !(parts.front().line && parts[0].Start() == parts[0].End());
  }
};

/// The pieces of all segments of a source in order, moved to the left by `distance`. Their parts share one
/// vector: most pieces have a single one.
class Pieces {
 public:
  Pieces(const Source& source, double distance, double tolerance);
  Pieces(const Pieces&) = delete;
  Pieces& operator=(const Pieces&) = delete;

  /// Pieces may be taken out.
  std::vector<Piece> list;

 private:
  std::vector<Part> parts_;
};

/// Cuts two successive pieces that overlap on the inner side of a turn at their crossing. False when they do
/// not cross there, or are so short that the crossing need not belong to the corner between them.
bool TrimPieces(Piece& earlier, Piece& later, double leastGapSqrd);

}  // namespace Lumo::Offset
