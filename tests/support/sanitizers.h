#pragma once
// Which sanitizer this program is built with, for either compiler's way of saying so.

#if defined(__SANITIZE_ADDRESS__)
#define LUMO_TEST_ASAN 1
#endif
#if defined(__SANITIZE_THREAD__)
#define LUMO_TEST_TSAN 1
#endif
#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define LUMO_TEST_ASAN 1
#endif
#if __has_feature(thread_sanitizer)
#define LUMO_TEST_TSAN 1
#endif
#endif
