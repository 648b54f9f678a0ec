// Functions that write a path take arrays that may be written.
#include "lumo/crv_navigation.h"
#include "lumo/path_array.h"

int Next(const NODETYPE* types, int count) { return NN(types, 0, count); }

void Turn(tagPOINT* points,
#ifdef MUST_NOT_COMPILE
          const
#endif
          NODETYPE* types,
          int count) {
  Lumo::Reverse(points, types, count);
}
