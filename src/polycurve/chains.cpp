// Joining many open subpaths at once: their ends are paired by distance, and each chain of paired subpaths is
// written as one.

#include <algorithm>
#include <cmath>
#include <limits>

#include "lumo/path_array.h"
#include "lumo/polycurve.h"
#include "math/point_traits.h"
#include "polycurve/end_index.h"
#include "polycurve/subpath_walk.h"

namespace Lumo {
namespace {

/// The open subpaths with at least one segment. End 2k is the start of subpath k, end 2k + 1 its end.
struct OpenEnds {
  std::vector<SubcurveRange> subpaths;
  std::vector<DPoint> points;
  std::vector<int> forbidden;  ///< the end that an end is never joined to
};

template <class T>
OpenEnds FindOpenEnds(const T* points, const NODETYPE* types, std::size_t count) {
  OpenEnds ends;
  WalkSubpaths(types, count, [&](std::size_t first, std::size_t end) {
    if (types[first].IsClosed() || end - first < 2) return true;
    const DPoint a = ToDouble(points[first]), b = ToDouble(points[end - 1]);
    if (!std::isfinite(a.x + a.y + b.x + b.y)) return true;  // no place to be near to
    const int start = static_cast<int>(ends.points.size());
    // A single line closed on itself would run out and back.
    const bool singleLine = end - first == 2;
    ends.subpaths.push_back({first, end});
    ends.points.push_back(a);
    ends.points.push_back(b);
    ends.forbidden.push_back(singleLine ? start + 1 : -1);
    ends.forbidden.push_back(singleLine ? start : -1);
    return true;
  });
  return ends;
}

/// Writes chains of subpaths.
template <class T>
class ChainWriter {
 public:
  ChainWriter(const PolycurveT<T>& path, const OpenEnds& ends, const std::vector<int>& partner,
              bool withLines)
      : path_(path), ends_(ends), partner_(partner), withLines_(withLines), done_(ends.subpaths.size()) {}

  /// Writes the whole path: every chain at the place, and in the direction, of its first subpath.
  void Run() {
    std::size_t k = 0;
    WalkSubpaths(path_.GetNodeTypes(), path_.GetPointCount(), [&](std::size_t first, std::size_t end) {
      if (k == ends_.subpaths.size() || ends_.subpaths[k].first != first) {
        points.insert(points.end(), path_.GetPoints() + first, path_.GetPoints() + end);
        types.insert(types.end(), path_.GetNodeTypes() + first, path_.GetNodeTypes() + end);
      } else if (!done_[k++]) {
        WriteChain(static_cast<int>(k) - 1);
      }
      return true;
    });
  }

  std::vector<T> points;
  std::vector<NODETYPE> types;

 private:
  int Partner(int end) const { return partner_[static_cast<std::size_t>(end)]; }

  void WriteChain(int subpath) {
    // Back along the chain to an end without partner, or round to where it began.
    int head = 2 * subpath;
    while (Partner(head) >= 0 && (Partner(head) ^ 1) != 2 * subpath) head = Partner(head) ^ 1;
    const bool closed = Partner(head) >= 0;
    if (closed) head = 2 * subpath;
    const std::size_t first = points.size();
    for (int at = head;;) {
      Append(at, at != head);
      at = Partner(at ^ 1);
      if (at < 0 || at == head) break;
    }
    if (closed) Close(first);
  }

  /// Appends the subpath that begins (in the direction of the chain) at this end.
  void Append(int end, bool continues) {
    const std::size_t k = static_cast<std::size_t>(end) / 2;
    const SubcurveRange range = ends_.subpaths[k];
    done_[k] = true;
    std::size_t at = points.size();
    const T last = continues ? points.back() : T{};
    points.insert(points.end(), path_.GetPoints() + range.first, path_.GetPoints() + range.end);
    types.insert(types.end(), path_.GetNodeTypes() + range.first, path_.GetNodeTypes() + range.end);
    const int n = static_cast<int>(range.end - range.first);
    if (end % 2 == 1) Lumo::Reverse(points.data() + at, types.data() + at, 0, n - 1);
    if (!continues) return;
    if (withLines_ && points[at] != last) {
      types[at].SetKind(NODETYPE::kLine);
      types[at].Set(NODETYPE::kLetter, false);
      return;
    }
    points[at - 1] = Mean(last, points[at]);
    types[at - 1] |= types[at] & NODETYPE::kEnabled;
    points.erase(points.begin() + static_cast<std::ptrdiff_t>(at));
    types.erase(types.begin() + static_cast<std::ptrdiff_t>(at));
  }

  void Close(std::size_t first) {
    if (withLines_ && points.back() != points[first]) {
      points.push_back(points[first]);
      types.push_back(NODETYPE::kLine);
    }
    points[first] = points.back() = Mean(points[first], points.back());
    const NODETYPE enabled = static_cast<unsigned char>((types[first] | types.back()) & NODETYPE::kEnabled);
    types[first] |= static_cast<unsigned char>(NODETYPE::kClosed | NODETYPE::kUser | enabled);
    types.back() |= static_cast<unsigned char>(NODETYPE::kClosed | enabled);
    types.back().Set(NODETYPE::kUser, false);
  }

  static T Mean(const T& a, const T& b) {
    return a == b ? a : FromDouble<T>(TavMath::Midpoint(ToDouble(a), ToDouble(b)));
  }

  const PolycurveT<T>& path_;
  const OpenEnds& ends_;
  const std::vector<int>& partner_;
  bool withLines_;
  std::vector<bool> done_;
};

}  // namespace

template <class T>
bool PolycurveT<T>::JoinNearestEnds(double limit, bool withLines) noexcept {
  try {
    const OpenEnds ends = FindOpenEnds(GetPoints(), GetNodeTypes(), GetPointCount());
    std::vector<int> partner;
    PairNearestEnds(ends.points, ends.forbidden, limit, partner);
    if (std::all_of(partner.begin(), partner.end(), [](int other) { return other < 0; })) return false;
    ChainWriter<T> chains(*this, ends, partner, withLines);
    chains.Run();
    return MoveData(std::move(chains.points), std::move(chains.types));
  } catch (...) {
    return false;
  }
}

template <class T>
bool PolycurveT<T>::JoinTouchingSubpaths(double tolerance) noexcept {
  return tolerance >= 0 && JoinNearestEnds(tolerance, false);
}

template <class T>
bool PolycurveT<T>::JoinClosestPairsAddingLineSegments() noexcept {
  return JoinNearestEnds(std::numeric_limits<double>::infinity(), true);
}

#define LUMO_CHAIN_MEMBERS(T)                                                  \
  LUMO_INSTANTIATE bool PolycurveT<T>::JoinNearestEnds(double, bool) noexcept; \
  LUMO_INSTANTIATE bool PolycurveT<T>::JoinTouchingSubpaths(double) noexcept;  \
  LUMO_INSTANTIATE bool PolycurveT<T>::JoinClosestPairsAddingLineSegments() noexcept;
LUMO_CHAIN_MEMBERS(tagPOINT)
LUMO_CHAIN_MEMBERS(TavMath::DPoint)

}  // namespace Lumo
