#include "core/count_bytes.h"
#include "lumo/curve_segment.h"

namespace Lumo {

namespace {

/// Line and curve nodes among the first n.
int EndsAmong(const NODETYPE* types, int n) {
  return static_cast<int>(CountBytes(types, static_cast<std::size_t>(n), EndsSegment));
}

}  // namespace

int GetSegmentCount(const NODETYPE* types, int count) noexcept {
  return types == nullptr || count < 1 ? 0 : EndsAmong(types, count);
}

int FirstNodeToSegmentIndex(const NODETYPE* types, int count, int node) noexcept {
  if (types == nullptr || node < 0 || count < 1 || node >= count - 1) return -1;
  const int length = types[node + 1].IsLine() ? 1 : 3;
  return node >= count - length ? -1 : EndsAmong(types, node + length + 1) - 1;
}

int LastNodeToSegmentIndex(const NODETYPE* types, int count, int node) noexcept {
  if (types == nullptr || node < 0 || node >= count) return -1;
  return EndsAmong(types, node + 1) - 1;
}

int SegmentToLastNodeIndex(const NODETYPE* types, int count, int segment) noexcept {
  if (types == nullptr || segment < 0) return -1;
  constexpr int kBlock = 4096;  // whole blocks are counted, only the one that holds the segment is searched
  int k = 0;
  while (count - k > kBlock) {
    const int ends = EndsAmong(types + k, kBlock);
    if (ends > segment) break;
    segment -= ends;
    k += kBlock;
  }
  for (; k < count; ++k) {
    if (EndsSegment(types[k].value) && segment-- == 0) return k;
  }
  return -1;
}

int SegmentToFirstNodeIndex(const NODETYPE* types, int count, int segment) noexcept {
  const int last = SegmentToLastNodeIndex(types, count, segment);
  if (last < 0) return -1;
  const int first = last - (types[last].IsLine() ? 1 : 3);
  return first < 0 ? -1 : first;
}

}  // namespace Lumo
