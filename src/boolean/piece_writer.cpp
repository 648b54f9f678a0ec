#include "boolean/piece_writer.h"

#include "lumo/path_array.h"

namespace Lumo::Planar {
namespace {

std::size_t At(int i) { return static_cast<std::size_t>(i); }

/// Parameters of one segment this close continue one another: what lay between was shorter than the contact
/// distance.
constexpr double kParameterGap = 0x1p-10;

constexpr unsigned char kNodeFlags = NODETYPE::kContinuityMask | NODETYPE::kUser | NODETYPE::kEnabled;

/// The flags of an on-curve node that travel with it; both continuity bits at once mean nothing.
unsigned char CarriedFlags(NODETYPE type) {
  const auto flags = static_cast<unsigned char>(type & kNodeFlags);
  const bool odd = (flags & NODETYPE::kContinuityMask) == NODETYPE::kContinuityMask;
  return static_cast<unsigned char>(odd ? flags & ~NODETYPE::kContinuityMask : flags);
}

}  // namespace

bool Piece::ContinuesIn(const Piece& next) const {
  return segment == next.segment && to == next.from && Forward() == next.Forward() &&
         std::fabs(t1 - next.t0) < kParameterGap && (next.t1 - next.t0) * (next.t1 - t1) > 0;
}

PieceWriter::PieceWriter(const Collection& in, const EdgeSet& edges, Outcome& out)
    : in_(in), set_(edges), out_(out), letter_(in.subpaths.size(), -1), begun_(in.subpaths.size(), false) {
  int letter = -1, path = -1;
  for (std::size_t i = 0; i < in_.subpaths.size(); ++i) {
    const Subpath& sub = in_.subpaths[i];
    if (sub.path != path) path = sub.path, letter = -1;
    if (in_.paths[At(sub.path)].types[sub.first].IsLetter()) letter = static_cast<int>(i);
    letter_[i] = letter;
  }
}

/// Whether the nodes can be copied as they are: a malformed source must not make a malformed result.
bool PieceWriter::IsClean(const Subpath& sub) const {
  const NODETYPE* types = in_.paths[At(sub.path)].types;
  if (!types[sub.first].IsMove()) return false;
  for (int k = sub.first; k <= sub.last; ++k) {
    if (static_cast<int>(types[k].Continuity()) == 3) return false;
    if (types[k].IsClosed() != (sub.closed && (k == sub.first || k == sub.last))) return false;
  }
  for (int k = sub.first + 1; k <= sub.last;) {
    if (types[k].IsLine()) {
      ++k;
    } else if (k + 2 <= sub.last && types[k].IsControl() && types[k + 1].IsControl() &&
               types[k + 2].IsCurve()) {
      k += 3;
    } else {
      return false;
    }
  }
  return !sub.closed || (types[sub.first].IsUser() && !types[sub.last].IsUser());
}

bool PieceWriter::CopyWhole(const std::vector<Piece>& pieces) {
  const Subpath& sub = SubpathOf(pieces[0]);
  const int n = sub.lastSegment - sub.firstSegment;
  if (static_cast<int>(pieces.size()) != n) return false;
  const bool forward = pieces[0].Forward();
  for (int k = 0; k < n; ++k) {
    const Piece& p = pieces[At(k)];
    if (!p.Whole() || p.Forward() != forward) return false;
    if (p.segment != (forward ? sub.firstSegment + k : sub.lastSegment - 1 - k)) return false;
  }
  return CopySubpath(sub, forward);
}

bool PieceWriter::CopySubpath(const Subpath& sub, bool forward) {
  if ((sub.encloses && !sub.closed) || !IsClean(sub)) return false;
  const PathView& path = in_.paths[At(sub.path)];
  start_ = out_.points.size();
  out_.points.insert(out_.points.end(), path.points + sub.first, path.points + sub.last + 1);
  out_.types.insert(out_.types.end(), path.types + sub.first, path.types + sub.last + 1);
  if (!forward) Reverse(out_.points.data() + start_, out_.types.data() + start_, sub.last - sub.first + 1);
  return true;
}

void PieceWriter::WriteClosed(const std::vector<Piece>& pieces) {
  start_ = out_.points.size();
  Push(Place(pieces[0].from), FlagsBetween(pieces.back(), pieces[0]), NODETYPE::kMove);
  for (std::size_t k = 0; k < pieces.size(); ++k) {
    WritePiece(pieces[k], FlagsBetween(pieces[k], pieces[(k + 1) % pieces.size()]));
  }
  out_.types[start_] |= NODETYPE::kClosed | NODETYPE::kUser;
  out_.types.back() |= NODETYPE::kClosed;
  out_.types.back().Set(NODETYPE::kUser, false);
}

void PieceWriter::WriteOpen(const std::vector<Piece>& pieces) {
  start_ = out_.points.size();
  Push(Place(pieces[0].from), EndFlags(pieces[0], pieces[0].t0), NODETYPE::kMove);
  for (std::size_t k = 0; k < pieces.size(); ++k) {
    const bool last = k + 1 == pieces.size();
    WritePiece(pieces[k], last ? EndFlags(pieces[k], pieces[k].t1) : FlagsBetween(pieces[k], pieces[k + 1]));
  }
}

void PieceWriter::WritePiece(const Piece& p, unsigned char flags) {
  const DPoint to = Place(p.to);
  const Segment& s = in_.segments[At(p.segment)];
  if (!s.curve.line) {
    const PathView& path = in_.paths[At(SubpathOf(p).path)];
    const DPoint* points = path.points;
    const Curve source{{points[s.startNode], points[s.endNode - 2], points[s.endNode - 1], points[s.endNode]},
                       false};
    Curve c = Part(source, p.t0, p.t1);
    if (p.t0 == 1 && p.t1 == 0) c = {{source.p[3], source.p[2], source.p[1], source.p[0]}, false};
    MoveEnds(c, Place(p.from), to);
    const bool whole = p.Whole(), forward = p.Forward();
    const auto handle = [&](int node) {
      return static_cast<unsigned char>(whole ? path.types[node] & (NODETYPE::kUser | NODETYPE::kEnabled)
                                              : 0);
    };
    Push(c.p[1], handle(forward ? s.endNode - 2 : s.endNode - 1), NODETYPE::kControl);
    Push(c.p[2], handle(forward ? s.endNode - 1 : s.endNode - 2), NODETYPE::kControl);
  }
  Push(to, flags, s.curve.line ? NODETYPE::kLine : NODETYPE::kCurve);
}

void PieceWriter::Push(const DPoint& p, unsigned char flags, unsigned char kind) {
  out_.points.push_back(p);
  out_.types.push_back(static_cast<unsigned char>(flags | kind));
}

DPoint PieceWriter::Place(int v) {
  const Vertex& vertex = set_.vertices[At(v)];
  if (vertex.node >= 0) return in_.paths[At(vertex.path)].points[vertex.node];
  out_.computed = true;
  return in_.frame.Out(vertex.p);
}

/// The source node at parameter t of a piece; -1 at a cut.
int PieceWriter::NodeAt(const Piece& p, double t) const {
  const Segment& s = in_.segments[At(p.segment)];
  const Subpath& sub = SubpathOf(p);
  if (t == 0) return s.startNode;
  if (t != 1) return -1;
  // The end of the last segment is the start of the first: the move node speaks for both.
  if (p.segment == sub.lastSegment - 1 && sub.encloses) return in_.segments[At(sub.firstSegment)].startNode;
  return s.endNode;
}

/// Flags of the end of an open piece.
unsigned char PieceWriter::EndFlags(const Piece& p, double t) const {
  const int node = NodeAt(p, t);
  if (node < 0) return NODETYPE::kUser;
  return CarriedFlags(in_.paths[At(SubpathOf(p).path)].types[node]);
}

/// Flags of the node between two pieces that follow one another.
unsigned char PieceWriter::FlagsBetween(const Piece& p, const Piece& q) const {
  const int nodeP = NodeAt(p, p.t1), nodeQ = NodeAt(q, q.t0);
  const Subpath &subP = SubpathOf(p), &subQ = SubpathOf(q);
  const NODETYPE* types = in_.paths[At(subP.path)].types;
  if (nodeP >= 0 && nodeP == nodeQ && &subP == &subQ) return CarriedFlags(types[nodeP]);
  unsigned char flags = NODETYPE::kUser;
  if (nodeP >= 0) flags = static_cast<unsigned char>(flags | (types[nodeP] & NODETYPE::kEnabled));
  return flags;
}

void PieceWriter::MarkLetter(int segment) {
  const int letter = letter_[At(in_.segments[At(segment)].subpath)];
  const bool begins = letter >= 0 && !begun_[At(letter)];
  if (begins) begun_[At(letter)] = true;
  for (std::size_t k = start_; k < out_.types.size(); ++k) {
    if (out_.types[k].IsOnCurve()) out_.types[k].Set(NODETYPE::kLetter, false);
  }
  out_.types[start_].Set(NODETYPE::kLetter, begins);
}

}  // namespace Lumo::Planar
