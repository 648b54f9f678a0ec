#include "boolean/winding_filter.h"

#include <new>

#include "boolean/engine.h"

namespace Lumo::Planar {
namespace {

InsideRule RuleOf(WindingRule rule) {
  switch (rule) {
    case WindingRule::nonZero:
      return {InsideRule::Kind::nonZero};
    case WindingRule::positive:
      return {InsideRule::Kind::positive};
    case WindingRule::negative:
      return {InsideRule::Kind::negative};
  }
  return {};
}

bool RunInto(Request request, std::vector<DPoint>& points, std::vector<NODETYPE>& types) noexcept {
  try {
    request.direction = Direction::clockwise;
    Outcome outcome = Run(request);
    points = std::move(outcome.points);
    types = std::move(outcome.types);
    return true;
  } catch (const std::bad_alloc&) {
    points.clear();
    types.clear();
    return false;
  }
}

PathView Operand(const OutlineView& view, int operand) {
  return {view.points, view.types, view.count, operand};
}

}  // namespace

bool KeepByWinding(const OutlineView& outlines, WindingRule rule, std::vector<DPoint>& points,
                   std::vector<NODETYPE>& types) noexcept {
  try {
    return RunInto({{Operand(outlines, 0)}, {RuleOf(rule), {}, kOnlyA}}, points, types);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

bool UniteGroups(const OutlineView& a, const OutlineView& b, WindingRule rule, std::vector<DPoint>& points,
                 std::vector<NODETYPE>& types) noexcept {
  try {
    return RunInto({{Operand(a, 0), Operand(b, 1)}, {RuleOf(rule), RuleOf(rule), kUnion}}, points, types);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace Lumo::Planar
