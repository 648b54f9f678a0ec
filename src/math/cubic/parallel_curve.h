#pragma once
// The parallel curve of one cubic: the curve O(t) = B(t) + d n(t), n the unit left normal of B. Its
// derivative is O' = (|B'| - d w) T with the unit tangent T and the turning rate w = (B' x B'') / |B'|^2, so
// it runs backwards where the signed speed |B'| - d w is negative and has a cusp where the speed changes
// sign.

#include <array>

#include "tav/math/cubic_bezier.h"

namespace TavMath {

/// One point of a parallel curve. The tangent is the source's unit tangent whatever the sign of the speed.
struct ParallelSample {
  double t;
  DPoint point;
  DVector tangent;
  double speed;
};

/// Parameters of one cubic in a fixed array, sorted, strictly inside (0, 1).
struct CuspList {
  int count = 0;
  std::array<double, 12> t;
  void Add(double value);
  bool Contains(double value) const;
};

/// Moves handles that are too short to have a direction of their own onto their nodes. `polygon`: the length
/// of the control polygon.
void DropShortHandles(DPoint bezier[4], double polygon) noexcept;

class ParallelCurve {
 public:
  ParallelCurve(const DPoint bezier[4], double offset) noexcept;

  /// False for coordinates that are not finite, for a single point, and for a distance that is not finite.
  bool IsUsable() const noexcept { return usable_; }
  /// All control points on one line: every tangent is along it and the curvature is zero.
  bool IsStraight() const noexcept { return straight_; }
  /// Certain, by bounds over the control points: neither the source nor the parallel curve has a cusp. When
  /// false there may be none all the same.
  bool IsSurelySmooth() const noexcept { return smooth_; }
  double PolygonLength() const noexcept { return polygon_; }
  /// Lengths up to this are rounding noise.
  double Noise() const noexcept { return noise_; }
  /// The source; handles of rounding size are made zero.
  const DPoint* Source() const noexcept { return bezier_.data(); }
  /// The size that relative limits refer to: the larger of the control polygon's length and the distance.
  double Scale() const noexcept { return scale_; }

  ParallelSample At(double t) const noexcept;
  double Speed(double t) const noexcept;

  /// Where the source itself stops and turns back (its derivative vanishes inside): the parallel curve jumps
  /// there.
  CuspList SourceCusps() const noexcept;
  /// Where the speed changes sign, source cusps included.
  CuspList Cusps() const noexcept;

 private:
  bool IsCuspOfSource(double t) const noexcept;
  void AddSignChange(double from, double to, CuspList& cusps) const noexcept;

  std::array<DPoint, 4> bezier_;
  std::array<DVector, 3> leg_;   ///< of the control polygon
  std::array<DVector, 2> bend_;  ///< from one leg to the next
  double offset_;
  double scale_ = 0;
  double polygon_ = 0;
  double noise_ = 0;
  bool usable_ = false;
  bool straight_ = false;
  bool sourceSmooth_ = false;  ///< certain, as for smooth_
  bool smooth_ = false;
  void BoundSpeed() noexcept;
};

/// Samples of a stretch of a parallel curve, close enough that the tangent turns little from one to the next.
struct ParallelSamples {
  static constexpr int kCapacity = 256;
  int count = 0;
  double totalTurn = 0;  ///< sum of the unsigned turns, radians
  std::array<ParallelSample, kCapacity> at;
  std::array<double, kCapacity> measure;  ///< length along the parallel curve up to this sample
  std::array<double, kCapacity> turn;     ///< unsigned turn up to this sample

  void Build(const ParallelCurve& curve, double t0, double t1) noexcept;
  /// A few uniform samples. False when the stretch turns by much or runs far between two of them.
  bool BuildSparse(const ParallelCurve& curve, double t0, double t1) noexcept;
  /// The parameter at which a fraction of the length (or of the turn) is reached, linear between samples.
  double AtMeasure(double fraction) const noexcept;
  double AtTurn(double fraction) const noexcept;

 private:
  double longest_ = 0, mostHidden_ = 0;
  /// From one sample to the next.
  struct Step {
    Step() = default;
    Step(const ParallelSample& from, const ParallelSample& to);
    double turn, chord, hidden;
  };
  void Refine(const ParallelCurve& curve, const ParallelSample& from, const ParallelSample& to,
              const Step& step, int depth) noexcept;
  void Append(const ParallelSample& to, double turned, double chord) noexcept;
};

}  // namespace TavMath
