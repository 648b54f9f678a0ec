#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>

#include "lumo/crv_freehand.h"
#include "math/point_traits.h"
#include "tav/math/rect.h"

namespace {

using Lumo::ToDouble;

constexpr int kMaxInt = std::numeric_limits<int>::max();
/// The strength of every corner of a closed stroke of four points, a triangle.
constexpr int kTriangleCorner = 250;

/// The three parallel arrays, zeroed: either all of them or none.
struct Arrays {
  tagPOINT* points = nullptr;
  int* lineMarks = nullptr;
  int* corners = nullptr;

  bool Allocate(int capacity) {
    const auto size = static_cast<std::size_t>(std::max(capacity, 1));
    points = static_cast<tagPOINT*>(std::calloc(size, sizeof(tagPOINT)));
    lineMarks = static_cast<int*>(std::calloc(size, sizeof(int)));
    corners = static_cast<int*>(std::calloc(size, sizeof(int)));
    if (points && lineMarks && corners) return true;
    Free();
    return false;
  }
  void Free() {
    std::free(points);
    std::free(lineMarks);
    std::free(corners);
  }
};

Arrays ArraysOf(const CRV_FREEHANDINFO& record) { return {record.points, record.lineMarks, record.corners}; }

/// Room for one more point.
bool EnsureRoom(CRV_FREEHANDINFO& record) {
  if (record.count < record.capacity) return true;
  if (record.growthStep < 1 || record.capacity > kMaxInt - record.growthStep) return false;
  Arrays grown;
  const int capacity = record.capacity + record.growthStep;
  if (!grown.Allocate(capacity)) return false;
  std::copy_n(record.points, record.count, grown.points);
  std::copy_n(record.lineMarks, record.count, grown.lineMarks);
  std::copy_n(record.corners, record.count, grown.corners);
  ArraysOf(record).Free();
  record.points = grown.points;
  record.lineMarks = grown.lineMarks;
  record.corners = grown.corners;
  record.capacity = capacity;
  return true;
}

/// How many points fill the gap between two points; 0 without a usable spacing.
std::int64_t FillersBetween(const tagPOINT& a, const tagPOINT& b, const int* spacing) {
  if (spacing == nullptr || *spacing < 1) return 0;
  return static_cast<std::int64_t>(TavMath::Distance(ToDouble(a), ToDouble(b)) / *spacing);
}

tagPOINT Filler(const tagPOINT& from, const tagPOINT& to, double w) {
  const auto mix = [w](int a, int b) { return TavMath::TruncateToInt(b * w + a * (1 - w)); };
  return {mix(from.x, to.x), mix(from.y, to.y)};
}

int CornerOfRun(const tagPOINT& a, const tagPOINT& b, const tagPOINT& c, const tagPOINT& d,
                const tagPOINT& e) {
  const tagPOINT run[5] = {a, b, c, d, e};
  return CRV_FreehandCalcCorner(2, run);
}

std::int32_t MidCoordinate(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>((std::int64_t{a} + b) / 2);
}

/// A record with every point appended; room for `extra` points beyond those and their fillers.
CRV_FREEHANDINFO* FromPoints(const tagPOINT* points, int n, const int* spacing, int growthStep,
                             std::int64_t extra) {
  if (n < 0 || (n > 0 && points == nullptr)) return nullptr;
  std::int64_t capacity = extra + n;
  for (int k = 1; k < n && capacity <= kMaxInt; ++k)
    capacity += FillersBetween(points[k - 1], points[k], spacing);
  if (capacity < 0 || capacity > kMaxInt) return nullptr;
  CRV_FREEHANDINFO* const record = CRV_FreehandInfoConstruct(static_cast<int>(capacity), growthStep);
  if (record == nullptr) return nullptr;
  for (int k = 0; k < n; ++k) {
    if (CRV_FreehandInfoAppendPointExt(record, points[k], spacing) != 0) continue;
    CRV_FreehandInfoDestruct(record);
    return nullptr;
  }
  return record;
}

}  // namespace

CRV_FREEHANDINFO* CRV_FreehandInfoConstruct(int capacity, int growthStep) noexcept {
  if (capacity < 0) return nullptr;
  Arrays arrays;
  if (!arrays.Allocate(capacity)) return nullptr;
  auto* const record = static_cast<CRV_FREEHANDINFO*>(std::malloc(sizeof(CRV_FREEHANDINFO)));
  if (record == nullptr) return arrays.Free(), nullptr;
  *record = {capacity, growthStep, 0, arrays.points, arrays.lineMarks, arrays.corners};
  return record;
}

CRV_FREEHANDINFO* CRV_FreehandInfoConstructFromPolylineExt(const tagPOINT* points, int n, const int* spacing,
                                                           int growthStep, int extra) noexcept {
  return FromPoints(points, n, spacing, growthStep, extra);
}

CRV_FREEHANDINFO* CRV_FreehandInfoConstructFromPolygonExt(const tagPOINT* points, int n, const int* spacing,
                                                          int growthStep, int extra) noexcept {
  if (points == nullptr || n < 1) return nullptr;
  const std::int64_t closing = 1 + FillersBetween(points[n - 1], points[0], spacing);
  CRV_FREEHANDINFO* const record = FromPoints(points, n, spacing, growthStep, extra + closing);
  if (record == nullptr || CRV_FreehandInfoClose(record, 1, spacing) != 0) return record;
  CRV_FreehandInfoDestruct(record);
  return nullptr;
}

void CRV_FreehandInfoDestruct(CRV_FREEHANDINFO* record) noexcept {
  if (record == nullptr) return;
  ArraysOf(*record).Free();
  std::free(record);
}

int CRV_FreehandInfoAppendPoint(CRV_FREEHANDINFO* record, tagPOINT point) noexcept {
  if (record == nullptr || !EnsureRoom(*record)) return 0;
  if (record->count > 0 && record->points[record->count - 1] == point) return 1;
  const int n = ++record->count;
  record->points[n - 1] = point;
  record->lineMarks[n - 1] = 0;
  if (n > 2) {
    record->corners[n - 3] = CRV_FreehandCalcCorner(n - 3, record->points);
    record->corners[n - 2] = record->corners[n - 1] = 0;
  }
  return 1;
}

int CRV_FreehandInfoAppendPointForLine(CRV_FREEHANDINFO* record, tagPOINT point) noexcept {
  if (CRV_FreehandInfoAppendPoint(record, point) == 0) return 0;
  record->lineMarks[record->count - 1] = 1;
  return 1;
}

int CRV_FreehandInfoAppendPointExt(CRV_FREEHANDINFO* record, tagPOINT point, const int* spacing) noexcept {
  if (record == nullptr) return 0;
  if (record->count > 0) {
    const tagPOINT last = record->points[record->count - 1];
    const std::int64_t fillers = FillersBetween(last, point, spacing);
    if (fillers > kMaxInt - record->count) return 0;  // more than any record can hold
    for (std::int64_t j = 1; j <= fillers; ++j) {
      const double w = static_cast<double>(j) / static_cast<double>(fillers + 1);
      if (CRV_FreehandInfoAppendPoint(record, Filler(last, point, w)) == 0) return 0;
      // The second filler settles the strength of the point before the gap, where a corner may well be; the
      // other fillers lie on a straight line.
      if (j != 2 && record->count >= 3) record->corners[record->count - 3] = 0;
    }
  }
  return CRV_FreehandInfoAppendPoint(record, point);
}

int CRV_FreehandInfoGetLastPoint(const CRV_FREEHANDINFO* record, tagPOINT* out) noexcept {
  if (record == nullptr || out == nullptr || record->count < 1) return 0;
  *out = record->points[record->count - 1];
  return 1;
}

int CRV_FreehandInfoClose(CRV_FREEHANDINFO* record, int appendClosingPoints, const int* spacing) noexcept {
  if (record == nullptr || record->count < 3) return 0;
  if (appendClosingPoints != 0) {
    const tagPOINT start = record->points[0];
    if (CRV_FreehandInfoAppendPointExt(record, start, spacing) == 0) return 0;
  }
  const int n = record->count;
  if (n < 4) return 0;  // three points whose ends coincide: nothing was appended
  tagPOINT* const p = record->points;
  int* const corners = record->corners;
  if (appendClosingPoints == 0)
    p[0] = p[n - 1] = {MidCoordinate(p[0].x, p[n - 1].x), MidCoordinate(p[0].y, p[n - 1].y)};
  if (n == 4) {
    std::fill_n(corners, 4, kTriangleCorner);
    return 1;
  }
  corners[0] = CornerOfRun(p[n - 3], p[n - 2], p[0], p[1], p[2]);
  corners[1] = CornerOfRun(p[n - 2], p[0], p[1], p[2], p[3]);
  corners[n - 1] = corners[0];
  corners[n - 2] = CornerOfRun(p[n - 4], p[n - 3], p[n - 2], p[n - 1], p[1]);
  return 1;
}

// Exact in integers: the differences take 36 bits, their products and the square below 73.
int CRV_FreehandCalcCorner(int index, const tagPOINT* points) noexcept {
  if (index < 2 || points == nullptr) return 0;
  __extension__ using Wide = __int128;
  const tagPOINT* const p = points + index;
  struct Differences {
    std::int64_t first, second, check;
  };
  const auto along = [p](auto c) {  // a coordinate, as pointer to member
    const std::int64_t a = p[-2].*c, b = p[-1].*c, m = p[0].*c, d = p[1].*c, e = p[2].*c;
    return Differences{4 * (d - b) + (e - a), a + 2 * b - 6 * m + 2 * d + e, a + 8 * b - 18 * m + 8 * d + e};
  };
  const Differences x = along(&tagPOINT::x), y = along(&tagPOINT::y);
  const Wide lengthSqrd = Wide{x.first} * x.first + Wide{y.first} * y.first;
  const bool bends = x.check != 0 || y.check != 0;
  if (lengthSqrd == 0 || !bends) return 0;
  const Wide cross = Wide{x.second} * y.first - Wide{y.second} * x.first;
  // Divided by the square, not the cube, of the length: a large bend counts as much as a small one.
  const Wide strength = 256 * (cross < 0 ? -cross : cross) / lengthSqrd;
  return strength >= kMaxInt ? kMaxInt : static_cast<int>(strength);
}
