// Paths from bytes, well-formed or not: the whole-table driver, the plain loop, the list intersector.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "lumo/intersections.h"
#include "lumo/polycurve_intersector.h"

namespace {

using namespace Lumo;
using TavMath::DPoint;

void Require(bool condition) {
  if (!condition) std::abort();
}

struct Bytes {
  const std::uint8_t* data;
  std::size_t size;
  std::uint8_t Next() { return size == 0 ? std::uint8_t{0} : (--size, *data++); }
  double Coordinate(bool wild) {
    if (!wild) return static_cast<std::int8_t>(Next()) * 40.0;
    double value = 0;
    std::uint8_t raw[sizeof value];
    for (std::uint8_t& byte : raw) byte = Next();
    std::memcpy(&value, raw, sizeof value);
    return value;
  }
};

struct Path {
  std::vector<DPoint> points;
  std::vector<NODETYPE> types;
};

Path ReadPath(Bytes& bytes, bool wild, bool wellFormed) {
  Path path;
  const int segments = 1 + bytes.Next() % 10;
  const auto point = [&] {
    const double x = bytes.Coordinate(wild);
    return DPoint{x, bytes.Coordinate(wild)};
  };
  if (!wellFormed) {
    for (int k = 0; k < 3 * segments; ++k)
      path.points.push_back(point()), path.types.push_back(NODETYPE(bytes.Next()));
    return path;
  }
  path.points.push_back(point());
  path.types.push_back(NODETYPE(0x04));
  for (int k = 0; k < segments; ++k) {
    const bool curve = (bytes.Next() & 1) != 0;
    for (int n = 0; n < (curve ? 2 : 0); ++n)
      path.points.push_back(point()), path.types.push_back(NODETYPE(0xC0));
    path.points.push_back(point());
    path.types.push_back(NODETYPE(curve ? 0x84 : 0x44));
  }
  if ((bytes.Next() & 1) != 0) path.types.front() |= 0x08, path.types.back() |= 0x08;
  return path;
}

void Check(const SegmentIntersectionTable& table) {
  for (const SegmentIntersections& segment : table.Segments()) {
    for (const Intersection* x : segment.Intersections()) {
      Require(x->SegmentID() == segment.ThisSegment());
      Require(x->GetPartner() && x->GetPartner()->GetPartner() == x);
      Require(x->GetIntersectionTime() >= 0 && x->GetIntersectionTime() <= 1);
      Require(!x->GetOverlapPartner() || x->GetOverlapPartner()->GetOverlapPartner() == x);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes{data, size};
  const std::uint8_t flags = bytes.Next();
  const Path a = ReadPath(bytes, (flags & 1) != 0, (flags & 2) != 0);
  const Path b = ReadPath(bytes, (flags & 1) != 0, (flags & 2) != 0);
  SegmentIntersectionSettings settings;
  if ((flags & 4) != 0) settings = SegmentIntersectionSettings(0, 0);
  if ((flags & 8) != 0) settings.SetCoverGaps(true), settings.SetGapTolerance(200);
  settings.SetNormalizeDirVectors((flags & 16) != 0);
  SegmentIntersectionTable plain, quick;
  for (SegmentIntersectionTable* table : {&plain, &quick}) {
    for (const Path* path : {&a, &b}) {
      Require(table->AddCurve(path->points.data(), path->types.data(), static_cast<int>(path->points.size()),
                              (flags & 32) != 0, (flags & 64) != 0) >= 0);
    }
  }
  for (std::size_t k = 0; k < plain.Segments().size(); ++k) {
    Require(FindSegmentIntersections(static_cast<int>(k), plain, settings));
  }
  Require(FindAllIntersections(quick, settings));
  Check(plain);
  Check(quick);
  for (std::size_t k = 0; k < plain.Segments().size(); ++k) {
    Require(plain.Segments()[k].size() == quick.Segments()[k].size());
  }
  const CSegmentList listA(a.points.data(), a.types.data(), static_cast<int>(a.points.size()));
  const CSegmentList listB(b.points.data(), b.types.data(), static_cast<int>(b.points.size()));
  Require(CPolyCurveIntersector::Instance().Intersect(listA, listB).size() == listA.size());
  return 0;
}
