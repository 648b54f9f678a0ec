#include <array>
#include <bit>
#include <cstdint>
#include <cstring>

#include "core/node_words.h"
#include "lumo/crv_navigation.h"

namespace {

using Info = CRV_ENABLINGINFO;

/// What a node with neighbours on both sides contributes, itself a line or a curve node.
constexpr unsigned ContinuityFlags(NODETYPE type) {
  return Info::kHasContinuity | (type.IsCusp() ? 0u : Info::kCanBeCusp);
}

constexpr unsigned SomeContinuity(NODETYPE type) {
  switch (type.Continuity()) {
    case ContinuityType::cusp:
      return Info::kSomeCusp;
    case ContinuityType::smooth:
      return Info::kSomeSmooth;
    case ContinuityType::symmetric:
      return Info::kSomeSymmetric;
  }
  return 0;
}

/// Kind and the continuity it could be given, by the kind of the node that follows along the path.
constexpr unsigned SegmentFlags(NODETYPE type, bool beforeControl, bool beforeLine) {
  unsigned flags = SomeContinuity(type) | Info::kNotOpenStart;
  const bool smooth = type.Continuity() == ContinuityType::smooth;
  if (type.IsLine()) return flags | Info::kLine | (beforeControl && !smooth ? Info::kCanBeSmooth : 0u);
  const bool meetsCurve = type.IsClosed() || beforeControl;
  flags |= Info::kCurve;
  if ((meetsCurve || beforeLine) && !smooth) flags |= Info::kCanBeSmooth;
  if (meetsCurve && type.Continuity() != ContinuityType::symmetric) flags |= Info::kCanBeSymmetric;
  return flags;
}

// Most nodes are inside a subpath, and what they contribute depends on two bytes only: it is looked up, by
// the node's byte and the kind of the next one. The top bit counts the node.
constexpr unsigned kCounted = 0x80000000u;
constexpr auto kInner = [] {
  std::array<std::array<unsigned, 4>, 256> table{};
  for (unsigned byte = 0; byte < 256; ++byte) {
    const NODETYPE type(static_cast<unsigned char>(byte));
    if (!type.IsEnabled() || type.IsMove() || type.IsControl()) continue;
    for (unsigned kind = 1; kind < 4; ++kind)
      table[byte][kind] = SegmentFlags(type, kind == 3, kind == 1) | ContinuityFlags(type) | kCounted;
  }
  return table;
}();

/// All that inner nodes can contribute.
constexpr unsigned kAllInner = [] {
  unsigned all = 0;
  for (const auto& byKind : kInner) {
    for (const unsigned flags : byKind) all |= flags;
  }
  return all;
}();

/// One pass over the nodes, and what it has to remember.
class EnablingInfo {
 public:
  EnablingInfo(const NODETYPE* types, int count) : types_(types), count_(count) {}

  int Collect() {
    int first = 0;
    for (; count_ - first > kRun; first += kRun) {
      std::uint64_t word;
      std::memcpy(&word, types_ + first, kRun);
      const std::uint64_t moves = Lumo::MovesOf(word) & Lumo::kTopBits;
      const std::uint64_t enabled = Lumo::EnabledOf(word) & Lumo::kTopBits;
      if ((moves | enabled) == 0) continue;
      if (moves == 0 && !types_[first + kRun].IsMove()) {
        AddInner(first, std::popcount(enabled));
      } else {
        AddPicked(first, kRun);
      }
    }
    AddPicked(first, count_ - first);
    EndSubpath();
    flags_ &= ~kCounted;
    return nodes_;
  }

  void AddCurrentNode(int i) {
    flags_ |= Info::kAnyNode | Info::kHasContinuity | Info::kNotOpenStart;
    if (i < 0 || i >= count_) return;  // there is no byte to look at
    const NODETYPE type = types_[i];
    flags_ |= type.IsCurve() ? Info::kCurve : Info::kLine;
    Set(Info::kCanBeCusp, !type.IsCusp());
    Set(Info::kCanBeSmooth, type.Continuity() != ContinuityType::smooth);
    Set(Info::kCanBeSymmetric, type.Continuity() != ContinuityType::symmetric);
  }

  CRV_ENABLINGINFO Result() {
    const bool twoSubpathsMeet = openEnds_ == 2 && !bothEndsOfOne_;
    Set(Info::kCanJoin, twoSubpathsMeet);
    Set(Info::kOneNode | Info::kAnyNode, nodes_ >= 1);
    Set(Info::kTwoNodes | Info::kCanAlign, nodes_ >= 2);
    Set(Info::kSeveralSubpaths, subpaths_ > 1);
    Set(Info::kAlways, true);
    return {flags_, subpaths_ > 1 && enabledSubpaths_ == 1, endFlags_ || twoSubpathsMeet};
  }

 private:
  static constexpr int kRun = 8;  // nodes of a word

  /// Nodes with neighbours on both sides, some of them enabled: looking all of them up costs less than
  /// guessing which, until there is nothing left that they could add.
  void AddInner(int first, int enabled) {
    nodes_ += enabled;
    if (((flags_ | subpathFlags_) & kAllInner) == kAllInner) {
      subpathFlags_ |= kCounted;
      return;
    }
    for (int i = first; i < first + kRun; ++i) {
      subpathFlags_ |= kInner[types_[i].value][types_[i + 1].value >> 6];
    }
  }

  void AddPicked(int first, int nodes) {
    const auto concerns = [](std::uint64_t word) { return Lumo::MovesOf(word) | Lumo::EnabledOf(word); };
    Lumo::ForPickedNodes(types_ + first, nodes, concerns, [this, first](int i) { Add(first + i); });
  }

  /// A move node or an enabled line or curve node.
  void Add(int i) {
    const NODETYPE type = types_[i];
    if (type.IsMove()) {
      EndSubpath();
      subpathFlags_ = StartSubpath(i);
    } else if (i + 1 == count_ || types_[i + 1].IsMove()) {
      subpathFlags_ |= Last(i);
    } else {
      subpathFlags_ |= kInner[type.value][types_[i + 1].value >> 6];
      ++nodes_;
    }
  }

  void EndSubpath() {
    enabledSubpaths_ += subpathFlags_ != 0;
    flags_ |= subpathFlags_;
    subpathFlags_ = 0;
  }

  void Set(unsigned flags, bool on) { flags_ |= on ? flags : 0; }

  /// The flags of a move node, 0 when it is not enabled.
  unsigned StartSubpath(int i) {
    const NODETYPE type = types_[i];
    ++subpaths_;
    first_ = i;
    if (!type.IsEnabled()) return 0;
    // Not counted: its twin, the last node, is.
    if (type.IsClosed()) return SomeContinuity(type) | ContinuityFlags(type) | Info::kNotOpenStart;
    ++nodes_;
    ++openEnds_;
    return SomeContinuity(type) | kCounted;
  }

  /// The flags of an enabled line or curve node at the end of its subpath.
  unsigned Last(int i) {
    const NODETYPE type = types_[i];
    ++nodes_;
    // Along a closed subpath the node after the move node follows.
    const bool beforeControl = type.IsClosed() && types_[first_ + 1].IsControl();
    const unsigned flags = SegmentFlags(type, beforeControl, false) | kCounted;
    return type.IsClosed() ? flags : flags | OpenEnd(i, type);
  }

  unsigned OpenEnd(int i, NODETYPE type) {
    ++openEnds_;
    if (first_ < 0 || types_[first_].IsClosed() || !types_[first_].IsEnabled()) return 0;
    bothEndsOfOne_ = true;
    // A single segment cannot be joined to itself. The end flag is set all the same when that segment is a
    // curve: one curve may be closed into a loop, one line may not.
    const bool single = first_ == i - (type.IsLine() ? 1 : 3);
    if (!single || type.IsCurve()) endFlags_ = 1;
    return single ? 0u : Info::kCanJoin;
  }

  const NODETYPE* types_;
  int count_;
  int nodes_ = 0;
  unsigned flags_ = 0;
  unsigned subpathFlags_ = 0;  // of the current subpath; 0: nothing in it is enabled
  int endFlags_ = 0;
  int first_ = -1;
  int subpaths_ = 0;
  int enabledSubpaths_ = 0;
  int openEnds_ = 0;
  bool bothEndsOfOne_ = false;
};

}  // namespace

int CRV_GetEnablingInfo(const NODETYPE* types, int count, int /*ignored*/, int currentNode,
                        CRV_ENABLINGINFO* info) noexcept {
  int nodes = 0;
  CRV_ENABLINGINFO result{Info::kAlways, 0, 0};
  if (types != nullptr && count >= 1) {
    EnablingInfo walk(types, count);
    nodes = walk.Collect();
    if (currentNode != -1) walk.AddCurrentNode(currentNode);
    result = walk.Result();
  }
  if (info != nullptr) *info = result;
  return nodes;
}
