// A host of the installed package: it knows the package's name and nothing of this tree.
#include <lumo/lumo.h>

#include <cstdio>

int main() {
  tagPOINT points[3] = {{0, 0}, {10, 0}, {10, 20}};
  NODETYPE types[3] = {NODETYPE::kUser, NODETYPE::kLine | NODETYPE::kUser, NODETYPE::kLine | NODETYPE::kUser};
  Lumo::Reverse(points, types, 3);
  const bool turned = points[0].y == 20 && types[0].IsMove() && types[2].IsLine();
  const bool sameVersion = Lumo::Version() == LUMO_VERSION;
  // One header gives the companions of the paths too.
  const bool companions =
      TavMath::Degrees::GetFineAngle({1, 0}, {0, -1}) == 90 &&
      &TavPref::AllowPureOffsetCurve() ==
          TavPref::CAppPrefManager::GetInstance().FindBool("Lumo/AllowShiftToAccessPureOffsetCurve");
  tagPOINT corners[5];
  const tagRECT box = Lumo::GetLooseBBox(points, 3);
  const bool boxed = Lumo::BuildRectangle(corners, box) == 5 && corners[2].x == 10 && corners[2].y == 20;
  std::printf("reversed: %d, version %d\n", turned, Lumo::Version());
  return turned && sameVersion && companions && boxed ? 0 : 1;
}
