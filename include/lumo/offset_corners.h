#pragma once
// The joins between the offsets of two segments that meet at a corner, and the caps of open ends.
//
// A join is made at source point `right`. The segment arriving there ends at index left + 1: a Bezier,
// points[left - 2 .. left + 1], when nodes[left + 1] is a curve end, else the line points[left] ->
// points[left + 1]. The segment leaving starts at right: a Bezier, points[right .. right + 3], when
// nodes[right + 1] is a control point, else the line points[right] -> points[right + 1]. For an inner node
// left + 1 == right; for the first node of a closed subpath left is that of its last segment. Both segments
// must exist: the functions know no count.
//
// d1 and d2 are the directions of arrival and departure, N1 and N2 the offset normals (the offset times the
// left normal), P the corner, A = P + N1 where the arriving segment's offset ends, B = P + N2 where the
// leaving one's starts. Joins are built on the outer side of a turn only: for a positive offset where the
// path turns right. A negative offset is not turned into its mirror image here; offset the reversed path by
// the positive distance instead.
//
// Joins keep scratch state during a call: one object must not serve two threads at once.

#include <vector>

#include "lumo/export.h"
#include "lumo/node_type.h"
#include "lumo/point_types.h"

namespace Lumo {

/// What every join does. Hosts may derive their own.
class LUMO_API OffsetCorner {
 public:
  virtual ~OffsetCorner();
  /// Appends the join to the output path under construction. A gap below joinTolerance gets no join; the
  /// output's last point, when it lies that near to A, then moves to the midpoint of A and B.
  virtual void CreateCorner(std::vector<TavMath::DPoint>& outPoints, std::vector<NODETYPE>& outNodes,
                            int left, int right, const TavMath::DPoint* points, const NODETYPE* nodes,
                            double offset, double joinTolerance) const = 0;
  /// Whether q lies strictly inside the region that the join adds.
  virtual bool IsPointWithinCorner(const TavMath::DPoint& q, int left, int right,
                                   const TavMath::DPoint* points, const NODETYPE* nodes,
                                   double offset) const = 0;
};

/// No join: the gap stays.
class LUMO_API NoCorner : public OffsetCorner {
 public:
  ~NoCorner() override;
  void CreateCorner(std::vector<TavMath::DPoint>&, std::vector<NODETYPE>&, int, int, const TavMath::DPoint*,
                    const NODETYPE*, double, double) const override;
  bool IsPointWithinCorner(const TavMath::DPoint&, int, int, const TavMath::DPoint*, const NODETYPE*,
                           double) const override;
};

/// The common part: tangents, whether there is a join to build at all, and the class's own shape.
class LUMO_API CornerBase : public OffsetCorner {
 public:
  CornerBase() noexcept = default;
  ~CornerBase() override;
  void CreateCorner(std::vector<TavMath::DPoint>& outPoints, std::vector<NODETYPE>& outNodes, int left,
                    int right, const TavMath::DPoint* points, const NODETYPE* nodes, double offset,
                    double joinTolerance) const override;
  /// False at straight runs, at reversals (caps) and on the inner side of a turn.
  bool IsPointWithinCorner(const TavMath::DPoint& q, int left, int right, const TavMath::DPoint* points,
                           const NODETYPE* nodes, double offset) const override;

 protected:
  /// The class's own join: appends nodes from A, where the output ends, to B.
  virtual void BuildCorner(std::vector<TavMath::DPoint>& outPoints, std::vector<NODETYPE>& outNodes,
                           const TavMath::DVector& d1, const TavMath::DVector& d2, const TavMath::DVector& N1,
                           const TavMath::DVector& N2, const TavMath::DPoint& P, const TavMath::DPoint& A,
                           const TavMath::DPoint& B, double offset, double joinToleranceSqrd) const = 0;
  /// Whether q lies strictly inside what BuildCorner adds.
  virtual bool IsPointInCorner(const TavMath::DPoint& q, const TavMath::DVector& d1,
                               const TavMath::DVector& d2, const TavMath::DVector& N1,
                               const TavMath::DVector& N2, const TavMath::DPoint& P, const TavMath::DPoint& A,
                               const TavMath::DPoint& B, double offset) const = 0;
  /// Whether the segments at the corner are Beziers, and their four control points (null when they are not).
  bool IsLeftABezier() const noexcept;
  bool IsRightABezier() const noexcept;
  const TavMath::DPoint* GetLeftBezier() const noexcept;
  const TavMath::DPoint* GetRightBezier() const noexcept;

 private:
  mutable const TavMath::DPoint* points_ = nullptr;
  mutable const NODETYPE* nodes_ = nullptr;
  mutable int left_ = 0;
  mutable int right_ = 0;
};

/// A circular arc about the corner; as a cap a semicircle.
class LUMO_API Round : public CornerBase {
 public:
  ~Round() override;

 protected:
  void BuildCorner(std::vector<TavMath::DPoint>&, std::vector<NODETYPE>&, const TavMath::DVector&,
                   const TavMath::DVector&, const TavMath::DVector&, const TavMath::DVector&,
                   const TavMath::DPoint&, const TavMath::DPoint&, const TavMath::DPoint&, double,
                   double) const override;
  bool IsPointInCorner(const TavMath::DPoint&, const TavMath::DVector&, const TavMath::DVector&,
                       const TavMath::DVector&, const TavMath::DVector&, const TavMath::DPoint&,
                       const TavMath::DPoint&, const TavMath::DPoint&, double) const override;
};

/// A straight cut from A to B; as a cap the butt end.
class LUMO_API Bevel : public CornerBase {
 public:
  ~Bevel() override;

 protected:
  void BuildCorner(std::vector<TavMath::DPoint>&, std::vector<NODETYPE>&, const TavMath::DVector&,
                   const TavMath::DVector&, const TavMath::DVector&, const TavMath::DVector&,
                   const TavMath::DPoint&, const TavMath::DPoint&, const TavMath::DPoint&, double,
                   double) const override;
  bool IsPointInCorner(const TavMath::DPoint&, const TavMath::DVector&, const TavMath::DVector&,
                       const TavMath::DVector&, const TavMath::DVector&, const TavMath::DPoint&,
                       const TavMath::DPoint&, const TavMath::DPoint&, double) const override;
};

/// A cut across the bisector at the offset distance; as a cap the square end.
class LUMO_API OffsetBevel : public CornerBase {
 public:
  ~OffsetBevel() override;

 protected:
  /// The ends of the cut on the two offset lines. False when the directions agree or do not meet the cut.
  bool GetBevelLine(const TavMath::DVector& d1, const TavMath::DVector& d2, const TavMath::DPoint& A,
                    const TavMath::DPoint& B, const TavMath::DPoint& P, double offset, TavMath::DPoint& X1,
                    TavMath::DPoint& X2) const noexcept;
  void BuildCorner(std::vector<TavMath::DPoint>&, std::vector<NODETYPE>&, const TavMath::DVector&,
                   const TavMath::DVector&, const TavMath::DVector&, const TavMath::DVector&,
                   const TavMath::DPoint&, const TavMath::DPoint&, const TavMath::DPoint&, double,
                   double) const override;
  bool IsPointInCorner(const TavMath::DPoint&, const TavMath::DVector&, const TavMath::DVector&,
                       const TavMath::DVector&, const TavMath::DVector&, const TavMath::DPoint&,
                       const TavMath::DPoint&, const TavMath::DPoint&, double) const override;
};

/// Both offset lines lengthened to their meeting point: a miter without limit.
class LUMO_API Ray : public CornerBase {
 public:
  ~Ray() override;

 protected:
  /// False for parallel directions. (A meeting point farther from the corner than 10,000 times the offset, as
  /// nearly exact reversals give, makes no join either.)
  bool GetCornerPoint(const TavMath::DVector& d1, const TavMath::DVector& d2, const TavMath::DPoint& A,
                      const TavMath::DPoint& B, TavMath::DPoint& X) const noexcept;
  void BuildCorner(std::vector<TavMath::DPoint>&, std::vector<NODETYPE>&, const TavMath::DVector&,
                   const TavMath::DVector&, const TavMath::DVector&, const TavMath::DVector&,
                   const TavMath::DPoint&, const TavMath::DPoint&, const TavMath::DPoint&, double,
                   double) const override;
  bool IsPointInCorner(const TavMath::DPoint&, const TavMath::DVector&, const TavMath::DVector&,
                       const TavMath::DVector&, const TavMath::DVector&, const TavMath::DPoint&,
                       const TavMath::DPoint&, const TavMath::DPoint&, double) const override;
};

/// A miter where the interior angle of the corner is at least the limit, the fallback join where it is
/// sharper.
class LUMO_API MiteredCorner : public OffsetCorner {
 public:
  /// The limit in degrees. The stored angle is kept within 1 to 179, but its cosine is that of the argument
  /// as given: a limit of 0 miters every corner though the stored angle reads 1. Takes ownership of the
  /// fallback; null makes a Bevel.
  MiteredCorner(double miterLimitDegrees, OffsetCorner* fallback);
  MiteredCorner(const MiteredCorner&) = delete;
  MiteredCorner& operator=(const MiteredCorner&) = delete;
  ~MiteredCorner() override;
  void CreateCorner(std::vector<TavMath::DPoint>& outPoints, std::vector<NODETYPE>& outNodes, int left,
                    int right, const TavMath::DPoint* points, const NODETYPE* nodes, double offset,
                    double joinTolerance) const override;
  bool IsPointWithinCorner(const TavMath::DPoint& q, int left, int right, const TavMath::DPoint* points,
                           const NODETYPE* nodes, double offset) const override;
  /// The stored limit angle and the cosine that decides.
  double MiterLimit() const noexcept { return angle_; }
  double MiterLimitCosine() const noexcept { return cosine_; }

 private:
  bool IsTooSharp(int left, int right, const TavMath::DPoint* points, const NODETYPE* nodes) const noexcept;

  double angle_;
  OffsetCorner* fallback_;
  double cosine_;
};

}  // namespace Lumo
