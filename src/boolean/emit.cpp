#include "boolean/emit.h"

#include "boolean/piece_writer.h"

namespace Lumo::Planar {
namespace {

std::size_t At(int i) { return static_cast<std::size_t>(i); }

class OutlineEmitter {
 public:
  OutlineEmitter(const Collection& in, const EdgeSet& edges, const Outlines& outlines, Outcome& out)
      : in_(in), set_(edges), loops_(outlines), out_(out), writer_(in, edges, out) {}

  void Run(Direction direction) {
    const bool turn = direction == Direction::clockwise || !MostRunForward();
    struct Ordered {
      int firstSegment, loop;
      const Outlines::Whole* whole;
    };
    std::vector<Ordered> order;
    order.reserve(loops_.wholes.size() + loops_.first.size());
    for (const Outlines::Whole& whole : loops_.wholes) {
      order.push_back({in_.subpaths[At(whole.subpath)].firstSegment, -1, &whole});
    }
    for (int i = 0; i + 1 < static_cast<int>(loops_.first.size()); ++i) {
      order.push_back({FirstSegment(i), i, nullptr});
    }
    std::stable_sort(order.begin(), order.end(),
                     [](const Ordered& a, const Ordered& b) { return a.firstSegment < b.firstSegment; });
    std::size_t nodes = loops_.halves.size() * 3 + order.size();
    for (const Outlines::Whole& whole : loops_.wholes) {
      const Subpath& sub = in_.subpaths[At(whole.subpath)];
      nodes += static_cast<std::size_t>(sub.last - sub.first + 2);
    }
    out_.points.reserve(nodes);
    out_.types.reserve(nodes);
    for (const Ordered& o : order) {
      if (o.whole) {
        EmitWhole(o.whole->subpath, o.whole->forward != turn);
        writer_.MarkLetter(o.firstSegment);
        continue;
      }
      Gather(o.loop, turn);
      StartAtAJoint();
      PieceWriter::JoinPieces(pieces_, [this](int v) { return MayJoin(v); });
      ChooseStart();
      if (!writer_.CopyWhole(pieces_)) writer_.WriteClosed(pieces_);
      writer_.MarkLetter(o.firstSegment);
    }
  }

 private:
  bool MostRunForward() const {
    std::ptrdiff_t balance = 0;
    for (const int h : loops_.halves) balance += (h & 1) ? -1 : 1;
    for (const Outlines::Whole& whole : loops_.wholes) {
      const Subpath& sub = in_.subpaths[At(whole.subpath)];
      balance += whole.forward ? sub.lastArc - sub.firstArc : sub.firstArc - sub.lastArc;
    }
    return balance > 0;
  }

  /// A subpath that meets nothing: node for node if it is well formed, else segment for segment.
  void EmitWhole(int subpath, bool forward) {
    const Subpath& sub = in_.subpaths[At(subpath)];
    if (writer_.CopySubpath(sub, forward)) return;
    pieces_.clear();
    for (int arc = sub.firstArc; arc < sub.lastArc;) {
      const int segment = in_.arcs[At(arc)].segment, from = in_.arcs[At(arc)].v0;
      while (arc + 1 < sub.lastArc && in_.arcs[At(arc + 1)].segment == segment) ++arc;
      const int to = in_.arcs[At(arc++)].v1;
      pieces_.push_back(forward ? Piece{segment, 0, 1, from, to} : Piece{segment, 1, 0, to, from});
    }
    if (!forward) std::reverse(pieces_.begin(), pieces_.end());
    writer_.WriteClosed(pieces_);
  }

  int FirstSegment(int loop) const {
    int least = set_.edges[At(loops_.halves[At(loops_.first[At(loop)])] >> 1)].segment;
    for (int k = loops_.first[At(loop)]; k < loops_.first[At(loop) + 1]; ++k) {
      least = (std::min)(least, set_.edges[At(loops_.halves[At(k)] >> 1)].segment);
    }
    return least;
  }

  void Gather(int loop, bool turn) {
    pieces_.clear();
    for (int k = loops_.first[At(loop)]; k < loops_.first[At(loop) + 1]; ++k) {
      const int h = loops_.halves[At(k)];
      const Edge& e = set_.edges[At(h >> 1)];
      const bool forward = ((h & 1) == 0) != turn;
      pieces_.push_back(forward ? Piece{e.segment, e.t0, e.t1, e.v0, e.v1}
                                : Piece{e.segment, e.t1, e.t0, e.v1, e.v0});
    }
    if (turn) std::reverse(pieces_.begin(), pieces_.end());
  }

  /// Pieces are one again where nothing else of the result meets them.
  bool MayJoin(int vertex) const { return loops_.degree[At(vertex)] == 2; }

  /// Turns the loop so that no pair of pieces to be joined straddles its seam.
  void StartAtAJoint() {
    const std::size_t n = pieces_.size();
    const auto joins = [&](std::size_t k) {
      const Piece& before = pieces_[(k + n - 1) % n];
      return before.ContinuesIn(pieces_[k]) && MayJoin(before.to);
    };
    std::size_t start = 0;
    while (start < n && joins(start)) ++start;
    if (start < n)
      std::rotate(pieces_.begin(), pieces_.begin() + static_cast<std::ptrdiff_t>(start), pieces_.end());
  }

  /// 0: starts at the start of a subpath; 1: at another original node; 2: at a computed point.
  int StartClass(const Piece& p) const {
    if (p.t0 != 0 && p.t0 != 1) return 2;
    const Subpath& sub = writer_.SubpathOf(p);
    const bool first = p.t0 == 0 ? p.segment == sub.firstSegment : p.segment == sub.lastSegment - 1;
    return first ? 0 : 1;
  }

  void ChooseStart() {
    std::size_t best = 0;
    int bestClass = 3;
    for (std::size_t k = 0; k < pieces_.size(); ++k) {
      const int c = StartClass(pieces_[k]);
      if (c < bestClass || (c == bestClass && pieces_[k].segment < pieces_[best].segment))
        bestClass = c, best = k;
    }
    std::rotate(pieces_.begin(), pieces_.begin() + static_cast<std::ptrdiff_t>(best), pieces_.end());
  }

  const Collection& in_;
  const EdgeSet& set_;
  const Outlines& loops_;
  Outcome& out_;
  PieceWriter writer_;
  std::vector<Piece> pieces_;
};

/// A piece of an open subpath that is wanted.
struct OpenPiece {
  Piece piece;
  friend bool operator<(const OpenPiece& a, const OpenPiece& b) {
    return a.piece.segment != b.piece.segment ? a.piece.segment < b.piece.segment : a.piece.t0 < b.piece.t0;
  }
};

bool IsWanted(const PlanarMap& map, const Request& request, int edge, bool onOutline) {
  if (request.openParts == OpenParts::keepAll) return true;
  const bool inside = onOutline || request.region.b(map.winding[At(map.face[At(2 * edge)])].b);
  return inside == (request.openParts == OpenParts::keepInsideB);
}

std::vector<OpenPiece> WantedPieces(const EdgeSet& edges, const PlanarMap& map, const Request& request) {
  std::vector<OpenPiece> pieces;
  const auto add = [&](const Edge& e) { pieces.push_back({{e.segment, e.t0, e.t1, e.v0, e.v1}}); };
  for (int e = 0; e < static_cast<int>(edges.edges.size()); ++e) {
    const Edge& edge = edges.edges[At(e)];
    if (edge.open && IsWanted(map, request, e, false)) add(edge);
  }
  for (const EdgeSet::Rider& rider : edges.riders) {
    const bool onOutline = edges.edges[At(rider.host)].step.b != 0;
    if (IsWanted(map, request, rider.host, onOutline)) add(rider.edge);
  }
  std::sort(pieces.begin(), pieces.end());
  return pieces;
}

}  // namespace

void EmitOutlines(const Collection& collection, const EdgeSet& edges, const Outlines& outlines,
                  Direction direction, Outcome& outcome) {
  OutlineEmitter(collection, edges, outlines, outcome).Run(direction);
}

void EmitOpenParts(const Collection& collection, const EdgeSet& edges, const PlanarMap& map,
                   const Request& request, Outcome& outcome) {
  const std::vector<OpenPiece> wanted = WantedPieces(edges, map, request);
  PieceWriter writer(collection, edges, outcome);
  std::vector<Piece> chain;
  for (std::size_t k = 0; k < wanted.size(); ++k) {
    chain.push_back(wanted[k].piece);
    const bool goesOn = k + 1 < wanted.size() && wanted[k].piece.to == wanted[k + 1].piece.from &&
                        &writer.SubpathOf(wanted[k].piece) == &writer.SubpathOf(wanted[k + 1].piece);
    if (goesOn) continue;
    PieceWriter::JoinPieces(chain, [](int) { return true; });
    if (!writer.CopyWhole(chain)) writer.WriteOpen(chain);
    writer.MarkLetter(chain[0].segment);
    chain.clear();
  }
}

}  // namespace Lumo::Planar
