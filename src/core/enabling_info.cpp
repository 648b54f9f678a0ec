#include <bit>
#include <cstdint>
#include <cstring>

#include "core/node_words.h"
#include "lumo/crv_navigation.h"
#include "math/simd.h"

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

/// What the last node of a subpath contributes: its kind and the continuity it could be given. Along a closed
/// subpath the node after the move node follows.
constexpr unsigned LastNodeFlags(NODETYPE type, bool beforeControl) {
  const unsigned flags = SomeContinuity(type) | Info::kNotOpenStart;
  const unsigned smooth = type.Continuity() != ContinuityType::smooth ? Info::kCanBeSmooth : 0u;
  if (type.IsLine()) return flags | Info::kLine | (beforeControl ? smooth : 0u);
  if (!type.IsClosed()) return flags | Info::kCurve;
  return flags | Info::kCurve | smooth |
         (type.Continuity() != ContinuityType::symmetric ? Info::kCanBeSymmetric : 0u);
}

/// What the inner nodes met so far have contributed, those with a neighbour on either side: most nodes.
/// Sixteen at a time, without branches; the top bit of a byte stands for a node.
class InnerNodes {
 public:
  using Word = TavMath::FourWords;
  static constexpr int kNodes = 16;

  /// Takes enabled line and curve nodes of a word with a node behind them in their subpath: the chosen ones.
  /// `next` is the word one node further.
  void Add(Word word, Word next, Word chosen) {
    const Word curve = chosen & word, line = chosen & ~word;
    const Word low = word << 3, high = word << 2;  // of the continuity
    const Word smooth = low & ~high, symmetric = high & ~low;
    const Word nextLow = next << 1, beforeControl = next & nextLow, beforeLine = nextLow & ~next;
    const Word meetsCurve = word << 4 | beforeControl;  // a closed one does
    line_ |= line;
    curve_ |= curve;
    smooth_ |= chosen & smooth;
    symmetric_ |= chosen & symmetric;
    cusp_ |= chosen & ~(low | high);
    notCusp_ |= chosen & (low | high);
    canBeSmooth_ |= ((line & beforeControl) | (curve & (meetsCurve | beforeLine))) & ~smooth;
    canBeSymmetric_ |= curve & meetsCurve & ~symmetric;
  }

  unsigned Flags() const {
    const auto flag = [](Word nodes, unsigned flags) { return TavMath::TopBitsOf(nodes) != 0 ? flags : 0u; };
    return flag(line_ | curve_, Info::kHasContinuity | Info::kNotOpenStart) | flag(line_, Info::kLine) |
           flag(curve_, Info::kCurve) | flag(cusp_, Info::kSomeCusp) | flag(smooth_, Info::kSomeSmooth) |
           flag(symmetric_, Info::kSomeSymmetric) | flag(notCusp_, Info::kCanBeCusp) |
           flag(canBeSmooth_, Info::kCanBeSmooth) | flag(canBeSymmetric_, Info::kCanBeSymmetric);
  }

 private:
  Word line_{}, curve_{}, cusp_{}, smooth_{}, symmetric_{}, notCusp_{}, canBeSmooth_{}, canBeSymmetric_{};
};

/// One pass over the nodes, and what it has to remember.
class EnablingInfo {
 public:
  EnablingInfo(const NODETYPE* types, int count) : types_(types), count_(count) {}

  int Collect() {
    InnerNodes inner;  // a local, so that it stays in registers
    InnerNodes::Word word, next;
    int first = 0;
    for (; count_ - first > InnerNodes::kNodes; first += InnerNodes::kNodes) {
      std::memcpy(&word, types_ + first, sizeof word);
      std::memcpy(&next, types_ + first + 1, sizeof next);
      Add(first, word, next, inner);
    }
    // A move node stands behind the path, as behind a subpath; control points without flags fill up.
    const auto left = static_cast<std::size_t>(count_ - first);
    unsigned char tail[InnerNodes::kNodes + 1];
    std::memset(tail, NODETYPE::kControl, sizeof tail);
    std::memcpy(tail, types_ + first, left);
    std::memcpy(&word, tail, sizeof word);
    tail[left] = NODETYPE::kMove;
    std::memcpy(&next, tail + 1, sizeof next);
    Add(first, word, next, inner);
    EndSubpath();
    flags_ |= inner.Flags();
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
  /// The nodes of a word; `next` is the word one node further.
  void Add(int first, InnerNodes::Word word, InnerNodes::Word next, InnerNodes& innerNodes) {
    const InnerNodes::Word move = Lumo::MovesOf(word), segment = Lumo::EnabledOf(word) & ~move,
                           end = Lumo::MovesOf(next);
    const unsigned moves = TavMath::TopBitsOf(move), segments = TavMath::TopBitsOf(segment);
    if ((moves | segments) == 0) return;
    const unsigned ends = TavMath::TopBitsOf(end);
    innerNodes.Add(word, next, segment & ~end);
    unsigned inner = segments & ~ends;
    nodes_ += std::popcount(inner);
    for (unsigned rest = moves | (segments & ends); rest != 0; rest &= rest - 1) {
      const unsigned before = (rest & -rest) - 1;  // what of the word lies before this node
      anyInSubpath_ |= (inner & before) != 0;
      inner &= ~before;
      const int i = first + std::countr_zero(rest);
      if (types_[i].IsMove()) {
        EndSubpath();
        AddStart(i);
      } else {
        AddLast(i);
      }
    }
    anyInSubpath_ |= inner != 0;
  }

  void EndSubpath() {
    enabledSubpaths_ += anyInSubpath_;
    anyInSubpath_ = false;
  }

  void Set(unsigned flags, bool on) { flags_ |= on ? flags : 0; }

  void AddStart(int i) {
    const NODETYPE type = types_[i];
    ++subpaths_;
    first_ = i;
    if (!type.IsEnabled()) return;
    anyInSubpath_ = true;
    flags_ |= SomeContinuity(type);
    if (type.IsClosed()) {  // not counted: its twin, the last node, is
      flags_ |= ContinuityFlags(type) | Info::kNotOpenStart;
    } else {
      ++nodes_;
      ++openEnds_;
    }
  }

  /// An enabled line or curve node at the end of its subpath.
  void AddLast(int i) {
    const NODETYPE type = types_[i];
    ++nodes_;
    anyInSubpath_ = true;
    const bool beforeControl = type.IsClosed() && types_[first_ + 1].IsControl();
    flags_ |= LastNodeFlags(type, beforeControl) | (type.IsClosed() ? 0u : OpenEnd(i, type));
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
  bool anyInSubpath_ = false;  // of the current subpath: a node is enabled
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
