// Offsets of arbitrary paths: bounded time, a path that is well formed and finite, and nothing touched of
// what the output held.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "lumo/offset.h"
#include "lumo/offset_corners.h"
#include "lumo/repair.h"

using namespace Lumo;
using TavMath::DPoint;

namespace {

void Require(bool truth) {
  if (!truth) std::abort();
}

/// Bytes to numbers; zeros when they run out.
class Reader {
 public:
  Reader(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}
  bool AtEnd() const { return at_ >= size_; }
  int Byte() { return AtEnd() ? 0 : data_[at_++]; }
  int Word() {
    const int high = Byte();
    return static_cast<std::int16_t>(high << 8 | Byte());
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

OffsetCorner* MakeCorner(int kind) {
  switch (kind % 7) {
    case 0:
      return new Round;
    case 1:
      return new Bevel;
    case 2:
      return new OffsetBevel;
    case 3:
      return new Ray;
    case 4:
      return new MiteredCorner(30, nullptr);
    case 5:
      return new NoCorner;
    default:
      return nullptr;
  }
}

void MakePath(Reader& in, std::vector<DPoint>& points, std::vector<NODETYPE>& nodes) {
  const double scale = in.Byte() % 2 ? 10.0 : 0.5;
  // Well-formed subpaths three times in four, else the bytes as they come.
  const bool tame = in.Byte() % 4 != 0;
  std::size_t first = 0;
  const auto point = [&] {
    const double x = in.Word() * scale;
    return DPoint{x, in.Word() * scale};
  };
  while (!in.AtEnd() && points.size() < 120) {
    const int kind = in.Byte();
    if (!tame) {
      points.push_back(point());
      nodes.push_back(static_cast<unsigned char>(kind));
    } else if (points.empty() || kind % 8 == 0) {
      if (!points.empty() && kind % 16 == 0 && points.size() - first > 1) {
        nodes[first] |= NODETYPE::kClosed;
        points.push_back(points[first]);
        nodes.push_back(NODETYPE::kLine | NODETYPE::kClosed);
      }
      first = points.size();
      points.push_back(point());
      nodes.push_back(NODETYPE::kUser);
    } else if (kind % 2 == 0) {
      points.push_back(point());
      nodes.push_back(NODETYPE::kLine | NODETYPE::kUser | (kind & 0x10));
    } else {
      for (int k = 0; k < 3; ++k) points.push_back(point());
      nodes.insert(nodes.end(), {NODETYPE::kControl, NODETYPE::kControl, NODETYPE::kCurve | NODETYPE::kUser});
    }
  }
  if (tame && points.size() - first > 1) {
    nodes[first] |= NODETYPE::kClosed;
    points.push_back(points[first]);
    nodes.push_back(NODETYPE::kLine | NODETYPE::kClosed);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Reader in(data, size);
  const int flags = in.Byte(), joins = in.Byte();
  const double offset = in.Word() * (flags & 1 ? 3.0 : 0.2);
  std::vector<DPoint> points;
  std::vector<NODETYPE> nodes;
  MakePath(in, points, nodes);
  Offset::OffsetSettings settings(MakeCorner(joins), MakeCorner(joins / 7), offset, (flags & 2) != 0);
  settings.SetCloseShape((flags & 4) == 0);
  settings.SetCombineShape((flags & 8) == 0);
  settings.SetOpenCurveOffsetSide(static_cast<Offset::EOpenCurveOffsetSide>((flags >> 4) % 3));
  if (flags & 64) settings.SetMaxOffsetError(1.0);
  std::vector<DPoint> out{{1.5, 2.5}};
  std::vector<NODETYPE> outNodes{NODETYPE(0x04)};
  CreateOffsetCurve(points.data(), nodes.data(), static_cast<int>(points.size()), out, outNodes, settings);
  Require(out.size() == outNodes.size() && out.size() >= 1);
  Require(out[0] == DPoint{1.5, 2.5} && outNodes[0].value == 0x04);
  for (const DPoint& p : out) Require(std::isfinite(p.x) && std::isfinite(p.y));
  Require(IsValidCurve(outNodes.data() + 1, outNodes.size() - 1));
  return 0;
}
