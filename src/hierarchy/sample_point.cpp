#include "hierarchy/sample_point.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "hierarchy/tolerances.h"
#include "math/point_traits.h"
#include "tav/math/cubic_bezier.h"

namespace Lumo {
namespace {

using TavMath::BoundsT;

/// One place where the outline passes a horizontal line; sign +1 when it goes up there.
struct Crossing {
  double x;
  std::int32_t line;
  std::int32_t sign;
};

/// A stretch of the line inside the outline.
struct Stretch {
  double left = 0, right = 0;
  double Width() const { return right - left; }
};

/// The height of a cubic over its parameter.
struct Height {
  double a, b, c, d;

  /// Between the ends; the ends themselves have the heights a and d, without rounding.
  double At(double t) const {
    const double s = 1 - t;
    return s * s * (s * a + 3 * t * b) + t * t * (3 * s * c + t * d);
  }
  double SlopeAt(double t) const {
    const double s = 1 - t;
    return 3 * (s * s * (b - a) + 2 * s * t * (c - b) + t * t * (d - c));
  }
  bool TurnsNowhere() const { return (a <= b && b <= c && c <= d) || (a >= b && b >= c && c >= d); }
};

/// The outline of one subpath cut by horizontal lines.
template <class T>
class Scan {
 public:
  Scan(const T* points, const NODETYPE* nodes, int count) : points_(points), nodes_(nodes), count_(count) {
    for (int i = 0; i < count; ++i) {
      const DPoint p = ToDouble(points[i]);
      if (std::isfinite(p.x) && std::isfinite(p.y)) box_.Add(p.x, p.y);
    }
    crossings_.reserve(kUsualCrossings);
  }

  const BoundsT<double>& Box() const { return box_; }

  /// Calls visit(line, stretch) for all stretches of non-zero winding on lines at the given heights (at most
  /// 32): line by line, each from left to right. One pass over the outline serves all lines.
  template <class Visit>
  void ForEachStretch(const double* heights, int lines, Visit visit) {
    heights_ = heights;
    lines_ = lines;
    CollectCrossings();
    std::sort(crossings_.begin(), crossings_.end(), [](const Crossing& a, const Crossing& b) {
      return a.line != b.line ? a.line < b.line : a.x < b.x;
    });
    int winding = 0;
    for (std::size_t k = 0; k + 1 < crossings_.size(); ++k) {
      const Crossing &at = crossings_[k], &next = crossings_[k + 1];
      if (at.line != next.line) {
        winding = 0;
        continue;
      }
      winding += at.sign;
      if (winding != 0 && next.x > at.x) visit(at.line, Stretch{at.x, next.x});
    }
  }

  /// Whether p keeps clear of the outline's horizontal edges and vertices at its own height, which the
  /// half-open crossing rule does not see.
  bool IsClear(const DPoint& p, double margin) const {
    for (int i = 1; i < count_; ++i) {
      const DPoint a = ToDouble(points_[i - 1]), b = ToDouble(points_[i]);
      if (nodes_[i].IsLine() && (a.y == p.y || b.y == p.y)) {
        const double low = a.y == p.y ? (b.y == p.y ? std::min(a.x, b.x) : a.x) : b.x;
        const double high = a.y == p.y ? (b.y == p.y ? std::max(a.x, b.x) : a.x) : b.x;
        if (p.x >= low - margin && p.x <= high + margin) return false;
      }
      if (nodes_[i].IsCurve() && i >= 3 && !IsClearOfCurve(i, p, margin)) return false;
    }
    return true;
  }

 private:
  bool IsClearOfCurve(int end, const DPoint& p, double margin) const {
    DPoint cubic[4], nearest;
    LoadCubic(points_ + end - 3, cubic);
    const BoundsT<double> box = TavMath::GetPointsBBox(cubic, 4);
    if (p.x < box.minx - margin || p.x > box.maxx + margin || p.y < box.miny - margin ||
        p.y > box.maxy + margin) {
      return true;
    }
    double t, sqrd;
    return !TavMath::CubicBezier::FindClosestPointOnBezier(cubic, p, t, nearest, sqrd) ||
           sqrd > margin * margin;
  }

  void CollectCrossings() {
    crossings_.clear();
    for (int i = 1; i < count_; ++i) {
      if (nodes_[i].IsLine()) AddLine(ToDouble(points_[i - 1]), ToDouble(points_[i]));
      if (nodes_[i].IsCurve() && i >= 3) AddCurve(i);
    }
    if (count_ > 1)
      AddLine(ToDouble(points_[count_ - 1]), ToDouble(points_[0]));  // no-op when the ends coincide
  }

  /// The lines for which `holds`, a bit each.
  template <class Holds>
  unsigned LinesWhere(Holds holds) const {
    unsigned lines = 0;
    for (int k = 0; k < lines_; ++k) lines |= static_cast<unsigned>(holds(heights_[k])) << k;
    return lines;
  }

  /// Half-open in y, so that a vertex on a line counts for exactly one of its two edges.
  void AddLine(const DPoint& a, const DPoint& b) {
    unsigned crossed = LinesWhere([&](double y) { return (a.y < y) != (b.y < y); });
    for (; crossed != 0; crossed &= crossed - 1) {
      const int line = std::countr_zero(crossed);
      const double x = a.x + (heights_[line] - a.y) / (b.y - a.y) * (b.x - a.x);
      if (std::isfinite(x)) crossings_.push_back({x, line, a.y < b.y ? 1 : -1});
    }
  }

  /// Each monotone part of the curve between its horizontal tangents crosses a line at most once.
  void AddCurve(int end) {
    DPoint cubic[4];
    LoadCubic(points_ + end - 3, cubic);
    const Height height{cubic[0].y, cubic[1].y, cubic[2].y, cubic[3].y};
    const double high = std::max({height.a, height.b, height.c, height.d});
    const double low = std::min({height.a, height.b, height.c, height.d});
    unsigned reached = LinesWhere([&](double y) { return !(high < y) && !(low > y); });
    if (reached == 0) return;
    double cut[4] = {0, 0, 0, 0}, at[4];
    const int turns = height.TurnsNowhere() ? 0 : TavMath::CubicBezier::GetHorizontalTangents(cubic, cut + 1);
    cut[turns + 1] = 1;
    at[0] = height.a;
    at[turns + 1] = height.d;
    for (int k = 1; k <= turns; ++k) at[k] = height.At(cut[k]);
    for (; reached != 0; reached &= reached - 1) {
      const int line = std::countr_zero(reached);
      const double y = heights_[line];
      for (int k = 0; k <= turns; ++k) {
        const bool up = at[k] < y;
        if (up == (at[k + 1] < y)) continue;
        const double t = Cross(height, y, cut[k], cut[k + 1], up);
        crossings_.push_back({TavMath::CubicBezier::Evaluate(cubic, t).x, line, up ? 1 : -1});
      }
    }
  }

  /// Where a monotone part comes to a height: Newton's method inside a bracket that shrinks at every step;
  /// halving where it would leave the bracket.
  static double Cross(const Height& height, double y, double t0, double t1, bool up) {
    double t = 0.5 * (t0 + t1);
    for (int k = 0; k < hierarchy::kCrossingSteps; ++k) {
      const double off = height.At(t) - y;
      ((off < 0) == up ? t0 : t1) = t;
      double next = t - off / height.SlopeAt(t);
      if (!(next > t0 && next < t1)) next = 0.5 * (t0 + t1);
      const double move = std::abs(next - t);
      t = next;
      if (move <= hierarchy::kCrossingSettled) break;
    }
    return t;
  }

  static constexpr std::size_t kUsualCrossings = 32;  // what the first lines meet in an ordinary outline

  const T* points_;
  const NODETYPE* nodes_;
  int count_;
  BoundsT<double> box_;
  const double* heights_ = nullptr;
  int lines_ = 0;
  std::vector<Crossing> crossings_;
};

/// The k-th number of the van der Corput sequence in base 2: 1/2, 1/4, 3/4, 1/8, ... (van der Corput, 1935).
/// It spreads any number of lines evenly without knowing beforehand how many will be needed.
double VanDerCorput(unsigned k) {
  double value = 0, digit = 0.5;
  for (; k != 0; k >>= 1, digit *= 0.5) value += (k & 1) * digit;
  return value;
}

template <class T>
bool FindBetweenOutlines(Scan<T>& scan, DPoint& sample) {
  const BoundsT<double>& box = scan.Box();
  Stretch widest;
  double height = 0;
  double heights[hierarchy::kComparedSampleLines];
  for (int line = 0; line < hierarchy::kMaxSampleLines && !(widest.Width() > 0);) {
    // The first lines are compared; when all of them miss the ground, the next that meets it will do.
    const int lines = line == 0 ? hierarchy::kComparedSampleLines : 1;
    for (int k = 0; k < lines; ++k)
      heights[k] = box.miny + VanDerCorput(static_cast<unsigned>(++line)) * box.Height();
    scan.ForEachStretch(heights, lines, [&](int on, const Stretch& stretch) {
      const double middle = 0.5 * stretch.left + 0.5 * stretch.right;
      const bool strictly = stretch.left < middle && middle < stretch.right;
      if (!strictly || stretch.Width() <= widest.Width()) return;
      widest = stretch;
      height = heights[on];
    });
  }
  if (!(widest.Width() > 0)) return false;
  sample = {0.5 * widest.left + 0.5 * widest.right, height};
  return true;
}

/// A grid point on the row y with a margin to the outline on both sides, as near to the middle of a stretch
/// as can be.
template <class T>
bool FindOnRow(Scan<T>& scan, double y, double margin, DPoint& sample) {
  double widest = 0;
  scan.ForEachStretch(&y, 1, [&](int, const Stretch& stretch) {
    const double x = std::round(0.5 * stretch.left + 0.5 * stretch.right);
    if (!(x > stretch.left + margin && x < stretch.right - margin) || stretch.Width() <= widest) return;
    if (!scan.IsClear({x, y}, margin)) return;
    widest = stretch.Width();
    sample = {x, y};
  });
  return widest > 0;
}

template <class T>
bool FindOnGrid(Scan<T>& scan, int count, DPoint& sample) {
  const BoundsT<double>& box = scan.Box();
  const double rows = box.Height() - 1;  // rows strictly between the extreme heights
  if (!(rows >= 1)) return false;
  const double margin = hierarchy::kOnOutlineRatio * std::max({1.0, std::abs(box.minx), std::abs(box.maxx),
                                                               std::abs(box.miny), std::abs(box.maxy)});
  for (unsigned line = 1; line <= hierarchy::kMaxSampleLines && line <= rows; ++line) {
    if (FindOnRow(scan, std::floor(box.miny + 1 + VanDerCorput(line) * rows), margin, sample)) return true;
  }
  const double affordable = static_cast<double>(hierarchy::kMaxGridWork / std::max(count, 1));
  for (double row = 0; row < std::min(rows, affordable); ++row) {
    if (FindOnRow(scan, box.miny + 1 + row, margin, sample)) return true;
  }
  return false;
}

}  // namespace

template <class T>
DPoint FindSamplePoint(const T* points, const NODETYPE* nodes, int count) {
  if (count < 1) return {0, 0};
  Scan<T> scan(points, nodes, count);
  DPoint sample = ToDouble(points[0]);
  if (scan.Box().IsEmpty()) return sample;
  if constexpr (std::is_same_v<T, tagPOINT>) {
    if (FindOnGrid(scan, count, sample)) return sample;
  }
  FindBetweenOutlines(scan, sample);
  return sample;
}

template DPoint FindSamplePoint<tagPOINT>(const tagPOINT*, const NODETYPE*, int);
template DPoint FindSamplePoint<DPoint>(const DPoint*, const NODETYPE*, int);

}  // namespace Lumo
