#pragma once
// Numbers for the cubic targets from bytes. The first byte chooses: eighths of small integers, which hit
// coincidences that doubles never do, or the doubles themselves, whatever they are.

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace fuzz {

inline void Require(bool condition) {
  if (!condition) std::abort();
}

/// Fills `count` numbers; what the bytes do not reach stays 0.
inline void Numbers(const std::uint8_t* data, std::size_t size, double* out, std::size_t count) {
  for (std::size_t k = 0; k < count; ++k) out[k] = 0;
  if (size == 0) return;
  const bool small = (data[0] & 1) != 0;
  ++data;
  --size;
  if (small) {
    for (std::size_t k = 0; k < count && k < size; ++k) out[k] = static_cast<std::int8_t>(data[k]) / 8.0;
  } else {
    std::memcpy(out, data, size < count * sizeof *out ? size : count * sizeof *out);
  }
}

/// Whether all numbers are of a size that drawings have.
inline bool IsDrawingSized(const double* v, std::size_t count) {
  for (std::size_t k = 0; k < count; ++k) {
    if (!(std::abs(v[k]) < 1e12)) return false;
  }
  return true;
}

}  // namespace fuzz
