#pragma once
// A cursor over the text of an attribute: numbers, names and separators as SVG writes them.

#include <array>
#include <optional>
#include <string_view>

namespace tool {

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  bool AtEnd() const { return at_ == text_.size(); }
  char Peek() const { return AtEnd() ? '\0' : text_[at_]; }
  void Skip() { ++at_; }
  std::size_t Offset() const { return at_; }
  std::string_view Rest() const { return text_.substr(at_); }

  void SkipSpace();
  /// White space with at most one comma in it. True when there was a comma.
  bool SkipSeparator();
  /// Whether a number begins here (a digit, a sign or a point).
  bool AtNumber() const;
  /// The next number, exactly rounded. An InputError when none begins here or it is beyond the range of
  /// doubles.
  double Number();
  /// One of the digits 0 and 1; nothing needs to follow it.
  bool Flag();
  /// A run of letters; empty when none begins here.
  std::string_view Name();
  /// Consumes the character, or throws an InputError that says what was expected.
  void Expect(char character);
  /// An InputError for what stands here.
  [[noreturn]] void Fail(std::string_view expected) const;

 private:
  std::string_view text_;
  std::size_t at_ = 0;
};

/// Four numbers of a viewBox: left, top, width, height. Nothing when the text is not one or a side is not
/// positive.
std::optional<std::array<double, 4>> ParseViewBox(std::string_view text);

}  // namespace tool
