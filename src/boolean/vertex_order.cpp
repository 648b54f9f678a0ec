#include "boolean/planar_map.h"
#include "boolean/tolerances.h"

namespace Lumo::Planar {
namespace {

std::size_t At(int i) { return static_cast<std::size_t>(i); }

/// Grows with the angle from the direction (-1, 0) counter-clockwise: -2 to 2, a unit for each quarter turn.
double PseudoAngle(const DVector& d) {
  const double sum = std::fabs(d.x) + std::fabs(d.y);
  if (!(sum > 0)) return 0;
  const double p = d.y / sum;
  if (d.x >= 0) return p;
  return d.y >= 0 ? 2 - p : -2 - p;
}

struct Spoke {
  double angle;
  int half;
};

class VertexOrder {
 public:
  VertexOrder(EdgeSet& edges, double contact) : set_(edges), contact_(contact) {}

  void Run() {
    for (std::size_t v = 0; v + 1 < set_.first.size(); ++v) {
      const int begin = set_.first[v], end = set_.first[v + 1];
      if (end - begin > 2) Order(begin, end);
    }
  }

 private:
  void Order(int begin, int end) {
    spokes_.clear();
    for (int k = begin; k < end; ++k) {
      const int half = set_.outgoing[At(k)];
      const Edge& e = set_.edges[At(half >> 1)];
      spokes_.push_back({PseudoAngle(LeavingDirection(e.curve, half & 1, contact_)), half});
    }
    std::sort(spokes_.begin(), spokes_.end(), [](const Spoke& a, const Spoke& b) {
      return a.angle != b.angle ? a.angle < b.angle : a.half < b.half;
    });
    RefineNearlyParallel();
    for (int k = begin; k < end; ++k) set_.outgoing[At(k)] = spokes_[At(k - begin)].half;
  }

  /// Runs of spokes with nearly the same direction are ordered by geometry. The circle of directions is cut
  /// at its widest gap, so that no run straddles the cut, and turned back afterwards: the first spoke stays
  /// the first one counter-clockwise of the direction (-1, 0).
  void RefineNearlyParallel() {
    const std::size_t n = spokes_.size();
    std::size_t widest = 0;
    double gap = -1;
    bool any = false;
    for (std::size_t k = 0; k < n; ++k) {
      const double g =
          k + 1 < n ? spokes_[k + 1].angle - spokes_[k].angle : spokes_[0].angle + 4 - spokes_[k].angle;
      any |= g < kTangentialAngle;
      if (g > gap) gap = g, widest = k;
    }
    if (!any) return;
    const std::size_t cut = (widest + 1) % n;
    std::rotate(spokes_.begin(), spokes_.begin() + static_cast<std::ptrdiff_t>(cut), spokes_.end());
    const auto turned = [&](std::size_t k) {
      return spokes_[k].angle + (spokes_[k].angle < spokes_[0].angle ? 4 : 0);
    };
    for (std::size_t begin = 0; begin < n;) {
      std::size_t end = begin + 1;
      while (end < n && turned(end) - turned(end - 1) < kTangentialAngle) ++end;
      SortRun(begin, end);
      begin = end;
    }
    // The leftmost vertex of a connected part reads its outer face from the place where the angle wraps; no
    // run straddles that place there, so the spoke that was first is first again.
    std::rotate(spokes_.begin(), spokes_.begin() + static_cast<std::ptrdiff_t>((n - cut) % n), spokes_.end());
  }

  void SortRun(std::size_t begin, std::size_t end) {
    for (std::size_t k = begin + 1; k < end; ++k) {
      for (std::size_t i = k; i > begin && LeftOf(spokes_[i - 1].half, spokes_[i].half) < 0; --i) {
        std::swap(spokes_[i - 1], spokes_[i]);
      }
    }
  }

  /// Positive when the edge g leaves to the left of (counter-clockwise from) the edge f. The two do not
  /// cross, so it shows wherever they are farthest apart.
  double LeftOf(int f, int g) const {
    const Curve &cf = set_.edges[At(f >> 1)].curve, &cg = set_.edges[At(g >> 1)].curve;
    const double lf = TavMath::DistanceSqrd(cf.p[0], cf.p[3]), lg = TavMath::DistanceSqrd(cg.p[0], cg.p[3]);
    return lg <= lf ? Offset(cf, f & 1, cg, g & 1) : -Offset(cg, g & 1, cf, f & 1);
  }

  /// The signed distance of the shorter edge from the longer one where it is greatest; positive to the left.
  static double Offset(const Curve& along, bool alongBackwards, const Curve& probe, bool probeBackwards) {
    double best = 0;
    for (const double f : {1.0, 0.75, 0.5, 0.25, 0.0625}) {
      const DPoint q = Evaluate(probe, probeBackwards ? 1 - f : f);
      const double t = Project(along, q);
      if (t == (alongBackwards ? 0 : 1) && f < 1) continue;
      const DVector d = Derivative(along, t);
      const double length = TavMath::Length(d);
      if (!(length > 0)) continue;
      double side = TavMath::Cross(d, q - Evaluate(along, t)) / length;
      if (alongBackwards) side = -side;
      if (std::fabs(side) > std::fabs(best)) best = side;
    }
    return best;
  }

  EdgeSet& set_;
  double contact_;
  std::vector<Spoke> spokes_;
};

}  // namespace

void OrderRoundVertices(EdgeSet& edges, double contact) { VertexOrder(edges, contact).Run(); }

}  // namespace Lumo::Planar
