// A Windows host that includes the system's header first: its macros, typedefs and its own tagPOINT must not
// be in the way of Lumo's headers.
#include <windows.h>

// MinGW's standard library takes min and max away again; other compilers leave them. Standard headers first,
// since this library's cannot stand the two macros.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>
#include <utility>
#include <vector>

#define min(a, b) (((a) < (b)) ? (a) : (b))
#define max(a, b) (((a) > (b)) ? (a) : (b))

#include "lumo/lumo.h"

int main() {
  POINT points[3] = {{0, 0}, {10, 0}, {10, 20}};
  NODETYPE types[3] = {NODETYPE::kUser, NODETYPE::kLine | NODETYPE::kUser, NODETYPE::kLine | NODETYPE::kUser};
  Lumo::Reverse(points, types, 3);
  std::printf("reversed: %ld %ld, version %d\n", points[0].x, points[0].y, Lumo::Version());
  return points[0].y == 20 && Lumo::Version() == LUMO_VERSION ? 0 : 1;
}
