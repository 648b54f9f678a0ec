#include "lumo/repair.h"

namespace {

constexpr unsigned char kControlForbidden = NODETYPE::kClosed | NODETYPE::kContinuityMask;

bool IsControlAllowed(NODETYPE type, std::size_t i, std::size_t count) {
  const bool shownButNotEnabled = type.IsUser() && !type.IsEnabled();
  return i > 0 && i + 1 < count && (type & kControlForbidden) == 0 && !shownButNotEnabled;
}

/// The closing rules of the node that ends a subpath.
bool IsEndAllowed(NODETYPE start, NODETYPE end) {
  return start.IsClosed() == end.IsClosed() && !(start.IsClosed() && start.IsUser() && end.IsUser());
}

}  // namespace

namespace Lumo {

bool IsValidCurve(const NODETYPE* types, std::size_t count) noexcept {
  if (count == 0) return true;
  if (types == nullptr) return false;
  NODETYPE start = types[0];
  for (std::size_t i = 0; i < count; ++i) {
    const NODETYPE type = types[i];
    if (type.IsMove()) {
      if (i > 0 && types[i - 1].IsControl()) return false;
      start = type;
      continue;
    }
    if (type.IsControl()) {
      if (!IsControlAllowed(type, i, count)) return false;
      continue;
    }
    const std::size_t nodes = type.IsCurve() ? 3 : 1;
    if (i < nodes) return false;
    if (type.IsCurve() && !(types[i - 1].IsControl() && types[i - 2].IsControl())) return false;
    if (types[i - nodes].IsControl()) return false;
    const bool isLast = i + 1 == count || types[i + 1].IsMove();
    if (isLast && !IsEndAllowed(start, type)) return false;
  }
  return true;
}

}  // namespace Lumo
