#include "scanner.h"

#include <charconv>
#include <string>

#include "input_error.h"

namespace tool {

namespace {

bool IsSpace(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f'; }
bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

}  // namespace

void Scanner::SkipSpace() {
  while (!AtEnd() && IsSpace(text_[at_])) ++at_;
}

bool Scanner::SkipSeparator() {
  SkipSpace();
  if (Peek() != ',') return false;
  Skip();
  SkipSpace();
  return true;
}

bool Scanner::AtNumber() const {
  const char c = Peek();
  return IsDigit(c) || c == '.' || c == '-' || c == '+';
}

double Scanner::Number() {
  if (!AtNumber()) Fail("a number");
  const char* first = text_.data() + at_;
  const char* const last = text_.data() + text_.size();
  // A sign of either kind may stand once; what follows has to look like a number, not like "inf".
  if (*first == '+') ++first;
  const char* digits = first != text_.data() + at_ ? first : first + (*first == '-');
  if (digits == last || !(IsDigit(*digits) || (*digits == '.' && digits + 1 != last && IsDigit(digits[1])))) {
    Fail("a number");
  }
  double value = 0;
  const auto [end, error] = std::from_chars(first, last, value);
  if (error == std::errc::result_out_of_range) {
    // Too small is zero, too large is an error.
    if (std::string_view(first, end).find_first_of("eE") == std::string_view::npos ||
        std::string_view(first, end).find("e-") == std::string_view::npos) {
      Fail("a number that doubles can hold");
    }
    value = 0;
  }
  at_ = static_cast<std::size_t>(end - text_.data());
  return value;
}

bool Scanner::Flag() {
  const char c = Peek();
  if (c != '0' && c != '1') Fail("a flag (0 or 1)");
  Skip();
  return c == '1';
}

std::string_view Scanner::Name() {
  const std::size_t begin = at_;
  while (!AtEnd() && IsLetter(text_[at_])) ++at_;
  return text_.substr(begin, at_ - begin);
}

void Scanner::Expect(char character) {
  if (Peek() != character) Fail(std::string("'") + character + "'");
  Skip();
}

void Scanner::Fail(std::string_view expected) const {
  std::string found = "the end";
  if (!AtEnd()) {
    const auto byte = static_cast<unsigned char>(text_[at_]);
    found =
        byte >= 0x20 && byte < 0x7F ? std::string("'") + text_[at_] + "'" : "byte " + std::to_string(byte);
  }
  throw InputError("expected " + std::string(expected) + ", found " + found, at_);
}

std::optional<std::array<double, 4>> ParseViewBox(std::string_view text) {
  std::array<double, 4> box{};
  try {
    Scanner scanner(text);
    scanner.SkipSpace();
    for (double& value : box) {
      value = scanner.Number();
      scanner.SkipSeparator();
    }
    if (!scanner.AtEnd() || !(box[2] > 0) || !(box[3] > 0)) return std::nullopt;
  } catch (const InputError&) {
    return std::nullopt;
  }
  return box;
}

}  // namespace tool
