#include <cmath>

#include "math/cubic/offset_pieces.h"
#include "offset/piece.h"
#include "offset/tolerances.h"

namespace Lumo::Offset {

using namespace TavMath;
using namespace TavMath::CubicBezier;

void Part::MoveStart(const DPoint& to) {
  curve[1] += to - curve[0];
  curve[0] = to;
}

namespace {

/// Offsets one cubic piece by piece.
class BezierOffset {
 public:
  BezierOffset(double distance, double tolerance, std::vector<Part>& parts)
      : distance_(distance), tolerance_(tolerance), parts_(parts) {}

  void Run(Cubic piece, int depth) {
    for (int k = 0; k < kSplitsInARow; ++k) {
      if (piece[1] == piece[0] && piece[2] == piece[0] && piece[3] == piece[0]) return;  // no direction
      Cubic result;
      double split = -1.0;
      if (FindBezierOffsetCurve(piece.data(), result.data(), distance_, tolerance_, split))
        return Add(result);
      if (depth >= kSplitDepth || ++splits_ > kMostSplits) return AddUnmeasured(piece);
      Cubic left, right;
      if (!(split > 0.0 && split < 1.0)) {
        Split(Extremum(piece), piece.data(), left.data(), right.data());
        RunHalf(left, depth + 1);
        RunHalf(right, depth + 1);
        return;
      }
      Split(split, piece.data(), left.data(), right.data());
      Run(left, depth + 1);
      piece = right;
    }
    AddUnmeasured(piece);
  }

 private:
  static double Extremum(const Cubic& piece) {
    double t[6];
    const int count = FindCurvatureMinMax(piece.data(), t);
    for (int k = 0; k < count; ++k)
      if (t[k] > kExtremumFrom && t[k] < kExtremumTo) return t[k];
    return 0.5;
  }

  void RunHalf(const Cubic& half, int depth) {
    if (DistanceSqrd(half[0], half[1]) > kUsableHandleSqrd &&
        DistanceSqrd(half[2], half[3]) > kUsableHandleSqrd && IsBezierValidForOffset(half.data(), distance_))
      AddUnmeasured(half);
    else
      Run(half, depth);
  }

  void Add(const Cubic& result) {
    for (const DPoint& p : result)
      if (!std::isfinite(p.x) || !std::isfinite(p.y)) return;
    parts_.push_back({result, false});
  }

  /// Ends, end tangents and end speeds of the parallel curve.
  void AddUnmeasured(const Cubic& piece) {
    const DVector t0 = Normalized(SafeBezierTangent(0.0, piece.data()));
    const DVector t1 = Normalized(SafeBezierTangent(1.0, piece.data()));
    const DPoint from = piece[0] + distance_ * LeftNormal(t0), to = piece[3] + distance_ * LeftNormal(t1);
    const double chord = Distance(piece[0], piece[3]), stretch = chord > 0 ? Distance(from, to) / chord : 0;
    Add({from, from + stretch * (piece[1] - piece[0]), to + stretch * (piece[2] - piece[3]), to});
  }

  double distance_;
  double tolerance_;
  std::vector<Part>& parts_;
  int splits_ = 0;
};

void OffsetLine(const DPoint& from, const DPoint& to, double distance, Piece& piece,
                std::vector<Part>& parts) {
  const DVector along = to - from;
  piece.startTangent = piece.endTangent = along;
  if (!(LengthSqrd(along) > kNormalizeLimitSqrd)) return;
  const DVector normal = distance * LeftNormal(Normalized(along));
  const DPoint a = from + normal, b = to + normal;
  parts.push_back({{a, a, b, b}, true});
}

/// `cubics`: room that is used again for every curve.
void OffsetBezier(const DPoint bezier[4], double distance, double tolerance, Piece& piece,
                  std::vector<Part>& parts, std::vector<Cubic>& cubics) {
  piece.startTangent = SafeBezierTangent(0.0, bezier);
  piece.endTangent = SafeBezierTangent(1.0, bezier);
  cubics.clear();
  if (OffsetCubicPieces(bezier, distance, tolerance, kCuspPrecision, cubics)) {
    for (const Cubic& cubic : cubics) parts.push_back({cubic, false});
    return;
  }
  cubics.clear();
  GetSegmentsToOffset(bezier, cubics, distance);
  BezierOffset offset(distance, cubics.size() > 1 ? kCuspPrecision * tolerance : tolerance, parts);
  for (const Cubic& cubic : cubics) offset.Run(cubic, 0);
}

}  // namespace

Pieces::Pieces(const Source& source, double distance, double tolerance) {
  const auto most = static_cast<std::size_t>(source.count);
  list.reserve(most);
  parts_.reserve(most);
  std::vector<std::size_t> ends;  // one past the last part of each piece
  ends.reserve(most);
  std::vector<Cubic> cubics;
  for (int i = 0; i + 1 < source.count;) {
    const bool curve = source.nodes[i + 1].IsControl() && i + 3 < source.count;
    Piece& piece = list.emplace_back();
    piece.startNode = i;
    piece.endNode = i + (curve ? 3 : 1);
    const DPoint& from = source.points[i];
    const DPoint& to = source.points[piece.endNode];
    piece.sourceLength = Distance(from, to);
    if (curve)
      OffsetBezier(source.points + i, distance, tolerance, piece, parts_, cubics);
    else
      OffsetLine(from, to, distance, piece, parts_);
    i = piece.endNode;
    ends.push_back(parts_.size());
  }
  // Only now do the parts stay where they are.
  for (std::size_t k = 0, first = 0; k < list.size(); first = ends[k++])
    list[k].parts = std::span(parts_).subspan(first, ends[k] - first);
}

}  // namespace Lumo::Offset
