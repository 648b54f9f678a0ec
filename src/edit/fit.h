#pragma once
// One cubic in place of several segments: the fit shared by deletion and node reduction.

#include <array>

#include "lumo/node_type.h"
#include "math/point_traits.h"

namespace Lumo {

/// Points along a stretch of a path, evenly many for each segment, with the parameter that each has on the
/// cubic being fitted. A fixed array: fitting needs no heap and its cost per stretch is bounded.
struct FitSamples {
  static constexpr int kPerSegment = 16;
  static constexpr int kMax = 1024;  ///< longer stretches are sampled more coarsely

  struct Sample {
    DPoint point;
    double t;
  };
  int count = 0;
  std::array<Sample, kMax> at;

  /// The parameters, set aside while others are tried.
  void Keep() {
    for (int k = 0; k < count; ++k) kept_[static_cast<std::size_t>(k)] = at[static_cast<std::size_t>(k)].t;
  }
  void Restore() {
    for (int k = 0; k < count; ++k) at[static_cast<std::size_t>(k)].t = kept_[static_cast<std::size_t>(k)];
  }

 private:
  std::array<double, kMax> kept_;
};

/// Writes to cubic[1] and cubic[2] the handles of a cubic from node k0 to node k1 (cubic[0] and cubic[3], set
/// here too) that approximates the segments between them in the least-squares sense, keeping the directions
/// in which the stretch leaves k0 and reaches k1. Where the stretch is what splitting one cubic gives, that
/// cubic comes back. k0 and k1 must be on-curve nodes of one well-formed subpath, k0 < k1.
/// Returns the greatest squared distance of a sample from the cubic, or of the cubic from the samples where
/// it strays between two of them.
template <class T>
double FitCubic(const T* points, const NODETYPE* types, int k0, int k1, DPoint cubic[4]);

/// The greatest squared distance of the stretch k0..k1 from the straight line between its ends.
template <class T>
double DeviationFromLineSqrd(const T* points, const NODETYPE* types, int k0, int k1);

}  // namespace Lumo
