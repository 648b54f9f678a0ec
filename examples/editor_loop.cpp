// The heart of a node editor over arrays that the host owns: pick a segment, add a node there, drag it, break
// the path at it and join the ends again. Room for added nodes is the host's business; every call returns the
// new count.

#include <lumo/lumo.h>

#include <cstdio>
#include <vector>

namespace {

struct Path {
  std::vector<tagPOINT> points;
  std::vector<NODETYPE> types;
  int count = 0;

  /// Room for `extra` more nodes behind the path.
  void MakeRoom(int extra) {
    points.resize(static_cast<std::size_t>(count + extra));
    types.resize(static_cast<std::size_t>(count + extra));
  }
};

/// A y-up rectangle around the cursor.
tagRECT PickRect(tagPOINT at, int radius) {
  return {at.x - radius, at.y + radius, at.x + radius, at.y - radius};
}

void Print(const char* step, const Path& path) {
  std::printf("%-6s", step);
  for (std::size_t i = 0; i < static_cast<std::size_t>(path.count); ++i) {
    std::printf(" %s%d,%d",
                path.types[i].IsMove()    ? "M"
                : path.types[i].IsLine()  ? "L"
                : path.types[i].IsCurve() ? ""
                                          : "c",
                static_cast<int>(path.points[i].x), static_cast<int>(path.points[i].y));
  }
  std::printf("\n");
}

}  // namespace

int main() {
  // An arch: up, over in a curve, down. Move nodes are 0x04, line ends 0x44, curve ends 0x84, control points
  // 0xC0.
  Path arch{{{0, 0}, {0, 10000}, {0, 18000}, {20000, 18000}, {20000, 10000}, {20000, 0}},
            {0x04, 0x44, 0xC0, 0xC0, 0x84, 0x44},
            6};
  Print("start", arch);

  // The user clicks near the top of the curve.
  const tagPOINT cursor{10000, 16100};
  const tagRECT pick = PickRect(cursor, 300);
  double t = 0;
  const int segment = CRV_PathHit(&pick, &cursor, &t, arch.points.data(), arch.types.data(), arch.count, 1);
  if (segment < 0) return std::puts("nothing under the cursor"), 1;

  // A node is added there and selected; its handles come up.
  arch.MakeRoom(3);
  arch.count = CRV_NodeEditAddHere(arch.points.data(), arch.types.data(), arch.count, segment, t);
  Print("add", arch);
  const int node = segment;

  // A drag moves the selection; neighbours that are smooth stay smooth.
  const MATRIX drag{1, 0, 0, 1, 0, 2500};
  CRV_TransformEnabled(arch.points.data(), arch.types.data(), arch.count, &drag, 1);
  Print("drag", arch);

  // Break at the node, then join the two ends that lie on each other.
  arch.MakeRoom(1);
  arch.count = CRV_BreakEnabled(arch.points.data(), arch.types.data(), arch.count, 0);
  Print("break", arch);
  arch.count = CRV_JoinTwoNodes(arch.points.data(), arch.types.data(), arch.count, node, node + 1);
  Print("join", arch);
  return arch.count == 9 && CRV_NumSubpaths(arch.types.data(), arch.count) == 1 ? 0 : 1;
}
