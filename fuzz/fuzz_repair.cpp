// Turns bytes into a path, well-formed or not, and repairs it with settings from the same bytes. The result
// must be valid, and repairing it again must change nothing. Layout: eight bytes of settings, one of node
// count, the node-type bytes, then three bytes a point: a scale of powers of two and two coordinates.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "lumo/repair.h"

namespace {

using TavMath::DPoint;

class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}
  int Next() { return at_ == end_ ? 0 : *at_++; }

 private:
  const std::uint8_t* at_;
  const std::uint8_t* end_;
};

void Require(bool right) {
  if (!right) std::abort();
}

template <class T>
T NextPoint(Bytes& bytes) {
  const int scale = bytes.Next();
  const double size = std::ldexp(1.0, scale % 24), x = size * (bytes.Next() - 128),
               y = size * (bytes.Next() - 128);
  if (std::is_same_v<T, DPoint> && scale == 255) return {static_cast<decltype(T::x)>(NAN), 0};
  return {static_cast<decltype(T::x)>(x), static_cast<decltype(T::y)>(y)};
}

template <class T>
void Run(Bytes bytes) {
  Lumo::CurveRepairSettings settings;
  settings.SetSmoothNodeAngleLimit(bytes.Next() * 0.25);
  settings.SetMinLineLength(bytes.Next() - 10);
  settings.SetMinBezierLength(bytes.Next() - 10);
  settings.SetOverlappingHandleOffset((bytes.Next() - 10) / 1000.0);
  settings.SetTightEndpointRadiusLimit(bytes.Next() - 10);
  const int flags = bytes.Next();
  settings.SetFixOverlappingHandles((flags & 1) != 0);
  settings.SetFixTightEndpointRadius((flags & 2) != 0);
  settings.SetSplitOverlappingBeziers((flags & 4) != 0);
  const double size = bytes.Next() + bytes.Next();
  std::vector<NODETYPE> types(static_cast<std::size_t>(bytes.Next() % 40));
  for (NODETYPE& type : types) type = static_cast<unsigned char>(bytes.Next());
  std::vector<T> points;
  for (std::size_t k = 0; k < types.size(); ++k) points.push_back(NextPoint<T>(bytes));

  std::vector<T> mended = points;
  std::vector<NODETYPE> mendedTypes = types;
  Require(Lumo::RepairCurves(mended, mendedTypes, settings));
  Require(mended.size() == mendedTypes.size() && Lumo::IsValidCurve(mendedTypes.data(), mendedTypes.size()));
  std::vector<T> again = mended;
  std::vector<NODETYPE> againTypes = mendedTypes;
  Require(Lumo::RepairCurves(again, againTypes, settings));
  Require(again.size() == mended.size());
  for (std::size_t k = 0; k < mended.size(); ++k)
    Require(again[k] == mended[k] && againTypes[k].value == mendedTypes[k].value);

  const int count = static_cast<int>(types.size());
  for (int form = 0; form < 4; ++form) {  // each in memory of exactly its size
    std::vector<T> p(points);
    std::vector<NODETYPE> t(types);
    p.shrink_to_fit(), t.shrink_to_fit();
    int n = count;
    if (form == 0) n = static_cast<int>(Lumo::RemoveZeroLengthSegments(p.data(), t.data(), types.size()));
    if (form == 1) n = Lumo::RemoveShortSegments(p.data(), t.data(), count, size, size / 2);
    if (form == 2) n = Lumo::RemoveSmallSubpaths(p.data(), t.data(), count, size);
    if (form == 3) Lumo::RepairContinuity(p.data(), t.data(), count, settings);
    Require(n >= 0 && n <= count);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Run<tagPOINT>({data, size});
  Run<DPoint>({data, size});
  return 0;
}
