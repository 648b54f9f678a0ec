#pragma once
// A C array does not know its length, so an edit that needs room takes the caller's word for it. Builds with
// AddressSanitizer do know where an array ends: there an edit with too little room says so and stops before
// it writes past the end. Other builds check nothing and pay nothing.

#include "lumo/node_type.h"

#if defined(__SANITIZE_ADDRESS__)
#define LUMO_KNOWS_ROOM 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LUMO_KNOWS_ROOM 1
#endif
#endif

#if defined(LUMO_KNOWS_ROOM)
#include <sanitizer/asan_interface.h>

#include <cstdio>
#include <cstdlib>
#endif

namespace Lumo {

/// Asserts that both arrays reach to slot newCount - 1; slots below count are taken for granted.
template <class T>
inline void AssertRoom([[maybe_unused]] T* points, [[maybe_unused]] NODETYPE* types,
                       [[maybe_unused]] int count, [[maybe_unused]] int newCount) {
#if defined(LUMO_KNOWS_ROOM)
  if (newCount <= count) return;
  const auto slots = static_cast<std::size_t>(newCount - count);
  if (__asan_region_is_poisoned(points + count, slots * sizeof(T)) == nullptr &&
      __asan_region_is_poisoned(types + count, slots) == nullptr)
    return;
  std::fprintf(stderr, "lumo: no room for %d nodes in the caller's arrays\n", newCount);
  std::abort();
#endif
}

}  // namespace Lumo
