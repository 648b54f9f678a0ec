#include "boolean/planar_map.h"

#include "boolean/box_tree.h"
#include "boolean/tolerances.h"

namespace Lumo::Planar {
namespace {

std::size_t At(int i) { return static_cast<std::size_t>(i); }

Winding Negated(Winding w) { return Winding{} - w; }

class MapBuilder {
 public:
  MapBuilder(const Collection& collection, const EdgeSet& edges, double contact)
      : in_(collection), set_(edges), contact_(contact) {}

  PlanarMap Run() {
    if (!set_.edges.empty()) {
      LinkFaces();
      LabelFaces();
      part_.assign(At(faces_), -1);
      counted_.assign(set_.vertices.size(), false);
      map_.winding.resize(At(faces_));
      for (int f = 0; f < faces_; ++f) {
        if (part_[At(f)] < 0) SpreadFrom(f);
      }
    }
    for (const int subpath : set_.loops) AddLoop(subpath);
    if (bodies_.size() > 1) PlaceBodies();
    for (int f = 0; f < faces_; ++f) {
      map_.winding[At(f)] = map_.winding[At(f)] + bodies_[At(part_[At(f)])].shift;
    }
    const std::size_t parts = bodies_.size() - set_.loops.size();
    for (std::size_t k = 0; k < map_.loops.size(); ++k) {
      Loop& loop = map_.loops[k];
      loop.left = loop.left + bodies_[parts + k].shift;
      loop.right = loop.right + bodies_[parts + k].shift;
    }
    return std::move(map_);
  }

 private:
  /// What is connected in itself and meets nothing else: a part of the map, or a loop.
  struct Body {
    int subpath = -1;  // of a loop
    DPoint leftmost;
    Box box;
    Winding shift;  // what to add to the windings found relative to the body's own outside or first face
  };
  /// A connected part of the map, while it is counted.
  struct Part {
    int vertices = 0, edges = 0, faces = 0;
    int leftmost = -1;
  };

  /// The half-edge after h along the face on its left: the first one clockwise from h's twin at h's end.
  void LinkFaces() {
    map_.next.resize(set_.outgoing.size());
    for (std::size_t v = 0; v + 1 < set_.first.size(); ++v) {
      const int begin = set_.first[v], end = set_.first[v + 1];
      for (int k = begin; k < end; ++k) {
        map_.next[At(set_.outgoing[At(k)] ^ 1)] = set_.outgoing[At(k > begin ? k - 1 : end - 1)];
      }
    }
  }

  void LabelFaces() {
    map_.face.assign(map_.next.size(), -1);
    for (int h = 0; h < static_cast<int>(map_.next.size()); ++h) {
      if (map_.face[At(h)] >= 0) continue;
      for (int g = h; map_.face[At(g)] < 0; g = map_.next[At(g)]) map_.face[At(g)] = faces_;
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
    const int id = static_cast<int>(bodies_.size());
    Body& body = bodies_.emplace_back();
    Part part;
    part_[At(f)] = id;
    stack_.assign(1, f);
    while (!stack_.empty()) {
      const int g = stack_.back();
      stack_.pop_back();
      ++part.faces;
      int h = halfOf_[At(g)];
      do {
        Visit(part, body, h);
        const int other = map_.face[At(h ^ 1)];
        const Winding w = map_.winding[At(g)] - Step(h);
        if (part_[At(other)] < 0) {
          part_[At(other)] = id;
          map_.winding[At(other)] = w;
          stack_.push_back(other);
        } else if (!(map_.winding[At(other)] == w)) {
          map_.plane = false;
        }
        h = map_.next[At(h)];
      } while (h != halfOf_[At(g)]);
    }
    if (part.vertices - part.edges + part.faces != 2) map_.plane = false;
    // Edges are monotone but for what moving their ends has bent them.
    body.box.Inflate(kStraightContacts * contact_, kStraightContacts * contact_);
    body.leftmost = set_.vertices[At(part.leftmost)].p;
    body.shift = Negated(map_.winding[At(OuterFace(part.leftmost))]);
  }

  void Visit(Part& part, Body& body, int half) {
    part.edges += (half & 1) == 0;
    const int v = set_.From(half);
    if (counted_[At(v)]) return;
    counted_[At(v)] = true;
    ++part.vertices;
    body.box.Add(set_.vertices[At(v)].p.x, set_.vertices[At(v)].p.y);
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
      k = map_.next[At(k)];
    } while (k != g);
    return area > 0;
  }

  double SignedArea(int half) const {
    const Curve& c = set_.edges[At(half >> 1)].curve;
    const double area = ChordArea(c, {0, 0}) + (c.line ? 0 : BulgeArea(c));
    return (half & 1) ? -area : area;
  }

  /// Twice the signed area between a curve's chord and a point, and between the curve and its chord (Green's
  /// theorem over the Bernstein form); positive to the left.
  static double ChordArea(const Curve& c, const DPoint& from) {
    return TavMath::Cross(c.p[0] - from, c.p[3] - from);
  }
  static double BulgeArea(const Curve& c) {
    const DVector u = c.p[1] - c.p[0], v = c.p[2] - c.p[0], w = c.p[3] - c.p[0];
    return 0.3 * TavMath::Cross(u, v) + 0.3 * TavMath::Cross(u, w) + 0.6 * TavMath::Cross(v, w);
  }

  void AddLoop(int subpath) {
    const Subpath& sub = in_.subpaths[At(subpath)];
    Body& body = bodies_.emplace_back();
    body.subpath = subpath;
    body.leftmost = in_.arcs[At(sub.firstArc)].curve.p[0];
    double area = 0;
    for (int k = sub.firstArc; k < sub.lastArc; ++k) {
      const Curve& c = in_.arcs[At(k)].curve;
      const DPoint& p = c.p[0];
      body.box.Add(p.x, p.y);  // arcs are monotone
      if (p.x < body.leftmost.x || (p.x == body.leftmost.x && p.y < body.leftmost.y)) body.leftmost = p;
      area += ChordArea(c, in_.arcs[At(sub.firstArc)].curve.p[0]);
      if (!c.line) area += BulgeArea(c);
    }
    const Winding step = StepOf(subpath);
    const bool insideLeft = area > 0;
    map_.loops.push_back({subpath, insideLeft ? step : Winding{}, insideLeft ? Winding{} : Negated(step)});
  }

  Winding StepOf(int subpath) const {
    return in_.paths[At(in_.subpaths[At(subpath)].path)].operand == 0 ? Winding{1, 0} : Winding{0, 1};
  }

  /// Adds to each body the winding that the others give to its leftmost point, by a ray downwards. Only a
  /// body whose box holds the point can give any.
  void PlaceBodies() {
    constexpr std::size_t kFew = 12;
    if (bodies_.size() > kFew) return PlaceManyBodies();
    for (Body& body : bodies_) {
      for (std::size_t k = 0; k < bodies_.size(); ++k) {
        const Body& other = bodies_[k];
        if (&other == &body || !other.box.Contains(body.leftmost.x, body.leftmost.y)) continue;
        if (other.subpath >= 0) {
          const Subpath& sub = in_.subpaths[At(other.subpath)];
          for (int i = sub.firstArc; i < sub.lastArc; ++i) {
            body.shift = body.shift + Passed(in_.arcs[At(i)].curve, StepOf(other.subpath), body.leftmost);
          }
        } else {
          for (std::size_t e = 0; e < set_.edges.size(); ++e) {
            if (part_[At(map_.face[2 * e])] != static_cast<int>(k)) continue;
            body.shift = body.shift + Passed(set_.edges[e].curve, set_.edges[e].step, body.leftmost);
          }
        }
      }
    }
  }

  void PlaceManyBodies() {
    // The curves of all bodies: first the edges, then the arcs of loops.
    struct Owned {
      const Curve* curve;
      Winding step;
      int body;
    };
    std::vector<Owned> curves;
    for (std::size_t e = 0; e < set_.edges.size(); ++e) {
      curves.push_back({&set_.edges[e].curve, set_.edges[e].step, part_[At(map_.face[2 * e])]});
    }
    std::vector<Box> bodyBoxes;
    for (std::size_t k = 0; k < bodies_.size(); ++k) {
      bodyBoxes.push_back(bodies_[k].box);
      if (bodies_[k].subpath < 0) continue;
      const Subpath& sub = in_.subpaths[At(bodies_[k].subpath)];
      for (int i = sub.firstArc; i < sub.lastArc; ++i) {
        curves.push_back({&in_.arcs[At(i)].curve, StepOf(bodies_[k].subpath), static_cast<int>(k)});
      }
    }
    std::vector<Box> boxes;
    boxes.reserve(curves.size());
    for (const Owned& owned : curves) boxes.push_back(HullBox(*owned.curve));
    const BoxTree tree(std::move(boxes)), bodyTree(std::move(bodyBoxes));
    for (std::size_t k = 0; k < bodies_.size(); ++k) {
      const DPoint p = bodies_[k].leftmost;
      bool inside = false;
      bodyTree.ForEachAt(p.x, p.y, [&](int other) { inside |= At(other) != k; });
      if (!inside) continue;
      Winding sum;
      tree.ForEachBelow(p.x, p.y, [&](int i) {
        const Owned& owned = curves[At(i)];
        if (At(owned.body) != k) sum = sum + Passed(*owned.curve, owned.step, p);
      });
      bodies_[k].shift = bodies_[k].shift + sum;
    }
  }

  /// What a downward ray from p gains at a curve that is monotone in x: it spans its left end but not the
  /// right.
  static Winding Passed(const Curve& c, Winding step, const DPoint& p) {
    const double x0 = c.p[0].x, x1 = c.p[3].x;
    const bool forward = x0 <= p.x && p.x < x1, backward = x1 <= p.x && p.x < x0;
    if (!forward && !backward) return {};
    if (HeightAt(c, p.x) >= p.y) return {};
    return forward ? step : Negated(step);
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

  const Collection& in_;
  const EdgeSet& set_;
  double contact_;
  PlanarMap map_;
  int faces_ = 0;
  std::vector<int> halfOf_, part_, stack_;
  std::vector<char> counted_;
  std::vector<Body> bodies_;  // parts, then loops
};

}  // namespace

PlanarMap MakePlanarMap(const Collection& collection, const EdgeSet& edges, double contact) {
  return MapBuilder(collection, edges, contact).Run();
}

}  // namespace Lumo::Planar
