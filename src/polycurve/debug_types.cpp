// The path classes, described for debuggers. A compiler leaves the description of a class whose virtual
// functions are compiled elsewhere to that place, so a host's debugger would find none when this library is
// built without debug information, as it is shipped. This file alone is always compiled with it
// (CMakeLists.txt); it adds no code. The views that use it are in tools/debugger.

#include "lumo/curve_data.h"
#include "lumo/polycurve.h"

namespace Lumo {

namespace {

/// Members of these types make the compiler describe what they point to.
template <class T>
struct Described {
  const PolycurveRefT<T>* path;
  const CurveData<T>* owned;
  const CurveDataRef<T>* referred;
};
[[gnu::used]] const Described<tagPOINT> kIntegers{};
[[gnu::used]] const Described<TavMath::DPoint> kDoubles{};

}  // namespace

}  // namespace Lumo
