#pragma once
#include <cstddef>
#include <iterator>
#include <utility>

#include "lumo/export.h"

namespace TavUtils {

/// What a range that depends on nobody's data holds.
struct LUMO_TYPE NoOwner{};

/// A begin/end pair for range-for. Owner is kept alive as long as the range: what the iterators look into.
template <class Iterator, class Owner = NoOwner>
class LUMO_TYPE RangeView {
 public:
  /// As containers have it.
  using iterator = Iterator;

  RangeView() = default;
  /// From the two ends and what they look into.
  RangeView(Iterator begin, Iterator end, Owner owner = Owner())
      : begin_(std::move(begin)), end_(std::move(end)), owner_(std::move(owner)) {}

  /// The ends, whether they meet, and what is kept alive.
  const Iterator& begin() const noexcept { return begin_; }
  const Iterator& end() const noexcept { return end_; }
  bool empty() const noexcept { return begin_ == end_; }
  const Owner& owner() const noexcept { return owner_; }

 private:
  Iterator begin_{};
  Iterator end_{};
  Owner owner_{};
};

/// An index that acts as an iterator over indices: dereferenced it is its own value.
template <class Integer>
class LUMO_TYPE IndexT {
 public:
  /// What an iterator declares.
  using iterator_category = std::input_iterator_tag;
  using value_type = Integer;
  using difference_type = std::ptrdiff_t;
  using pointer = const Integer*;
  using reference = Integer;

  /// An index and the steps and comparisons of an iterator.
  constexpr IndexT(Integer value = 0) noexcept : value_(value) {}
  constexpr Integer operator*() const noexcept { return value_; }
  constexpr IndexT& operator++() noexcept {
    ++value_;
    return *this;
  }
  constexpr IndexT operator++(int) noexcept { return IndexT(value_++); }
  friend constexpr bool operator==(IndexT a, IndexT b) noexcept { return a.value_ == b.value_; }
  friend constexpr bool operator!=(IndexT a, IndexT b) noexcept { return a.value_ != b.value_; }

 private:
  Integer value_;
};

/// The indices first .. end-1; none when first is not below end.
inline RangeView<IndexT<std::size_t>> IndexRange(std::size_t first, std::size_t end) {
  return {IndexT<std::size_t>(first < end ? first : end), IndexT<std::size_t>(end)};
}

/// An iterator over numbers: dereferencing calls a getter with the current number, advancing asks a step
/// function for the next one. It ends when the number reaches the end or is stepped over it, and also when
/// the step does not increase the number, so that no step function can make a walk endless.
template <class Getter, class Step>
class LUMO_TYPE factory_iterator_t {
 public:
  /// What an iterator declares.
  using iterator_category = std::input_iterator_tag;
  using value_type = decltype(std::declval<const Getter&>()(std::size_t{}));
  using difference_type = std::ptrdiff_t;
  using pointer = const value_type*;
  using reference = value_type;

  factory_iterator_t() = default;
  /// Starts at a number, cut to the end.
  factory_iterator_t(std::size_t number, std::size_t end, Getter getter, Step step) noexcept
      : number_(number < end ? number : end), end_(end), getter_(getter), step_(step) {}

  /// The steps and comparisons of an iterator, and the number it stands at.
  value_type operator*() const { return getter_(number_); }
  factory_iterator_t& operator++() {
    if (number_ == end_) return *this;
    const std::size_t next = step_(number_);
    number_ = next > number_ && next < end_ ? next : end_;
    return *this;
  }
  factory_iterator_t operator++(int) {
    factory_iterator_t before = *this;
    ++*this;
    return before;
  }
  /// The number it stands at; two iterators are equal when they stand at the same one.
  std::size_t number() const noexcept { return number_; }
  friend bool operator==(const factory_iterator_t& a, const factory_iterator_t& b) noexcept {
    return a.number_ == b.number_;
  }
  friend bool operator!=(const factory_iterator_t& a, const factory_iterator_t& b) noexcept {
    return !(a == b);
  }

 private:
  std::size_t number_ = 0;
  std::size_t end_ = 0;
  Getter getter_{};
  Step step_{};
};

}  // namespace TavUtils
