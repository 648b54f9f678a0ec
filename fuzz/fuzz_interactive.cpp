// Hit tests, fill tests, lengths, nearest points, freehand capture and connection info over arrays that may
// break every rule. Answers that bear on each other agree.
#include <algorithm>
#include <cmath>

#include "lumo/crv_connect.h"
#include "lumo/crv_freehand.h"
#include "lumo/crv_hit.h"
#include "path_bytes.h"

namespace {

using fuzz::Require;
using Path = fuzz::Path<tagPOINT>;

void Hit(const Path& path, const tagRECT& rect, const tagPOINT& cursor) {
  const tagPOINT* const p = path.points.data();
  const NODETYPE* const t = path.types.data();
  double at = 0;
  const int hit = CRV_PathHit(&rect, &cursor, &at, p, t, path.count(), 0);
  Require(hit >= -1 && hit < path.count());
  Require(hit < 0 || t[hit].IsLine() || t[hit].IsCurve());
  const int clamped = CRV_PathHit(&rect, &cursor, &at, p, t, path.count(), 1);
  Require(clamped == -1 || clamped >= hit);
  UTLIsRectOnPath(p, t, path.count(), &rect);
  const auto all = CRV_NodeHitAll(&rect, p, t, path.count());
  const int node = CRV_NodeHit(&rect, p, t, path.count());
  Require((node == -1) == all.empty());
  for (std::size_t k = 0; k < all.size(); ++k) Require(t[all[k]].IsUser() && (k == 0 || all[k - 1] < all[k]));
}

void Fill(const Path& path, const tagPOINT& cursor) {
  const tagPOINT* const p = path.points.data();
  const NODETYPE* const t = path.types.data();
  int inside = -1;
  const int off = UTLIsPointInFill(p, t, path.count(), cursor, &inside);
  Require(off != 0 ? inside == 0 || inside == 1 : inside == -1);
  tagPOINT face{};
  if (UTLGetFacePoint(p, t, path.count(), &face) != 0)
    Require(UTLIsPointInFill(p, t, path.count(), face, &inside) == 1 && inside == 1);
  for (int k = -1; k <= path.count(); k += 1 + path.count() / 8)
    UTLIsSubpathHole_Ex(p, t, path.count(), k, k / 2);
}

void Measure(const Path& path, const tagPOINT& cursor) {
  const tagPOINT* const p = path.points.data();
  const NODETYPE* const t = path.types.data();
  std::vector<double> lengths(path.points.size(), -1);
  UTLGenerateNodeLengthArray(p, t, path.count(), lengths.data());
  for (std::size_t k = 0; k < lengths.size(); ++k)
    Require(k == 0 ? lengths[k] >= 0 : lengths[k] >= lengths[k - 1]);
  for (const double length : {-1.0, 0.3 * lengths.back(), 2 * lengths.back(), std::nan("")}) {
    double at = -1;
    int end = -1;
    if (UTLFastGotoPathLength(p, t, path.count(), lengths.data(), length, nullptr, &end, &at) != 0)
      Require(end > 0 && end < path.count() && at >= 0 && at <= 1);
  }
  double at = -1;
  int end = -1;
  if (UTLGetClosestPointOnPath(p, t, path.count(), cursor, nullptr, &end, &at) != 0)
    Require(end > 0 && end < path.count() && at >= 0 && at <= 1);
}

void Freehand(const Path& path, int spacing, int growth) {
  CRV_FREEHANDINFO* const record = CRV_FreehandInfoConstruct(growth, growth);
  for (std::size_t k = 0; k < path.points.size() && record->count < 20000; ++k) {
    if (path.types[k].IsLine()) CRV_FreehandInfoAppendPointForLine(record, path.points[k]);
    if (path.types[k].IsMove()) CRV_FreehandInfoAppendPoint(record, path.points[k]);
    if (!path.types[k].IsOnCurve()) CRV_FreehandInfoAppendPointExt(record, path.points[k], &spacing);
    Require(record->count <= record->capacity);
  }
  const int before = record->count;
  const int closed = CRV_FreehandInfoClose(record, growth & 1, &spacing);
  Require(closed == 0 || before >= 3);
  for (int k = 0; k < record->count; ++k) Require(record->corners[k] >= 0);
  CRV_FreehandInfoDestruct(record);
  CRV_FreehandInfoDestruct(
      CRV_FreehandInfoConstructFromPolygonExt(path.points.data(), path.count(), nullptr, growth, growth));
}

void Connect(const Path& path, const tagRECT& rect) {
  CRV_CONNECTINFO* const record =
      CRV_ConnectInfoConstruct(path.points.data(), path.types.data(), path.count());
  for (const int which : {1, 2, 3}) {
    if (CRV_ConnectInfoHitNode(record, {0, 0}, &rect, which) == 0) continue;
    Require((CRV_ConnectInfoHasNode(record, which) != 0) == (which < 3));
    Require(CRV_ConnectInfoGetNumber(record, which) < path.count());
  }
  CRV_ConnectInfoDestruct(record);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::Input input{data, size};
  const int spread = fuzz::Spread(input.Byte());
  const tagPOINT cursor{input.Coordinate(spread), input.Coordinate(spread)};
  const tagPOINT corner{input.Coordinate(spread), input.Coordinate(spread)};
  const int growth = input.Byte() % 5;
  const Path path = fuzz::TakePath<tagPOINT>(input, spread);
  if (path.points.empty()) return 0;
  const tagRECT rect{std::min(cursor.x, corner.x), std::max(cursor.y, corner.y), std::max(cursor.x, corner.x),
                     std::min(cursor.y, corner.y)};
  Hit(path, rect, cursor);
  Fill(path, cursor);
  Measure(path, cursor);
  Freehand(path, 5 * spread, growth);
  Connect(path, rect);
  return 0;
}
