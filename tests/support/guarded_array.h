#pragma once
// Arrays that notice a write outside their stated capacity. Both ends carry a zone of a known pattern,
// checked when the array dies (or on request); under AddressSanitizer the zones are poisoned as well, so that
// a read outside the array stops the program on the spot.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <type_traits>
#include <vector>

#include "lumo/node_type.h"
#include "support/path_builder.h"
#include "support/sanitizers.h"

#if defined(LUMO_TEST_ASAN)
#include <sanitizer/asan_interface.h>
#endif

namespace test {

template <class Element>
class GuardedArray {
  static_assert(std::is_trivially_copyable_v<Element>);

 public:
  /// Elements start as bytes 0xA5: nothing that a function could take for a cleared value.
  explicit GuardedArray(std::size_t size) : size_(size), memory_(2 * kZone + size * sizeof(Element), kUnset) {
    std::fill_n(memory_.begin(), kZone, kFill);
    std::fill_n(memory_.rbegin(), kZone, kFill);
    Poison(true);
  }
  /// A copy of the elements with room for capacity of them in all.
  GuardedArray(const std::vector<Element>& elements, std::size_t capacity) : GuardedArray(capacity) {
    if (!elements.empty()) std::memcpy(data(), elements.data(), elements.size() * sizeof(Element));
  }
  GuardedArray(const GuardedArray&) = delete;
  GuardedArray& operator=(const GuardedArray&) = delete;
  ~GuardedArray() { EXPECT_TRUE(Intact()) << "a write outside an array of " << size_ << " elements"; }

  Element* data() { return reinterpret_cast<Element*>(memory_.data() + kZone); }
  const Element* data() const { return reinterpret_cast<const Element*>(memory_.data() + kZone); }
  std::size_t size() const { return size_; }
  Element& operator[](std::size_t i) { return data()[i]; }
  const Element& operator[](std::size_t i) const { return data()[i]; }
  const Element* begin() const { return data(); }
  const Element* end() const { return data() + size_; }

  /// Whether both zones still hold their pattern.
  bool Intact() const {
    Poison(false);
    bool intact = true;
    for (std::size_t k = 0; k < kZone; ++k)
      intact = intact && memory_[k] == kFill && memory_[memory_.size() - 1 - k] == kFill;
    Poison(true);
    return intact;
  }

 private:
  static constexpr std::size_t kZone = 256;  // wide enough for a stray cubic of doubles on either side
  static constexpr unsigned char kFill = 0xDB, kUnset = 0xA5;

  /// The allocator takes its memory back unpoisoned.
  struct Memory : std::vector<unsigned char> {
    using std::vector<unsigned char>::vector;
    ~Memory() { Set(*this, 0, size(), false); }
    static void Set([[maybe_unused]] const std::vector<unsigned char>& bytes,
                    [[maybe_unused]] std::size_t from, [[maybe_unused]] std::size_t n,
                    [[maybe_unused]] bool poison) {
#if defined(LUMO_TEST_ASAN)
      if (poison) __asan_poison_memory_region(bytes.data() + from, n);
      if (!poison) __asan_unpoison_memory_region(bytes.data() + from, n);
#endif
    }
  };
  void Poison(bool on) const {
    Memory::Set(memory_, 0, kZone, on);
    Memory::Set(memory_, memory_.size() - kZone, kZone, on);
  }

  std::size_t size_;
  Memory memory_;
};

/// A path in guarded arrays: what an editing function of the C-style layer is given.
template <class T>
struct GuardedPath {
  GuardedPath(const Path<T>& path, std::size_t spare = 0)
      : points(path.points, path.points.size() + spare),
        types(path.types, path.types.size() + spare),
        count(path.count()) {}
  /// The first n nodes as a plain path.
  Path<T> Copy(int n) const {
    const auto size = static_cast<std::size_t>(n < 0 ? 0 : n);
    EXPECT_LE(size, points.size());
    return {{points.begin(), points.begin() + size}, {types.begin(), types.begin() + size}};
  }
  Path<T> Copy() const { return Copy(count); }

  GuardedArray<T> points;
  GuardedArray<NODETYPE> types;
  int count;
};

/// The path after an edit in arrays of exactly `room` nodes more: edit(points, types, count, arguments...)
/// gives the new count.
template <class T>
Path<T> After(const Path<T>& path, int room, auto edit, auto... arguments) {
  GuardedPath<T> g(path, static_cast<std::size_t>(room));
  const int count = edit(g.points.data(), g.types.data(), g.count, arguments...);
  EXPECT_GE(count, 0) << path;
  return g.Copy(count);
}

}  // namespace test
