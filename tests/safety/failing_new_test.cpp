// The replaced allocation operators of this program; in a file of their own, so that the compiler does not
// see through them.

#if !defined(_WIN32)  // a program there cannot replace the library's operator new

#include "support/failing_new.h"

#include <new>

void* operator new(std::size_t size) {
  if (void* memory = test::FailingNew::Allocate(size)) return memory;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return test::FailingNew::Allocate(size);
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

#if defined(LUMO_TEST_FAILS_MALLOC)
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* malloc(std::size_t size) { return test::FailingMalloc::Fails() ? nullptr : __libc_malloc(size); }
void* calloc(std::size_t count, std::size_t size) {
  return test::FailingMalloc::Fails() ? nullptr : __libc_calloc(count, size);
}
}
#endif

#endif
