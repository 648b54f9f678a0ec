// Turns bytes into arrays, well-formed or not, and runs edits on them in arrays of exactly the stated room,
// so that the address sanitizer sees any access outside. Layout: one byte of node count, that many node-type
// bytes (the first bit of the count byte's partner decides whether they are repaired first), two bytes of
// coordinates a node, then six bytes an edit.

#include <cstdint>
#include <cstdlib>
#include <vector>

#include "lumo/crv_convert.h"
#include "lumo/crv_edit.h"
#include "lumo/crv_navigation.h"
#include "lumo/repair.h"

namespace {

using TavMath::DPoint;

class Bytes {
 public:
  Bytes(const std::uint8_t* data, std::size_t size) : at_(data), end_(data + size) {}
  int Next() { return at_ == end_ ? 0 : *at_++; }
  bool Done() const { return at_ == end_; }

 private:
  const std::uint8_t* at_;
  const std::uint8_t* end_;
};

struct Edit {
  int verb, a, b, c;
  double t;
};

constexpr int kMostRoom = 4;  // slots per node that any edit may need

template <class T>
int Apply(const Edit& e, T* points, NODETYPE* types, int count, DPoint* second) {
  const TavMath::MATRIX turn{0.6, 0.8, -0.8, 0.6, e.t * 100, 3};
  int p[4] = {e.a, e.b, e.c, e.a + 1};
  tagRECT box;
  switch (e.verb % 30) {
    case 0:
      return count + CRV_Add(points, types, count, e.a, e.t, e.b & 1);
    case 1:
      return CRV_AddEnabled(points, types, count, e.a, e.b);
    case 2:
      return CRV_NodeEditAddHere(points, types, count, e.a, e.t);
    case 3:
      return CRV_AppendLine(points, types, count, e.a, T{1, 2});
    case 4:
      return CRV_AppendMove(points, types, count, e.a, T{3, 4});
    case 5:
      return CRV_Remove(points, types, count, e.a, e.b);
    case 6:
      return CRV_RemoveOpenSubpaths(points, types, count);
    case 7:
      return CRV_ReverseThisSubpath(points, types, count, e.a), count;
    case 8:
      return CRV_NodeEditBreakEnabled(points, types, count);
    case 9:
      return CRV_BreakEnabled(points, types, count, e.a & 1);
    case 10:
    case 11:
      return CRV_BreakAtLocation(points, types, count, e.a, e.verb & 1 ? e.b & 1 : e.t);
    case 12:
      return CRV_JoinTwoNodesExt(points, types, count, e.a, e.b, &p[0]);
    case 13:
      return CRV_JoinTwoNodesWithOpenSubpathExt(points, types, count, &p[0], &p[1], &p[2], &p[3]);
    case 14:
      return CRV_JoinTwoNodesWithOpenSubpath(points, types, count, e.a - 1, e.b - 1, e.c, e.a);
    case 15:
      return CRV_NodeEditJoinEnabled(points, types, count);
    case 16:
      return CRV_NodeEditJoinEnabledAddingLineSegments(points, types, count);
    case 17: {
      WDeleteRunInfo* runs = nullptr;
      int n = 0;
      const int result = CRV_NodeEditDeleteEnabledEx(points, types, count, &runs, &n);
      for (int k = 0; k < n; ++k)
        if (runs[k].first < 0 || runs[k].count < 1 || runs[k].count > count) std::abort();
      std::free(runs);
      return result;
    }
    case 18:
      return CRV_NodeEditToLineEnabled(points, types, count);
    case 19:
      return CRV_NodeEditToCurveEnabled(points, types, count);
    case 20:
      return CRV_ToLineNode(points, types, count, e.a);
    case 21:
      return CRV_ToCurveNode(points, types, count, e.a);
    case 22:
      return CRV_NodeEditSetContEnabled(points, types, count, static_cast<ContinuityType>(e.a & 3));
    case 23:
      return SmoothNodes(points, types, count);
    case 24:
      return CRV_TransformEnabled(points, types, count, &turn, e.a & 1);
    case 25:
      return CRV_NodeEditReduceEnabledDouble(points, types, count, e.t * 50, e.a & 1 ? second : nullptr);
    case 26:
      return CRV_TransferThisThinSubpathToRegular(points, types, count, e.a, e.b);
    case 27:
      return CRV_RepairClosedCurveAfterWeld(points, types, count, e.b);
    case 28:
      return CRV_GetEnabledBoundingBox(points, types, count, &box), count;
    default:
      return count < 1 ? count : (CRV_SetEnabled(types, count, e.a % count, e.b), count);
  }
}

template <class T>
void Run(Bytes bytes) {
  int count = bytes.Next() % 48;
  const bool repair = (bytes.Next() & 1) != 0;
  std::vector<NODETYPE> types;
  std::vector<T> points;
  for (int i = 0; i < count; ++i) types.push_back(static_cast<unsigned char>(bytes.Next()));
  for (int i = 0; i < count; ++i) {
    const int x = bytes.Next() - 128, y = bytes.Next() - 128;
    points.push_back({static_cast<decltype(T::x)>(x), static_cast<decltype(T::y)>(y)});
  }
  if (repair) {
    count = Lumo::ScrubDanglingMoves(points.data(), types.data(), count, true);
    Lumo::FixNodeTypes(types.data(), static_cast<std::size_t>(count));
  }
  for (int step = 0; step < 40 && !bytes.Done(); ++step) {
    const Edit e{bytes.Next(), bytes.Next() % 64 - 2, bytes.Next() % 64 - 2, bytes.Next() % 64 - 2,
                 bytes.Next() / 255.0};
    if (count > 400) return;
    // Fresh memory for every edit: an access past the room is an access outside a heap block.
    const auto size = static_cast<std::size_t>(kMostRoom * count + 4);
    std::vector<T> morePoints(points.begin(), points.begin() + count);
    std::vector<NODETYPE> moreTypes(types.begin(), types.begin() + count);
    morePoints.resize(size);
    moreTypes.resize(size);
    std::vector<DPoint> second(static_cast<std::size_t>(count), DPoint{1, 2});
    const std::vector<NODETYPE> before(moreTypes.begin(), moreTypes.begin() + count);
    const int result = Apply(e, morePoints.data(), moreTypes.data(), count, second.data());
    if (result < 0) {
      for (std::size_t i = 0; i < before.size(); ++i)
        if (before[i].value != moreTypes[i].value) std::abort();  // a failed edit changed something
      continue;
    }
    if (result > static_cast<int>(size)) std::abort();
    count = result;
    points = std::move(morePoints);
    types = std::move(moreTypes);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Run<tagPOINT>({data, size});
  Run<DPoint>({data, size});
  return 0;
}
