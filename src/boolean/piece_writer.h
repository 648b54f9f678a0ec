#pragma once
// What both kinds of output (closed outlines and open pieces) share: pieces of source segments as path nodes.

#include "boolean/engine.h"

namespace Lumo::Planar {

/// A stretch of one segment as the output runs: from parameter t0 to t1 (t0 > t1: against the segment).
struct Piece {
  int segment;
  double t0, t1;
  int from, to;  // vertices

  bool Forward() const { return t0 < t1; }
  bool Whole() const { return (t0 == 0 && t1 == 1) || (t0 == 1 && t1 == 0); }
  /// Whether `next` goes on where this piece ends, on the same segment and in the same direction.
  bool ContinuesIn(const Piece& next) const;
};

class PieceWriter {
 public:
  PieceWriter(const Collection& in, const EdgeSet& edges, Outcome& out);

  /// Joins pieces that continue one another; `mayJoin(vertex)` tells where that is allowed.
  template <class MayJoin>
  static void JoinPieces(std::vector<Piece>& pieces, MayJoin&& mayJoin);

  /// The subpath node for node when the pieces are all of its segments, in order; reversed when they run that
  /// way.
  bool CopyWhole(const std::vector<Piece>& pieces);
  /// The same when it is known that all of the subpath's segments are wanted. False, and nothing written,
  /// when its nodes cannot be copied as they are.
  bool CopySubpath(const Subpath& sub, bool forward);
  void WriteClosed(const std::vector<Piece>& pieces);
  void WriteOpen(const std::vector<Piece>& pieces);
  /// The last subpath written came from this segment: it carries its letter's flag if it is the first that
  /// does.
  void MarkLetter(int segment);

  const Subpath& SubpathOf(const Piece& p) const {
    return in_.subpaths[static_cast<std::size_t>(in_.segments[static_cast<std::size_t>(p.segment)].subpath)];
  }

 private:
  bool IsClean(const Subpath& sub) const;
  void WritePiece(const Piece& p, unsigned char flags);
  void Push(const DPoint& p, unsigned char flags, unsigned char kind);
  DPoint Place(int vertex);
  int NodeAt(const Piece& p, double t) const;
  unsigned char EndFlags(const Piece& p, double t) const;
  unsigned char FlagsBetween(const Piece& p, const Piece& q) const;

  const Collection& in_;
  const EdgeSet& set_;
  Outcome& out_;
  std::vector<int> letter_;  // of each subpath: the subpath that begins its letter, or -1
  std::vector<char> begun_;  // letters of which something has been written
  std::size_t start_ = 0;    // of the last subpath written
};

template <class MayJoin>
void PieceWriter::JoinPieces(std::vector<Piece>& pieces, MayJoin&& mayJoin) {
  std::size_t kept = 0;
  for (std::size_t k = 1; k < pieces.size(); ++k) {
    if (pieces[kept].ContinuesIn(pieces[k]) && mayJoin(pieces[kept].to)) {
      pieces[kept].t1 = pieces[k].t1;
      pieces[kept].to = pieces[k].to;
    } else {
      pieces[++kept] = pieces[k];
    }
  }
  if (!pieces.empty()) pieces.resize(kept + 1);
}

}  // namespace Lumo::Planar
