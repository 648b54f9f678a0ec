#pragma once
// Stage 2: where two monotone arcs meet.

#include <array>
#include <vector>

#include "boolean/arc.h"

namespace Lumo::Planar {

/// One place that two arcs have in common, with its parameter on each (0 to 1 along the arc, exactly 0 or 1
/// for an end within the contact distance).
struct Contact {
  double a, b;
  DPoint point;
};

/// Finds the contacts of arc pairs.
///
///  1. Every transversal crossing is found, with its parameters to within rounding.
///  2. An end of one arc within the contact distance of the other arc is a contact.
///  3. A stretch along which the arcs stay within about the contact distance (a tangency, arcs on top of one
///  another)
///     gives contacts at both of its ends; what lies between is for the merging of coincident edges.
///  4. Nothing else is reported, save that one place may be reported more than once.
class PairCrossing {
 public:
  explicit PairCrossing(double contact) : contact_(contact) {}
  /// Part of each arc that runs within about the contact distance of the other one; empty when low > high.
  struct Alongside {
    double lowA = 1, highA = 0, lowB = 1, highB = 0;
  };

  /// Replaces the contents of `contacts`. True when the arcs share a stretch: see alongside().
  bool Find(const Arc& a, const Arc& b, std::vector<Contact>& contacts);
  const Alongside& alongside() const { return alongside_; }

 private:
  /// A sub-arc: parameter interval and its ends.
  struct Span {
    double t0, t1;
    DPoint p0, p1;
  };
  struct Task {
    Span a, b;
  };

  enum class Verdict { apart, resolved, split };
  /// A pair of leaf sub-arcs in contact: where the contact begins and ends along a, and the places on b.
  struct Stretch {
    double lowA, lowB, highA, highB;
  };

  void FindLines(const Arc& a, const Arc& b);
  void Mark(double a, double b);
  void AddStretches(const Curve& a, const Curve& b);
  bool FindIdentical(const Curve& a, const Curve& b);
  void FindCurves(const Arc& a, const Arc& b);
  bool FindLineAndArc(const Arc& line, const Arc& arc, bool lineFirst);
  void AddOnLine(const Arc& line, const Arc& arc, bool lineFirst, double onLine, double onArc);
  bool FindOverlap(const Curve& a, const Curve& b);
  /// Matching parts of two arcs that run side by side: [t0, t1] of a and [u0, u1] of b (u0 > u1: the other
  /// way).
  struct Match {
    double t0, t1, u0, u1;
  };
  bool FindSideBySide(const Curve& a, const Curve& b);
  Verdict ExamineMatch(const Curve& a, const Curve& b, const Match& m);
  Verdict Examine(const Arc& a, const Arc& b, const Task& task);
  bool Polish(const Curve& a, const Curve& b, const Task& task, double s, double u);
  void AddLeaf(const Curve& a, const Curve& b, const Task& task);
  void Touching(const Curve& a, const Curve& b, double ta);
  void TouchingOn(const Curve& a, const Curve& b, double tb);
  void Add(const Curve& a, const Curve& b, double ta, double tb);

  double contact_;
  std::array<Task, 128> stack_;
  std::vector<Stretch> stretches_;
  Alongside alongside_;
  std::vector<Contact>* out_ = nullptr;
};

}  // namespace Lumo::Planar
