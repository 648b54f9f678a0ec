#pragma once
// The contacts of two curves as they are found, each once.

#include "math/cubic/cubic_pair.h"

namespace TavMath {

/// How a contact was found, from the least to the most trustworthy.
enum class ContactKind { indistinct, crossing, tangency, commonEnd };

struct Contact {
  double ta, tb;
  ContactKind kind;
};

class ContactList {
 public:
  explicit ContactList(const CubicPair& pair) : pair_(pair) {}
  /// Adds unless it is there already; a more trustworthy one takes the place of the other.
  void Add(double ta, double tb, ContactKind kind) noexcept;
  int Count() const { return count_; }
  /// Merges what no rounding-sized gap separates, moves contacts at an end on it, sorts by ta.
  void Finish(Crossings& out) noexcept;

 private:
  bool IsSame(const Contact& a, const Contact& b) const noexcept;
  static constexpr int kRoom = 48;
  const CubicPair& pair_;
  int count_ = 0;
  Contact at_[kRoom];
};

}  // namespace TavMath
