#include "lumo/export.h"

namespace Lumo {

int Version() noexcept { return LUMO_VERSION; }

}  // namespace Lumo
