// Two paths from bytes, well formed or not, through all Boolean operations of both point types. Results are
// well-formed paths of finite coordinates whatever the input; those of closed outlines simplify to themselves
// in area.
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "lumo/boolean.h"
#include "lumo/measure.h"

namespace {

using TavMath::DPoint;

void Require(bool condition) {
  if (!condition) std::abort();
}

/// Bytes as a path: the low bits of the first byte choose how raw the types and the coordinates are.
template <class T>
Lumo::PolycurveT<T> Read(const std::uint8_t*& data, std::size_t& size, std::size_t most) {
  std::vector<T> points;
  std::vector<NODETYPE> types;
  if (size == 0) return {};
  const std::uint8_t style = *data++;
  --size;
  const bool rawTypes = (style & 1) != 0, rawPoints = (style & 2) != 0 && sizeof(T) > 8;
  const std::size_t step = rawPoints ? 1 + sizeof(T) : 3;
  while (size >= step && points.size() < most) {
    T p{};
    if (rawPoints) {
      std::memcpy(&p, data + 1, sizeof p);
    } else {
      p.x = static_cast<std::int8_t>(data[1]) / 16;  // few values: coincidences are the rule
      p.y = static_cast<std::int8_t>(data[2]) / 16;
    }
    const std::uint8_t kinds[] = {0x44, 0x44, 0xC0, 0x0C};
    const NODETYPE type = rawTypes ? data[0] : kinds[data[0] & 3];
    const bool curve = !rawTypes && type.IsControl();
    types.push_back(points.empty() && !rawTypes ? NODETYPE(0x0C) : type);
    points.push_back(p);
    if (curve && types.size() > 1) {
      types.push_back(0xC0);
      types.push_back(0x84);
      points.push_back({p.y, p.x});
      points.push_back({p.x, p.x});
    }
    data += step;
    size -= step;
  }
  return {points.data(), types.data(), points.size()};
}

template <class T>
void CheckResult(const Lumo::PolycurveT<T>& path, bool closed) {
  const NODETYPE* types = path.GetNodeTypes();
  const T* points = path.GetPoints();
  std::size_t first = 0;
  const std::size_t n = path.GetPointCount();
  for (std::size_t k = 0; k < n;) {
    Require(std::isfinite(static_cast<double>(points[k].x)) &&
            std::isfinite(static_cast<double>(points[k].y)));
    if (types[k].IsMove()) {
      first = k++;
    } else if (types[k].IsLine()) {
      Require(k > 0);
      ++k;
    } else {
      Require(k > 0 && k + 2 < n && types[k].IsControl() && types[k + 1].IsControl() &&
              types[k + 2].IsCurve());
      k += 3;
    }
    const bool ends = k == n || types[k].IsMove();
    if (ends && closed) {
      Require(k - first > 1 && types[first].IsClosed() && types[k - 1].IsClosed());
      Require(points[first] == points[k - 1]);
    }
  }
}

template <class T>
void Run(const std::uint8_t* data, std::size_t size) {
  const auto a = Read<T>(data, size, 24), b = Read<T>(data, size, 24);
  const auto rule = static_cast<Lumo::FillRule>(size % 3);
  CheckResult(Lumo::Union(a, b, rule, rule), true);
  CheckResult(Lumo::Intersect(a, b, rule), true);
  CheckResult(Lumo::Subtract(a, b, rule), true);
  CheckResult(Lumo::Xor(a, b, rule, rule), true);
  CheckResult(Lumo::ClipToShape(a, b), false);
  CheckResult(Lumo::ClipToShape(a, b, false), false);
  CheckResult(Lumo::Simplify(a, rule), true);
  CheckResult(Lumo::Union<T>({a, b, a}), true);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  if (data[0] & 1) {
    Run<DPoint>(data + 1, size - 1);
  } else {
    Run<tagPOINT>(data + 1, size - 1);
  }
  return 0;
}
