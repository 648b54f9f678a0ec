// Included before every source of this tree's own build for Windows: the system's <windef.h> makes macros of
// two words that geometry needs. Public headers do without them; tests/consumer/windows_host.cpp, built
// without this file, shows it.
#include <windef.h>
#undef near
#undef far
