#pragma once

#include <ctime>

/// Microseconds of processor time of this program: what else the machine does counts for neither side.
inline double ProcessorTime() { return static_cast<double>(std::clock()) * 1e6 / CLOCKS_PER_SEC; }
