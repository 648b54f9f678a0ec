#pragma once
// Extreme values of every type that the interface takes, and calls with all their combinations (or, where
// those are too many, with an even selection of them).

#include <algorithm>
#include <climits>
#include <cstdint>
#include <limits>
#include <numeric>
#include <tuple>
#include <type_traits>
#include <vector>

#include "lumo/lumo.h"
#include "support/path_builder.h"

namespace test {

template <class T>
class Extremes {
 public:
  using Path = Lumo::PolycurveT<T>;

  /// Calls run with every combination of values of its parameters, or an even selection of so many. A path
  /// taken by value is a fresh one.
  template <class Run>
  static void Each(Run run, std::size_t mostCalls = 1500) {
    EachOf(run, &Run::operator(), mostCalls);
  }

  /// Well-formed and arbitrary node bytes, with ordinary and with extreme coordinates.
  static const std::vector<Path>& Paths() {
    static const std::vector<Path> paths = MakePaths();
    return paths;
  }

 private:
  using DPoint = TavMath::DPoint;
  static constexpr double kInf = std::numeric_limits<double>::infinity();
  static constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

  template <class Run, class... Args>
  static void EachOf(Run& run, void (Run::*)(Args...) const, std::size_t mostCalls) {
    const std::tuple<std::vector<std::decay_t<Args>>...> values{
        Values(static_cast<std::decay_t<Args>*>(nullptr))...};
    const std::size_t combinations =
        std::apply([](const auto&... v) { return (v.size() * ... * 1); }, values);
    // A step without a common divisor visits all combinations, and spreads what is left of them evenly.
    const std::size_t calls = std::min(combinations, mostCalls);
    std::size_t step = combinations > mostCalls ? combinations / mostCalls + 1 : 1;
    while (std::gcd(step, combinations) != 1) ++step;
    std::size_t at = 0;
    for (std::size_t k = 0; k < calls; ++k, at = (at + step) % combinations) {
      std::size_t rest = at;
      std::apply(
          [&](const auto&... v) {
            // Braces keep the order of evaluation.
            std::tuple<std::decay_t<Args>...> chosen{Take(v, rest)...};
            std::apply(run, chosen);
          },
          values);
    }
  }
  template <class Value>
  static Value Take(const std::vector<Value>& values, std::size_t& rest) {
    const std::size_t index = rest % values.size();
    rest /= values.size();
    return values[index];
  }

  static std::vector<double> Values(double*) {
    return {0, 0.5, 1, -1, 1e9, kNaN, kInf, -kInf, 5e-324, 1.7976931348623157e308};
  }
  static std::vector<bool> Values(bool*) { return {false, true}; }
  static std::vector<int> Values(int*) { return {INT_MIN, -1, 0, 1, 2, 5, INT_MAX}; }
  static std::vector<std::size_t> Values(std::size_t*) {
    return {0, 1, 2, 4, 9, 1000, SIZE_MAX / 2, SIZE_MAX};
  }
  static std::vector<DPoint> Values(DPoint*) {
    return {{0, 0}, {3, -4}, {kNaN, 1}, {-kInf, kInf}, {1e308, -1e308}, {5e-324, 0}};
  }
  static std::vector<TavMath::DVector> Values(TavMath::DVector*) {
    return {{0, 0}, {3, -4}, {kNaN, 1}, {-kInf, kInf}, {1e308, -1e308}, {5e-324, 0}};
  }
  static std::vector<tagPOINT> Values(tagPOINT*) {
    return {{0, 0}, {3, -4}, {INT_MIN, INT_MIN}, {INT_MAX, INT_MIN}, {INT_MAX, INT_MAX}};
  }
  static std::vector<tagRECT> Values(tagRECT*) {
    return {{0, 0, 0, 0}, {5, 5, -5, -5}, {INT_MIN, INT_MIN, INT_MAX, INT_MAX}, {INT_MAX, 0, INT_MIN, 9}};
  }
  static std::vector<TavMath::BoundsT<double>> Values(TavMath::BoundsT<double>*) {
    using Box = TavMath::BoundsT<double>;
    const Box empty, turned{5, 5, -5, -5}, huge{-1e308, -1e308, 1e308, 1e308}, none{kNaN, 0, 1, kInf};
    return {empty, turned, huge, none};
  }
  static std::vector<MATRIX> Values(MATRIX*) {
    return {{},
            {0, 0, 0, 0, 0, 0},
            {1e308, 2, 3, -1e308, 1e308, 5},
            {kNaN, 0, 0, kInf, 1, 1},
            {5e-324, 0, 0, 5e-324, 0, 0}};
  }
  static std::vector<Lumo::CurvePosition> Values(Lumo::CurvePosition*) {
    return {{},
            {0, 1, 0.5},
            {0, 1, kNaN},
            {1, 4, 1},
            {INT_MIN, INT_MAX, 0},
            {INT_MAX, INT_MIN, kInf},
            {INT_MAX - 3, INT_MAX, 0}};
  }
  static std::vector<TavMath::Cubic> Values(TavMath::Cubic*) {
    return {{DPoint{0, 0}, {0, 0}, {0, 0}, {0, 0}},
            {DPoint{0, 0}, {0, 5e-324}, {5e-324, 0}, {0, 0}},
            {DPoint{0, 0}, {100, 100}, {0, 100}, {100, 0}},
            {DPoint{0, 0}, {kNaN, 1}, {2, 2}, {3, 3}},
            {DPoint{-kInf, 0}, {1, 1}, {2, 2}, {3, 3}},
            {DPoint{1e308, -1e308}, {-1e308, 1e308}, {1e308, 1e308}, {-1e308, -1e308}}};
  }
  static std::vector<ContinuityType> Values(ContinuityType*) {
    return {ContinuityType::cusp, ContinuityType::symmetric, static_cast<ContinuityType>(INT_MAX)};
  }
  static std::vector<Lumo::FillRule> Values(Lumo::FillRule*) {
    return {Lumo::FillRule::nonZero, Lumo::FillRule::evenOdd, static_cast<Lumo::FillRule>(INT_MAX)};
  }
  static std::vector<Lumo::RectangleCorner> Values(Lumo::RectangleCorner*) {
    return {Lumo::RectangleCorner::round, Lumo::RectangleCorner::chamfer,
            static_cast<Lumo::RectangleCorner>(INT_MIN)};
  }
  static std::vector<Lumo::NodeEdge> Values(Lumo::NodeEdge*) {
    return {Lumo::NodeEdge::left, Lumo::NodeEdge::middleY, static_cast<Lumo::NodeEdge>(INT_MAX)};
  }
  static std::vector<TavMath::LengthAccuracy> Values(TavMath::LengthAccuracy*) {
    return {{}, {INT_MIN}, {0}, {INT_MAX}};
  }
  static std::vector<Path> Values(Path*) { return Paths(); }

  static std::vector<Path> MakePaths() {
    const auto drawing = ParsePath<T>(
        "M0,0 e L90,0 e s C120,30 120,60 90,90 y e L0,90 Z M20,20 e L20,70 e C1,2 3,4 5,6 e M7,7 e");
    std::vector<Path> paths(1);
    paths.emplace_back(drawing.points.data(), drawing.types.data(), 1);
    paths.emplace_back(drawing.points.data(), drawing.types.data(), drawing.points.size());
    std::uint32_t state = 1;
    const auto random = [&] { return (state = state * 1664525u + 1013904223u) >> 16; };
    std::vector<T> wild = drawing.points, still(drawing.points.size(), drawing.points[3]);
    const auto extremes = Values(static_cast<T*>(nullptr));
    for (T& p : wild) p = extremes[random() % extremes.size()];
    std::vector<NODETYPE> bytes(drawing.types.size());
    for (NODETYPE& type : bytes) type = static_cast<unsigned char>(random());
    paths.emplace_back(wild.data(), drawing.types.data(), wild.size());
    paths.emplace_back(still.data(), drawing.types.data(), still.size());
    paths.emplace_back(drawing.points.data(), bytes.data(), bytes.size());
    paths.emplace_back(wild.data(), bytes.data(), bytes.size());
    // One extreme node, and one extreme handle, among ordinary ones.
    for (const std::size_t at : {std::size_t{1}, std::size_t{3}}) {
      std::vector<T> one = drawing.points;
      one[at] = extremes[1 + at];
      paths.emplace_back(one.data(), drawing.types.data(), one.size());
    }
    return paths;
  }
};

}  // namespace test
