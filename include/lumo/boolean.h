#pragma once
// Boolean operations on filled paths, on the curves themselves: results are pieces of the operands' lines and
// cubics, never polygons.
//
//  1. A result is a path of closed outlines that do not cross themselves or one another; they may meet at
//     nodes. Outer outlines run one way and holes the other: the way in which most of what the result is made
//     of was drawn (clockwise, y up, where that is a draw). So non-zero and even-odd fill of a result agree.
//  2. A subpath that comes through untouched is copied node for node, flags included; it is reversed only
//     when its direction does not fit (1). Outlines come in the order of their first source segment, the
//     first operand's first, and start where a source subpath started, if they contain such a node.
//  3. A node between two segments that were neighbours in the source keeps its flags and continuity; a node
//     where segments were cut is a cusp with the user flag. A letter's flag stays with the first outline that
//     comes from that letter.
//  4. Places closer than about 1e-10 of the drawing's size count as one place; features thinner than that
//     vanish. Integer paths are computed in doubles, rounded to whole units, and cleaned of the crossings
//     that rounding makes.
//  5. Open subpaths are filled as if closed by a line (but see ClipToShape). Subpaths without area, and
//     subpaths with a coordinate that is not finite, contribute nothing; malformed arrays are read as far as
//     they make sense.
//
// Any input ends in bounded time, about proportional to segments plus crossings. Nothing throws; when memory
// runs out the result is empty. Operands are not changed. See docs/boolean.md.

#include <vector>

#include "lumo/polycurve.h"

namespace Lumo {

/// What belongs to either path. The fill rules say what each operand fills: `positive` counts outlines of
/// positive area (see GetArea) as +1 and fills where the sum is above 0.
template <class T>
LUMO_TEMPLATE_API PolycurveT<T> Union(const PolycurveT<T>& a, const PolycurveT<T>& b,
                                      FillRule ruleA = FillRule::nonZero,
                                      FillRule ruleB = FillRule::nonZero) noexcept;
/// What belongs to both.
template <class T>
LUMO_TEMPLATE_API PolycurveT<T> Intersect(const PolycurveT<T>& a, const PolycurveT<T>& b,
                                          FillRule ruleA = FillRule::nonZero,
                                          FillRule ruleB = FillRule::nonZero) noexcept;
/// What belongs to a but not to b.
template <class T>
LUMO_TEMPLATE_API PolycurveT<T> Subtract(const PolycurveT<T>& a, const PolycurveT<T>& b,
                                         FillRule ruleA = FillRule::nonZero,
                                         FillRule ruleB = FillRule::nonZero) noexcept;
/// What belongs to exactly one of the two.
template <class T>
LUMO_TEMPLATE_API PolycurveT<T> Xor(const PolycurveT<T>& a, const PolycurveT<T>& b,
                                    FillRule ruleA = FillRule::nonZero,
                                    FillRule ruleB = FillRule::nonZero) noexcept;

/// The same for any number of paths, each filled by the rule: what belongs to one at least; to all; to the
/// first but to no other; to an odd number of them. No paths give an empty result; a single one is
/// simplified.
template <class T>
LUMO_TEMPLATE_API PolycurveT<T> Union(const std::vector<PolycurveT<T>>& paths,
                                      FillRule rule = FillRule::nonZero) noexcept;
template <class T>
LUMO_TEMPLATE_API PolycurveT<T> Intersect(const std::vector<PolycurveT<T>>& paths,
                                          FillRule rule = FillRule::nonZero) noexcept;
template <class T>
LUMO_TEMPLATE_API PolycurveT<T> Subtract(const std::vector<PolycurveT<T>>& paths,
                                         FillRule rule = FillRule::nonZero) noexcept;
template <class T>
LUMO_TEMPLATE_API PolycurveT<T> Xor(const std::vector<PolycurveT<T>>& paths,
                                    FillRule rule = FillRule::nonZero) noexcept;

/// The part of a path inside (or outside) a shape. Closed subpaths are filled and give closed outlines; open
/// subpaths are cut where they cross the shape's outline and stay open: their pieces follow the outlines, in
/// path order. A stretch that runs along the outline counts as inside. Open subpaths of the shape count as
/// closed by a line.
template <class T>
LUMO_TEMPLATE_API PolycurveT<T> ClipToShape(const PolycurveT<T>& path, const PolycurveT<T>& shape,
                                            bool keepInside = true, FillRule rulePath = FillRule::nonZero,
                                            FillRule ruleShape = FillRule::nonZero) noexcept;

/// Outlines that do not cross themselves and fill what the path fills under the rule.
template <class T>
LUMO_TEMPLATE_API PolycurveT<T> Simplify(const PolycurveT<T>& path,
                                         FillRule rule = FillRule::nonZero) noexcept;

#define LUMO_BOOLEAN(LUMO_VERB, T)                                                                           \
  LUMO_VERB PolycurveT<T> Union<T>(const PolycurveT<T>&, const PolycurveT<T>&, FillRule, FillRule) noexcept; \
  LUMO_VERB PolycurveT<T> Intersect<T>(const PolycurveT<T>&, const PolycurveT<T>&, FillRule,                 \
                                       FillRule) noexcept;                                                   \
  LUMO_VERB PolycurveT<T> Subtract<T>(const PolycurveT<T>&, const PolycurveT<T>&, FillRule,                  \
                                      FillRule) noexcept;                                                    \
  LUMO_VERB PolycurveT<T> Xor<T>(const PolycurveT<T>&, const PolycurveT<T>&, FillRule, FillRule) noexcept;   \
  LUMO_VERB PolycurveT<T> Union<T>(const std::vector<PolycurveT<T>>&, FillRule) noexcept;                    \
  LUMO_VERB PolycurveT<T> Intersect<T>(const std::vector<PolycurveT<T>>&, FillRule) noexcept;                \
  LUMO_VERB PolycurveT<T> Subtract<T>(const std::vector<PolycurveT<T>>&, FillRule) noexcept;                 \
  LUMO_VERB PolycurveT<T> Xor<T>(const std::vector<PolycurveT<T>>&, FillRule) noexcept;                      \
  LUMO_VERB PolycurveT<T> ClipToShape<T>(const PolycurveT<T>&, const PolycurveT<T>&, bool, FillRule,         \
                                         FillRule) noexcept;                                                 \
  LUMO_VERB PolycurveT<T> Simplify<T>(const PolycurveT<T>&, FillRule) noexcept;
LUMO_BOOLEAN(LUMO_EXTERN, tagPOINT)
LUMO_BOOLEAN(LUMO_EXTERN, TavMath::DPoint)

}  // namespace Lumo
