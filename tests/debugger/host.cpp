// A host stopped where its paths can be looked at.

#include <vector>

#include "lumo/lumo.h"

using TavMath::DPoint;

/// Where the debugger stops; the paths are in the caller's frame.
__attribute__((noinline)) void StopHere(const void*) {}

int main() {
  Lumo::PolycurveT<DPoint> open;
  open.MoveTo({0.5, 0});
  open.LineTo({10, 0});
  open.CubicTo({15, 0}, {15, 8.25}, {10, 8});
  Lumo::PolycurveT<tagPOINT> closed;
  closed.MoveTo({-1, -2});
  closed.LineTo({30, 0});
  closed.LineTo({30, 40});
  closed.CloseSubpath(0);
  const Lumo::PolycurveT<DPoint> shared = open;
  const Lumo::PolycurveT<DPoint> empty;
  const Lumo::PolycurveT<DPoint> several = [] {
    Lumo::PolycurveT<DPoint> path;
    for (int k = 0; k < 1000; ++k) {
      path.MoveTo({1.0 * k, 0});
      path.LineTo({1.0 * k, 1});
    }
    return path;
  }();
  const DPoint points[] = {{1, 2}, {3, 4}};
  const NODETYPE types[] = {NODETYPE::kMove | NODETYPE::kUser, NODETYPE::kLine};
  const Lumo::PolycurveRefT<DPoint> reference(points, types, 2);
  const NODETYPE broken[] = {NODETYPE::kCurve, NODETYPE::kControl};
  const Lumo::PolycurveRefT<DPoint> malformed(points, broken, 2);
  Lumo::PolycurveT<DPoint> moved = open;
  const Lumo::PolycurveT<DPoint> taker = std::move(moved);
  const NODETYPE start = NODETYPE::kMove | NODETYPE::kClosed | NODETYPE::kUser | NODETYPE::kLetter;
  const NODETYPE smooth = NODETYPE::kCurve | NODETYPE::kSmooth | NODETYPE::kUser | NODETYPE::kEnabled;
  const NODETYPE handle = NODETYPE::kControl;
  const std::vector<NODETYPE> list = {start, handle, handle, smooth};
  for (const void* seen :
       {static_cast<const void*>(&open), static_cast<const void*>(&closed), static_cast<const void*>(&shared),
        static_cast<const void*>(&empty), static_cast<const void*>(&several),
        static_cast<const void*>(&reference), static_cast<const void*>(&malformed),
        static_cast<const void*>(&moved), static_cast<const void*>(&taker), static_cast<const void*>(&list)})
    StopHere(seen);
  return 0;
}
