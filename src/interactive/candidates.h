#pragma once
// Finding the few segments of a long path that a query can depend on.
//
// A query gives every point a code: one bit for each half-plane that it lies in and that the query is not
// interested in (left of a rectangle, above it, ...). A segment all of whose points, control points included,
// share a bit lies in that half-plane as a whole and is passed over: the outcodes of Cohen and Sutherland
// (Newman, Sproull, "Principles of Interactive Computer Graphics", 1979). A block of neighbours is passed
// over as a whole when all its points share a bit, which in drawings most blocks do: that runs at about the
// speed of memory. For the others codes are made and combined without branches, so that the compiler
// vectorises both steps.

#include <algorithm>
#include <cstring>

#include "core/segment_walk.h"
#include "lumo/node_type.h"
#include "lumo/point_types.h"
#include "math/simd.h"

namespace Lumo::Interactive {

using Lumo::EndsLine;
using Lumo::StartsCurve;

/// Calls visit(i) in index order for each node of first .. end-1 at which a segment starts (the first control
/// point of a curve) or that ends a line, when the codes of the segment's points have no bit in common. visit
/// returns false to end the search; so does this then.
template <class Code, class Visit>
bool ForCandidates(const tagPOINT* points, const NODETYPE* types, int count, int first, int end, Code code,
                   Visit visit) noexcept {
  constexpr int kBlock = 128;
  constexpr int kBefore = 1, kAfter = 2;  // a window is a node, the one before it and the two after it
  unsigned char codes[kBefore + kBlock + kAfter];
  for (int k = first; k < end; k += kBlock) {
    const int n = std::min(kBlock, end - k);
    // Codes outside the array have all bits: they leave the common bits of a window as they are.
    const int low = k > 0 ? -kBefore : 0, high = std::min(n + kAfter, count - k);
    if constexpr (requires { code.AllBeyondOneSide(points, n); }) {
      if (code.AllBeyondOneSide(points + (k + low), high - low)) continue;
    }
    codes[0] = codes[kBefore + n] = codes[kBefore + n + 1] = 0xFF;
    for (int j = low; j < high; ++j) codes[kBefore + j] = code(points[k + j]);
    unsigned char shared[kBlock];
    for (int j = 0; j < n; ++j)
      shared[j] = codes[j] & codes[j + 1] & codes[j + 2] & codes[j + 3];  // the window around node k + j
    unsigned char any = 0;
    for (int j = 0; j < n; ++j) any |= static_cast<unsigned char>(shared[j] == 0);
    if (any == 0) continue;
    for (int j = 0; j < n; ++j) {
      if (shared[j] != 0) continue;
      const int i = k + j;
      const bool line = EndsLine(types, i) && (codes[j] & codes[j + 1]) == 0;
      if ((line || StartsCurve(types, count, i)) && !visit(i)) return false;
    }
  }
  return true;
}

/// The code of a point about a y-up rectangle: which of its four sides the point lies beyond.
class RectCode {
 public:
  explicit RectCode(const tagRECT& rect) noexcept
      : left_(rect.left), top_(rect.top), right_(rect.right), bottom_(rect.bottom) {}
  unsigned char operator()(const tagPOINT& p) const noexcept {
    return static_cast<unsigned char>((p.x < left_) | (p.x > right_) << 1 | (p.y < bottom_) << 2 |
                                      (p.y > top_) << 3);
  }
  /// Whether the codes of all n points have a bit in common.
  bool AllBeyondOneSide(const tagPOINT* p, int n) const noexcept {
    using TavMath::FourInts;
    const FourInts least{left_, bottom_, left_, bottom_}, greatest{right_, top_, right_, top_};
    FourInts below{-1, -1, -1, -1}, above = below;
    int k = 0;
    for (; k + 2 <= n; k += 2) {
      FourInts two;
      std::memcpy(&two, p + k, sizeof two);
      below &= two < least;
      above &= two > greatest;
    }
    const auto side = [](FourInts of, int first) { return (of[first] & of[first + 2]) != 0; };
    unsigned char common = static_cast<unsigned char>(side(below, 0) | side(above, 0) << 1 |
                                                      side(below, 1) << 2 | side(above, 1) << 3);
    for (; k < n; ++k) common &= (*this)(p[k]);
    return common != 0;
  }

 private:
  int left_, top_, right_, bottom_;
};

}  // namespace Lumo::Interactive
