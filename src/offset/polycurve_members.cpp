// The members of the path class that offset; they belong to this floor, the class lies below.

#include <cmath>
#include <memory>
#include <new>

#include "lumo/offset.h"
#include "lumo/offset_corners.h"
#include "lumo/polycurve.h"
#include "offset/raw_path.h"
#include "offset/source.h"
#include "tav/math/rect.h"
#include "tav/pref.h"

namespace Lumo {

using TavMath::DPoint;

namespace {

/// Interior angle (degrees) below which a parallel curve's corners are bevelled.
constexpr double kParallelMiterLimit = 15.0;

/// The raw pieces of every subpath, for callers that asked for the pure curve and are allowed to.
PolycurveT<DPoint> PureOffset(const PolycurveT<DPoint>& path, double distance,
                              const Offset::OffsetSettings& settings) {
  Offset::OwnedPath source, raw;
  source.Append(path.GetPoints(), path.GetNodeTypes(), static_cast<int>(path.GetPointCount()));
  for (const Offset::Range& range : Offset::Subpaths(source.nodes.data(), source.Count())) {
    Offset::OwnedPath subpath;
    subpath.Append(source.points.data() + range.first, source.nodes.data() + range.first,
                   range.end - range.first);
    if (distance < 0) subpath.Reverse();
    Offset::OwnedPath one;
    Offset::AppendPureOffset(Offset::SourceOf(subpath, {0, subpath.Count()}), std::abs(distance), settings,
                             one.Out());
    if (distance < 0 && !one.IsEmpty()) one.Reverse();
    raw.Append(one);
  }
  PolycurveT<DPoint> result;
  result.SetPoints(std::move(raw.points), std::move(raw.nodes));
  return result;
}

bool IsFinite(const PolycurveT<DPoint>& path) {
  for (std::size_t k = 0; k < path.GetPointCount(); ++k)
    if (!std::isfinite(path.GetPoint(k).x) || !std::isfinite(path.GetPoint(k).y)) return false;
  return true;
}

PolycurveT<DPoint> ParallelCurve(const PolycurveT<DPoint>& path, double distance,
                                 std::optional<double> maxError, bool pure) {
  if (path.IsEmpty() || !std::isfinite(distance)) return {};
  auto corner = std::make_unique<MiteredCorner>(kParallelMiterLimit, nullptr);
  auto cap = std::make_unique<NoCorner>();  // the settings own both, once memory for both was found
  Offset::OffsetSettings settings(corner.release(), cap.release(), distance, false);
  settings.SetCloseShape(false);
  settings.SetCombineShape(false);
  settings.SetOpenCurveOffsetSide(Offset::EOpenCurveOffsetSide::left);
  if (maxError) settings.SetMaxOffsetError(*maxError);
  if (pure) return IsFinite(path) ? PureOffset(path, distance, settings) : PolycurveT<DPoint>();
  std::vector<DPoint> points;
  std::vector<NODETYPE> nodes;
  CreateOffsetCurve(path.GetPoints(), path.GetNodeTypes(), static_cast<int>(path.GetPointCount()), points,
                    nodes, settings);
  PolycurveT<DPoint> result;
  result.SetPoints(std::move(points), std::move(nodes));
  return result;
}

/// The source in doubles, whatever it is kept in.
const PolycurveT<DPoint>& AsDoubles(const PolycurveT<DPoint>& path) { return path; }
PolycurveT<DPoint> AsDoubles(const PolycurveT<tagPOINT>& path) { return PolycurveT<DPoint>(path); }

void Take(PolycurveT<DPoint>& target, PolycurveT<DPoint>&& source) { target = std::move(source); }
void Take(PolycurveT<tagPOINT>& target, PolycurveT<DPoint>&& source) {
  target = PolycurveT<tagPOINT>(source);
}

}  // namespace

template <class T>
bool PolycurveT<T>::OffsetCurve(const Offset::OffsetSettings& settings) noexcept {
  try {
    std::vector<T> points;
    std::vector<NODETYPE> nodes;
    CreateOffsetCurve(GetPoints(), GetNodeTypes(), static_cast<int>(GetPointCount()), points, nodes,
                      settings);
    const bool any = !points.empty();
    return SetPoints(std::move(points), std::move(nodes)) && any;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

template <class T>
PolycurveT<T> PolycurveT<T>::CreateParallelCurve(double distance, std::optional<double> maxError,
                                                 bool pure) const noexcept {
  return CreateParallelCurves(distance, 1, maxError, pure);
}

template <class T>
PolycurveT<T> PolycurveT<T>::CreateParallelCurves(double distance, std::size_t count,
                                                  std::optional<double> maxError, bool pure) const noexcept {
  PolycurveT<T> result;
  try {
    // Read at each call: the pure curve needs both the request and the preference.
    const bool isPure = pure && TavPref::AllowPureOffsetCurve().GetValue();
    const PolycurveT<DPoint> source(AsDoubles(*this));
    PolycurveT<DPoint> all;
    for (std::size_t k = 1; k <= count; ++k)
      if (!all.PushBack(ParallelCurve(source, static_cast<double>(k) * distance, maxError, isPure))) break;
    Take(result, std::move(all));
  } catch (const std::bad_alloc&) {
    result.Clear();
  }
  return result;
}

#define LUMO_OFFSET_MEMBERS(T)                                                                           \
  LUMO_INSTANTIATE bool PolycurveT<T>::OffsetCurve(const Offset::OffsetSettings&) noexcept;              \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::CreateParallelCurve(double, std::optional<double>, bool) \
      const noexcept;                                                                                    \
  LUMO_INSTANTIATE PolycurveT<T> PolycurveT<T>::CreateParallelCurves(                                    \
      double, std::size_t, std::optional<double>, bool) const noexcept;
LUMO_OFFSET_MEMBERS(tagPOINT)
LUMO_OFFSET_MEMBERS(DPoint)

}  // namespace Lumo
