#include "hierarchy/sample_point.h"

#include <algorithm>
#include <cmath>
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
  int sign;
};

/// A stretch of the line inside the outline.
struct Stretch {
  double left = 0, right = 0;
  double Width() const { return right - left; }
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
  }

  const BoundsT<double>& Box() const { return box_; }

  /// All stretches of non-zero winding on the line at height y, in increasing x.
  const std::vector<Stretch>& At(double y) {
    CollectCrossings(y);
    std::sort(crossings_.begin(), crossings_.end(),
              [](const Crossing& a, const Crossing& b) { return a.x < b.x; });
    stretches_.clear();
    int winding = 0;
    for (std::size_t k = 0; k + 1 < crossings_.size(); ++k) {
      winding += crossings_[k].sign;
      if (winding == 0 || !(crossings_[k + 1].x > crossings_[k].x)) continue;
      stretches_.push_back({crossings_[k].x, crossings_[k + 1].x});
    }
    return stretches_;
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

  void CollectCrossings(double y) {
    crossings_.clear();
    for (int i = 1; i < count_; ++i) {
      if (nodes_[i].IsLine()) AddLine(ToDouble(points_[i - 1]), ToDouble(points_[i]), y);
      if (nodes_[i].IsCurve() && i >= 3) AddCurve(i, y);
    }
    if (count_ > 1)
      AddLine(ToDouble(points_[count_ - 1]), ToDouble(points_[0]), y);  // no-op when the ends coincide
  }

  /// Half-open in y, so that a vertex on the line counts for exactly one of its two edges.
  void AddLine(const DPoint& a, const DPoint& b, double y) {
    if ((a.y < y) == (b.y < y)) return;
    const double x = a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x);
    if (std::isfinite(x)) crossings_.push_back({x, a.y < b.y ? 1 : -1});
  }

  /// Each monotone part of the curve between its horizontal tangents crosses the line at most once.
  void AddCurve(int end, double y) {
    DPoint cubic[4];
    LoadCubic(points_ + end - 3, cubic);
    const double a = cubic[0].y, b = cubic[1].y, c = cubic[2].y, d = cubic[3].y;
    if (std::max({a, b, c, d}) < y || std::min({a, b, c, d}) > y) return;
    const bool turnsNowhere = (a <= b && b <= c && c <= d) || (a >= b && b >= c && c >= d);
    double cut[4] = {0, 0, 0, 0};
    const int turns = turnsNowhere ? 0 : TavMath::CubicBezier::GetHorizontalTangents(cubic, cut + 1);
    cut[turns + 1] = 1;
    for (int k = 0; k <= turns; ++k) AddMonotone(cubic, cut[k], cut[k + 1], y);
  }

  void AddMonotone(const DPoint cubic[4], double t0, double t1, double y) {
    const double a = cubic[0].y, b = cubic[1].y, c = cubic[2].y, d = cubic[3].y;
    const auto height = [&](double t) {
      if (t == 0 || t == 1) return t == 0 ? a : d;
      const double s = 1 - t;
      return s * s * (s * a + 3 * t * b) + t * t * (3 * s * c + t * d);
    };
    const auto slopeAt = [&](double t) {
      const double s = 1 - t;
      return 3 * (s * s * (b - a) + 2 * s * t * (c - b) + t * t * (d - c));
    };
    const bool up = height(t0) < y;
    if (up == (height(t1) < y)) return;
    // Newton's method inside a bracket that shrinks at every step; halving where it would leave the bracket.
    double t = 0.5 * (t0 + t1);
    for (int k = 0; k < hierarchy::kCrossingSteps; ++k) {
      const double off = height(t) - y;
      ((off < 0) == up ? t0 : t1) = t;
      double next = t - off / slopeAt(t);
      if (!(next > t0 && next < t1)) next = 0.5 * (t0 + t1);
      const double move = std::abs(next - t);
      t = next;
      if (move <= hierarchy::kCrossingSettled) break;
    }
    crossings_.push_back({TavMath::CubicBezier::Evaluate(cubic, t).x, up ? 1 : -1});
  }

  const T* points_;
  const NODETYPE* nodes_;
  int count_;
  BoundsT<double> box_;
  std::vector<Crossing> crossings_;
  std::vector<Stretch> stretches_;
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
  for (unsigned line = 1; line <= hierarchy::kMaxSampleLines; ++line) {
    const double y = box.miny + VanDerCorput(line) * box.Height();
    for (const Stretch& stretch : scan.At(y)) {
      const double middle = 0.5 * stretch.left + 0.5 * stretch.right;
      const bool strictly = stretch.left < middle && middle < stretch.right;
      if (!strictly || stretch.Width() <= widest.Width()) continue;
      widest = stretch;
      height = y;
    }
    if (widest.Width() > 0 && line >= hierarchy::kComparedSampleLines) break;
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
  for (const Stretch& stretch : scan.At(y)) {
    const double x = std::round(0.5 * stretch.left + 0.5 * stretch.right);
    if (!(x > stretch.left + margin && x < stretch.right - margin) || stretch.Width() <= widest) continue;
    if (!scan.IsClear({x, y}, margin)) continue;
    widest = stretch.Width();
    sample = {x, y};
  }
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
