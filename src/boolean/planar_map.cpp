#include "boolean/planar_map.h"

#include "boolean/box_tree.h"

namespace Lumo::Planar {
namespace {

std::size_t At(int i) { return static_cast<std::size_t>(i); }

Winding Negated(Winding w) { return Winding{} - w; }

class MapBuilder {
 public:
  MapBuilder(const EdgeSet& edges, double contact) : set_(edges), contact_(contact) {}

  PlanarMap Run() {
    LinkFaces();
    LabelFaces();
    part_.assign(At(faces_), -1);
    counted_.assign(set_.vertices.size(), false);
    map_.winding.resize(At(faces_));
    for (int f = 0; f < faces_; ++f) {
      if (part_[At(f)] < 0) SpreadFrom(f);
    }
    if (parts_.size() > 1) PlaceParts();
    for (int f = 0; f < faces_; ++f) {
      map_.winding[At(f)] = map_.winding[At(f)] + parts_[At(part_[At(f)])].shift;
    }
    return std::move(map_);
  }

 private:
  /// A connected part of the drawing.
  struct Part {
    int vertices = 0, edges = 0, faces = 0;
    int leftmost = -1;
    Box box;
    Winding shift;  // what to add to the windings found relative to the part's first face
    Winding outer;  // of the outer face, before the shift
  };

  /// The half-edge after h along the face on its left: the first one clockwise from h's twin at h's end.
  void LinkFaces() {
    next_.resize(set_.outgoing.size());
    for (std::size_t v = 0; v + 1 < set_.first.size(); ++v) {
      const int begin = set_.first[v], end = set_.first[v + 1];
      for (int k = begin; k < end; ++k) {
        next_[At(set_.outgoing[At(k)] ^ 1)] = set_.outgoing[At(k > begin ? k - 1 : end - 1)];
      }
    }
  }

  void LabelFaces() {
    map_.face.assign(next_.size(), -1);
    for (int h = 0; h < static_cast<int>(next_.size()); ++h) {
      if (map_.face[At(h)] >= 0) continue;
      for (int g = h; map_.face[At(g)] < 0; g = next_[At(g)]) map_.face[At(g)] = faces_;
      halfOf_.push_back(h);
      ++faces_;
    }
  }

  Winding Step(int half) const {
    const Winding step = set_.edges[At(half >> 1)].step;
    return (half & 1) ? Negated(step) : step;
  }

  /// Windings of a connected part relative to its face f, and what is needed to place the part.
  void SpreadFrom(int f) {
    const int id = static_cast<int>(parts_.size());
    parts_.emplace_back();
    Part& part = parts_.back();
    part_[At(f)] = id;
    stack_.assign(1, f);
    while (!stack_.empty()) {
      const int g = stack_.back();
      stack_.pop_back();
      ++part.faces;
      int h = halfOf_[At(g)];
      do {
        Visit(part, h);
        const int other = map_.face[At(h ^ 1)];
        const Winding w = map_.winding[At(g)] - Step(h);
        if (part_[At(other)] < 0) {
          part_[At(other)] = id;
          map_.winding[At(other)] = w;
          stack_.push_back(other);
        } else if (!(map_.winding[At(other)] == w)) {
          map_.plane = false;
        }
        h = next_[At(h)];
      } while (h != halfOf_[At(g)]);
    }
    if (part.vertices - part.edges + part.faces != 2) map_.plane = false;
    part.outer = map_.winding[At(OuterFace(part.leftmost))];
    part.shift = Negated(part.outer);
  }

  void Visit(Part& part, int half) {
    if ((half & 1) == 0) {
      ++part.edges;
      part.box.Add(HullBox(set_.edges[At(half >> 1)].curve));
    }
    const int v = set_.From(half);
    if (counted_[At(v)]) return;
    counted_[At(v)] = true;
    ++part.vertices;
    if (part.leftmost < 0 || IsLeft(v, part.leftmost)) part.leftmost = v;
  }

  bool IsLeft(int u, int v) const {
    const DPoint &p = set_.vertices[At(u)].p, &q = set_.vertices[At(v)].p;
    return p.x != q.x ? p.x < q.x : p.y < q.y;
  }

  /// At the leftmost vertex the outer face lies where the angle wraps, left of the last spoke
  /// counter-clockwise.
  int OuterFace(int v) const {
    const int begin = set_.first[At(v)], end = set_.first[At(v) + 1];
    if (end - begin == 2) {  // not ordered yet
      const int g = set_.outgoing[At(begin)], h = set_.outgoing[At(begin) + 1];
      return map_.face[At(IsBelow(g, h) ? h : g)];
    }
    return map_.face[At(set_.outgoing[At(end) - 1])];
  }

  /// Of two edges that leave a leftmost vertex: which one lies below.
  bool IsBelow(int g, int h) const {
    const Edge &e = set_.edges[At(g >> 1)], &f = set_.edges[At(h >> 1)];
    const DVector d = LeavingDirection(e.curve, g & 1, contact_),
                  c = LeavingDirection(f.curve, h & 1, contact_);
    const double cross = TavMath::Cross(d, c);
    if (std::fabs(cross) > 0x1p-10 * TavMath::Length(d) * TavMath::Length(c)) return cross > 0;
    // Nearly parallel: by what they enclose together. The outline through g, then back along h, is traversed
    // counter-clockwise when g lies below; the whole face orbit tells the same for longer outlines.
    double area = 0;
    int k = g;
    do {
      area += SignedArea(k);
      k = next_[At(k)];
    } while (k != g);
    return area > 0;
  }

  double SignedArea(int half) const {
    const Curve& c = set_.edges[At(half >> 1)].curve;
    double area = 0;
    const DPoint origin = c.p[0];
    constexpr int kPieces = 16;
    DPoint p = origin;
    for (int i = 1; i <= kPieces; ++i) {
      const DPoint q = Evaluate(c, i / double{kPieces});
      area += TavMath::Cross(p - origin, q - origin);
      p = q;
    }
    area += TavMath::Cross(TavMath::AsVector(c.p[0]), TavMath::AsVector(c.p[3]));
    return (half & 1) ? -area : area;
  }

  /// Adds to each part the winding that the other parts give to its leftmost point, by a ray downwards.
  void PlaceParts() {
    constexpr std::size_t kFew = 8;
    bool nested = parts_.size() > kFew;
    for (std::size_t i = 0; i < parts_.size() && !nested; ++i) {
      for (std::size_t j = i + 1; j < parts_.size(); ++j) nested |= parts_[i].box.Overlaps(parts_[j].box);
    }
    if (!nested) return;
    std::vector<Box> boxes;
    boxes.reserve(set_.edges.size());
    for (const Edge& e : set_.edges) boxes.push_back(HullBox(e.curve));
    const BoxTree tree(std::move(boxes));
    std::vector<Box> partBoxes;
    for (const Part& part : parts_) partBoxes.push_back(part.box);
    const BoxTree partBoxTree(std::move(partBoxes));
    for (std::size_t i = 0; i < parts_.size(); ++i) {
      const DPoint p = set_.vertices[At(parts_[i].leftmost)].p;
      bool inside = false;
      partBoxTree.ForEachBelow(p.x, p.y,
                               [&](int k) { inside |= At(k) != i && parts_[At(k)].box.maxy >= p.y; });
      if (!inside) continue;
      Winding sum;
      tree.ForEachBelow(p.x, p.y, [&](int e) {
        if (At(part_[At(map_.face[At(2 * e)])]) != i) sum = sum + Passed(set_.edges[At(e)], p);
      });
      parts_[i].shift = parts_[i].shift + sum;
    }
  }

  /// What a downward ray from p gains at the edge. Edges are monotone in x, and span their left end but not
  /// the right.
  static Winding Passed(const Edge& e, const DPoint& p) {
    const double x0 = e.curve.p[0].x, x1 = e.curve.p[3].x;
    const bool forward = x0 <= p.x && p.x < x1, backward = x1 <= p.x && p.x < x0;
    if (!forward && !backward) return {};
    if (HeightAt(e.curve, p.x) >= p.y) return {};
    return forward ? e.step : Negated(e.step);
  }

  static double HeightAt(const Curve& c, double x) {
    const double x0 = c.p[0].x, x1 = c.p[3].x;
    double low = 0, high = 1, t = (x - x0) / (x1 - x0);
    if (c.line) return c.p[0].y + t * (c.p[3].y - c.p[0].y);
    const bool rising = x1 > x0;
    for (int k = 0; k < 60 && high - low > 0x1p-50; ++k) {
      const double off = Evaluate(c, t).x - x, slope = Derivative(c, t).x;
      if (off == 0) break;
      ((off > 0) == rising ? high : low) = t;
      double next = slope != 0 ? t - off / slope : low;
      if (!(next > low && next < high)) next = 0.5 * (low + high);
      if (std::fabs(next - t) < 0x1p-52) break;
      t = next;
    }
    return Evaluate(c, t).y;
  }

  const EdgeSet& set_;
  double contact_;
  PlanarMap map_;
  int faces_ = 0;
  std::vector<int> next_, halfOf_, part_, stack_;
  std::vector<char> counted_;
  std::vector<Part> parts_;
};

}  // namespace

PlanarMap MakePlanarMap(const EdgeSet& edges, double contact) { return MapBuilder(edges, contact).Run(); }

}  // namespace Lumo::Planar
