// Scripts of members over paths from arbitrary bytes: nothing crashes, hangs or writes through shared
// storage, and what is asked of the result stays in range.
#include <cmath>

#include "lumo/polycurve.h"
#include "lumo/polyline.h"
#include "lumo/shapes.h"
#include "path_bytes.h"

namespace {

using fuzz::Require;
using Lumo::PolycurveT;

template <class T>
void Ask(const PolycurveT<T>& path, const T& query) {
  path.GetTightBBox();
  path.GetTightEnabledBBox();
  path.GetArea();
  path.IsPointInShape(query, true, true);
  path.GetSide(query);
  path.GetEvenlySpacedPoints(5);
  path.GetLetterCurves();
  typename PolycurveT<T>::Closest nearest;
  if (path.FindClosestPoint(query, nearest)) {
    T point;
    Require(path.GetPointAt(nearest.position, point));
    Require(!path.FindClosestPoints(query).empty());
    path.GetTangentAt(nearest.position);
  }
  std::size_t nodes = 0;
  for (const auto& range : path.GetSubpathIndices()) nodes += range.end - range.first;
  Require(nodes <= path.GetPointCount());
  path.GetPolyline(10);
}

template <class T>
void Edit(PolycurveT<T>& path, fuzz::Input& input, int spread) {
  using Coordinate = decltype(T::x);
  const auto point = [&] {
    const int x = input.Coordinate(spread), y = input.Coordinate(spread);
    return T{static_cast<Coordinate>(x), static_cast<Coordinate>(y)};
  };
  const auto index = [&] { return static_cast<std::size_t>(input.Byte()); };
  const auto size = [&] { return static_cast<double>(input.Byte()) * spread * 0.1; };
  switch (input.Byte() % 48) {
    case 0:
      path.MoveTo(point());
      break;
    case 1:
      path.LineTo(point(), input.Byte() % 2);
      break;
    case 2:
      path.CubicTo(point(), point(), point());
      break;
    case 3:
      path.SetNodeType(index(), input.Byte());
      break;
    case 4:
      path.ReplacePoints(index(), index(), path, index(), index());
      break;
    case 5:
      path.DeletePoints(index(), index());
      break;
    case 6:
      path.Reverse();
      break;
    case 7:
      path.TranslatePoints({input.Coordinate(spread) * Coordinate(1), Coordinate(5)});
      break;
    case 8:
      path.TransformPoints(MATRIX{size(), 1, -1, size(), 0, 0}, index(), index());
      break;
    case 9:
      path.TransformToFit(path.GetLooseBBox());
      break;
    case 10:
      path.Join(index(), index());
      break;
    case 11:
      path.JoinEnabled();
      break;
    case 12:
      path.JoinEnabledAddingLineSegments();
      break;
    case 13:
      path.JoinEnabledAddingCurves();
      break;
    case 14:
      path.JoinTouchingSubpaths(size());
      break;
    case 15:
      path.JoinClosestPairsAddingLineSegments();
      break;
    case 16:
      path.CloseSubpath(index());
      break;
    case 17:
      path.CloseLastSubpath(size(), input.Byte() % 2);
      break;
    case 18:
      path.CloseOpenSubpaths();
      break;
    case 19:
      path.BreakAtLength(size());
      break;
    case 20:
      path.BreakEnabled(input.Byte() % 2);
      break;
    case 21:
      path.DeleteNode(index());
      break;
    case 22:
      path.DeleteSegment(index());
      break;
    case 23:
      path.DeleteSubpath(index());
      break;
    case 24:
      path.DeleteEnabled();
      break;
    case 25:
      path.DeleteSelectedChords();
      break;
    case 26:
      path.DeleteUnselectedChords();
      break;
    case 27:
      path.ConvertToLine();
      break;
    case 28:
      path.ConvertToCurve();
      break;
    case 29:
      path.ReverseEnabledSubpaths();
      break;
    case 30:
      path.SpinSubpath(index());
      break;
    case 31:
      path.Extend(size());
      break;
    case 32:
      path.MergeLines(size());
      break;
    case 33:
      path.AlignEnabledNodes(static_cast<Lumo::NodeEdge>(input.Byte() % 6));
      break;
    case 34:
      path.AlignSingleNodeToPixel(index(), size());
      break;
    case 35:
      path.DivideEqually(index());
      break;
    case 36:
      path.AppendWithJoin(path);
      break;
    case 37:
      path.AppendLineWithJoin(point(), point());
      break;
    case 38:
      path.CircularArcTo(point(), point());
      break;
    case 39:
      path.CreateEllipseSubpath(point(), size(), size(), size(), size(), input.Byte() % 2);
      break;
    case 40:
      path.CreateRectangleSubpath(size(), size(), size(),
                                  static_cast<Lumo::RectangleCorner>(input.Byte() % 4), false);
      break;
    case 41:
      path.RepairNodeTypes();
      break;
    case 42:
      path.ScrubDanglingMoves(input.Byte() % 2);
      break;
    case 43:
      path.RemoveSmallSubpaths(size());
      break;
    case 44:
      path.BreakAtSelfIntersections();
      break;
    case 45:
      path.BreakAtIntersections(PolycurveT<T>::CreateCircle(point(), size()));
      break;
    case 46:
      path.SetCont(index(), static_cast<ContinuityType>(input.Byte() % 4));
      break;
    case 47: {
      std::vector<T> row;
      for (int k = input.Byte() % 30; k > 0; --k) row.push_back(point());
      path.AppendFittedCurve(row, size());
      break;
    }
  }
}

template <class T>
void Run(fuzz::Input input) {
  const int spread = fuzz::Spread(input.Byte());
  const std::size_t script = input.Byte() * 2;
  const fuzz::Path<T> nodes = [&] {
    fuzz::Input arrays{input.data, input.size > script ? input.size - script : 0};
    return fuzz::TakePath<T>(arrays, spread);
  }();
  if (input.size > script) input = {input.data + (input.size - script), script};
  PolycurveT<T> path = Lumo::PolycurveRefT<T>(nodes.points.data(), nodes.types.data(), nodes.points.size());
  const PolycurveT<T> original = path;
  const PolycurveT<T> before(nodes.points.data(), nodes.types.data(), nodes.points.size());
  for (int step = 0; step < 60 && input.size > 0; ++step) {
    Edit(path, input, spread);
    if (path.GetPointCount() > 2000) path.Truncate(100);
  }
  Require(original == before);
  Require((path.GetPoints() == nullptr) == path.IsEmpty());
  Ask(path, path.GetPoint(0));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Run<tagPOINT>({data, size});
  Run<TavMath::DPoint>({data, size});
  return 0;
}
