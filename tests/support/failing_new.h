#pragma once
// Lets the n-th allocation of the test program fail, and with it that of the shared library (on systems where
// a program's operator new and malloc win over the library's). The operators themselves stand in
// tests/safety/failing_new_test.cpp.

#include <atomic>
#include <cstddef>
#include <cstdlib>

#include "support/sanitizers.h"

namespace test {

/// Counts allocations while armed and fails the chosen one and all that follow it. Each kind counts its own.
template <class Kind>
class FailingAllocations {
 public:
  static void FailFrom(long nth) {
    failures_ = 0;
    left_ = nth;
  }
  static void Never() { left_ = -1; }
  /// How many allocations were refused since FailFrom.
  static long Failures() { return failures_; }
  /// Whether the allocation that is asked for now is to fail.
  static bool Fails() {
    if (left_ < 0 || left_-- > 0) return false;
    left_ = 0;
    ++failures_;
    return true;
  }

 private:
  // Negative: never fail. Otherwise the number of allocations that still succeed.
  static inline std::atomic<long> left_{-1};
  static inline std::atomic<long> failures_{0};
};

// Sanitizers bring a malloc of their own, and only glibc lets a program ask for the one it replaces.
#if defined(__GLIBC__) && !defined(LUMO_TEST_ASAN) && !defined(LUMO_TEST_TSAN)
#define LUMO_TEST_FAILS_MALLOC 1
#endif

/// The memory that the library takes from malloc and calloc, because the host frees it; only with
/// LUMO_TEST_FAILS_MALLOC, and not under valgrind.
class FailingMalloc : public FailingAllocations<FailingMalloc> {};

class FailingNew : public FailingAllocations<FailingNew> {
 public:
  static void* Allocate(std::size_t size) { return Fails() ? nullptr : std::malloc(size == 0 ? 1 : size); }
};

}  // namespace test
