#pragma once
#include <cstddef>

#include "lumo/export.h"

namespace TavUtils {

/// A view of a run of elements that somebody else owns. An empty view may hold null pointers. Indices are not
/// checked.
template <class Element>
class LUMO_TYPE array_view {
 public:
  /// As containers have them.
  using value_type = Element;
  using iterator = Element*;

  /// Empty; a pointer and a number; two pointers.
  constexpr array_view() noexcept = default;
  /// From a pointer and a number; from two pointers.
  constexpr array_view(Element* data, std::size_t size) noexcept : begin_(data), end_(data + size) {}
  constexpr array_view(Element* begin, Element* end) noexcept : begin_(begin), end_(end) {}

  /// As containers have them. front, back and the index need an element that is there.
  constexpr Element* begin() const noexcept { return begin_; }
  constexpr Element* end() const noexcept { return end_; }
  constexpr Element* data() const noexcept { return begin_; }
  constexpr std::size_t size() const noexcept { return static_cast<std::size_t>(end_ - begin_); }
  constexpr bool empty() const noexcept { return begin_ == end_; }
  constexpr Element& operator[](std::size_t i) const noexcept { return begin_[i]; }
  constexpr Element& front() const noexcept { return *begin_; }
  constexpr Element& back() const noexcept { return *(end_ - 1); }
  /// The view without its first and last element; empty when it has fewer than two.
  constexpr array_view inner() const noexcept {
    return size() < 2 ? array_view() : array_view(begin_ + 1, end_ - 1);
  }

 private:
  Element* begin_ = nullptr;
  Element* end_ = nullptr;
};

}  // namespace TavUtils
