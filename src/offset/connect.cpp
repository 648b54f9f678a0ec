#include "lumo/offset_corners.h"
#include "offset/raw_path.h"
#include "offset/tolerances.h"
#include "tav/math/angle.h"

namespace Lumo::Offset {

using namespace TavMath;

namespace {

/// Whether a line runs straight on to a point: a node there would be one too many.
bool RunsStraight(const DPoint& from, const DPoint& over, const DPoint& to) {
  return Dot(over - from, to - over) > 0 && AreCollinear(from, over, to, kSourceCollinearSqrd);
}

/// `first`: the index at which the output's subpath begins.
void AppendPart(const Output& out, const Part& part, std::size_t first) {
  const std::size_t n = out.points.size();
  if (part.line) {
    // A miter's second line and the line that it leads into are one.
    if (n >= first + 2 && out.nodes.back().IsLine() &&
        RunsStraight(out.points[n - 2], out.points[n - 1], part.End())) {
      out.points.back() = part.End();
      return;
    }
    out.points.push_back(part.End());
    out.nodes.push_back(NODETYPE::kLine | NODETYPE::kUser);
  } else {
    PushCubic(out, part.curve[1], part.curve[2], part.curve[3]);
  }
}

void LineTo(const Output& out, const DPoint& to) {
  if (out.points.back() == to) return;
  out.points.push_back(to);
  out.nodes.push_back(NODETYPE::kLine | NODETYPE::kUser);
}

bool DoPartsIntersect(const Part& f, const Part& g) {
  if (f.line && g.line) {
    const DVector u = f.End() - f.Start(), v = g.End() - g.Start(), w = g.Start() - f.Start();
    const double denominator = Cross(u, v);
    if (denominator == 0) return false;
    const double tf = Cross(w, v) / denominator, tg = Cross(w, u) / denominator;
    return tf >= 0 && tf <= 1 && tg >= 0 && tg <= 1;
  }
  if (f.line) return CubicBezier::DoesBezierIntersectLineSegment(g.curve.data(), f.Start(), f.End());
  if (g.line) return CubicBezier::DoesBezierIntersectLineSegment(f.curve.data(), g.Start(), g.End());
  return CubicBezier::DoBeziersIntersect(f.curve.data(), g.curve.data());
}

/// Puts the pieces of one source together, in order.
class Connector {
 public:
  Connector(const Source& source, double distance, const OffsetSettings& settings, const Output& out)
      : source_(source), distance_(distance), settings_(settings), out_(out), first_(out.points.size()) {}

  void Run(std::vector<Piece>& pieces) {
    for (Piece& piece : pieces) {
      if (!piece.IsUsable()) continue;
      if (last_ == nullptr) {
        out_.points.push_back(piece.parts.front().Start());
        out_.nodes.push_back(NODETYPE::kUser);
        firstPiece_ = &piece;
      } else {
        Connect(*last_, piece, piece.startNode);
      }
      Append(piece);
    }
    if (last_ != nullptr && source_.closed) Close();
  }

  /// Ends at the start of a piece that is not appended.
  void EndAt(Piece& next) {
    if (last_ == nullptr || !next.IsUsable()) return;
    const DPoint start = next.parts.front().Start();  // connecting may move it
    Connect(*last_, next, next.startNode);
    LineTo(out_, start);
  }

 private:
  /// False at a cusp of the parallel curve, where it turns back.
  static bool RunsOnInto(const Part& f, const Part& g) {
    return Dot(f.curve[3] - f.curve[2], g.curve[1] - g.curve[0]) > 0;
  }

  void Append(const Piece& piece) {
    for (std::size_t k = 0; k < piece.parts.size(); ++k) {
      AppendPart(out_, piece.parts[k], first_);
      if (k + 1 < piece.parts.size() && RunsOnInto(piece.parts[k], piece.parts[k + 1]))
        out_.nodes.back().SetContinuity(ContinuityType::smooth);
    }
    last_ = &piece;
  }

  /// The join at a node: none at smooth nodes; an enabled node marks an end with its cap.
  const OffsetCorner* JoinAt(int node) const {
    const NODETYPE type = source_.nodes[node];
    if (!type.IsCusp()) return nullptr;
    if (!type.IsEnabled()) return settings_.CornerType();
    return type.IsMove() ? settings_.StartCap() : settings_.EndCap();
  }

  /// From the output's last point to the start of the next piece, which may move.
  void Connect(const Piece& f, Piece& g, int node) {
    Part& next = g.parts.front();
    double gapSqrd = DistanceSqrd(out_.points.back(), next.Start());
    if (gapSqrd < settings_.MaxConnectErrorSqrd()) {
      MeetHalfWay(next);
      // Only a smooth source node promises that the two tangents agree.
      out_.nodes.back().SetContinuity(source_.nodes[node].Continuity());
      return;
    }
    const std::size_t joined = out_.nodes.size();
    if (const OffsetCorner* join = JoinAt(node))
      join->CreateCorner(out_.points, out_.nodes, node == 0 ? LastSegmentLeft() : node - 1, node,
                         source_.points, source_.nodes, distance_, settings_.MaxConnectError());
    // Where a tangent has next to no length a join begins apart from the piece before it: a line leads there.
    for (std::size_t k = joined; k < out_.nodes.size(); ++k)
      if (out_.nodes[k].IsMove()) out_.nodes[k].SetKind(NODETYPE::kLine);
    gapSqrd = DistanceSqrd(out_.points.back(), next.Start());
    if (gapSqrd <= kNormalizeLimitSqrd) {
      out_.points.back() = next.Start();
      return;
    }
    const bool runsOn = Degrees::GetFineAngle(f.endTangent, g.startTangent) <= kRunsOnDegrees;
    if (runsOn && gapSqrd < kRunsOnGapSqrd) return MeetHalfWay(next);
    const bool inner = Cross(f.endTangent, g.startTangent) > 0;
    if (!runsOn && !inner && gapSqrd < kCornerGapSqrd && !DoPartsIntersect(f.parts.back(), next))
      return MeetHalfWay(next);
    // Through the node on the inner side: the two pieces' own ground ends there, and the winding numbers
    // count it so. On the outer side the gap that no join has filled is closed by a straight line.
    if (inner) LineTo(out_, source_.points[node]);
    LineTo(out_, next.Start());
  }

  int LastSegmentLeft() const { return source_.count - 2; }

  void MeetHalfWay(Part& next) {
    const DPoint middle = Midpoint(out_.points.back(), next.Start());
    MoveLastPoint(out_, middle);
    next.MoveStart(middle);
  }

  /// Connects the end to the beginning, whose first part has been written already.
  void Close() {
    Piece& g = *firstPiece_;
    const DPoint before = g.parts.front().Start();
    Connect(*last_, g, g.startNode);
    const DPoint& start = g.parts.front().Start();
    if (start != before) {
      if (out_.nodes[first_ + 1].IsControl()) out_.points[first_ + 1] += start - before;
      out_.points[first_] = start;
    }
    if (out_.points.back() != out_.points[first_]) LineTo(out_, out_.points[first_]);
    DropStraightStart();
    NODETYPE& last = out_.nodes.back();
    out_.nodes[first_] |= NODETYPE::kClosed;
    out_.nodes[first_].SetContinuity(last.Continuity());
    last |= NODETYPE::kClosed;
    last.Set(NODETYPE::kUser, false);
  }

  /// A start in the middle of a straight line moves to that line's other end.
  void DropStraightStart() {
    const std::size_t n = out_.points.size();
    if (n < first_ + 4 || !out_.nodes[n - 1].IsLine() || !out_.nodes[first_ + 1].IsLine()) return;
    if (!RunsStraight(out_.points[n - 2], out_.points[n - 1], out_.points[first_ + 1])) return;
    out_.points.pop_back();
    out_.nodes.pop_back();
    out_.points[first_] = out_.points.back();
  }

  const Source& source_;
  double distance_;
  const OffsetSettings& settings_;
  const Output& out_;
  std::size_t first_;
  const Piece* last_ = nullptr;
  Piece* firstPiece_ = nullptr;
};

}  // namespace

void AppendRawOffset(const Source& source, double distance, const OffsetSettings& settings,
                     const Output& out) {
  Pieces all(source, distance, settings.MaxOffsetError());
  std::vector<Piece>& pieces = all.list;
  std::erase_if(pieces, [](const Piece& piece) { return !piece.IsUsable(); });
  for (std::size_t k = 1; k < pieces.size(); ++k)
    TrimPieces(pieces[k - 1], pieces[k], settings.MaxConnectErrorSqrd());
  // Most pieces are a cubic; a join is one, too.
  MakeRoom(out, 6 * pieces.size() + 2);
  if (source.closed && pieces.size() > 1)
    TrimPieces(pieces.back(), pieces.front(), settings.MaxConnectErrorSqrd());
  Connector(source, distance, settings, out).Run(pieces);
}

void AppendRawStretch(const Source& source, double distance, const OffsetSettings& settings,
                      const Output& out) {
  Pieces all(source, distance, settings.MaxOffsetError());
  std::vector<Piece>& pieces = all.list;
  if (pieces.empty()) return;
  Piece next = pieces.back();
  pieces.pop_back();
  std::erase_if(pieces, [](const Piece& piece) { return !piece.IsUsable(); });
  for (std::size_t k = 1; k < pieces.size(); ++k)
    TrimPieces(pieces[k - 1], pieces[k], settings.MaxConnectErrorSqrd());
  Connector connector(source, distance, settings, out);
  connector.Run(pieces);
  connector.EndAt(next);
}

void AppendPureOffset(const Source& source, double distance, const OffsetSettings& settings,
                      const Output& out) {
  const Pieces pieces(source, distance, settings.MaxOffsetError());
  const std::size_t first = out.points.size();
  for (const Piece& piece : pieces.list)
    for (const Part& part : piece.parts) {
      const bool forceNewStart = out.points.size() == first;
      if (part.line)
        AppendOffsetLine(out, part.Start(), part.End(), settings.MaxConnectErrorSqrd(), forceNewStart, false);
      else
        AppendOffsetCubic(out, part.curve.data(), settings.MaxConnectErrorSqrd(), forceNewStart);
    }
}

}  // namespace Lumo::Offset
