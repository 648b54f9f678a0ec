#pragma once
// The one way in which reading fails.

#include <cstddef>
#include <stdexcept>
#include <string>

namespace tool {

/// What is wrong with an input, where. While an attribute is read the place is an offset in its value;
/// whoever knows the element and the file puts those in front (see InElement), so that the user gets one line
/// with all of it.
class InputError : public std::runtime_error {
 public:
  explicit InputError(const std::string& what) : std::runtime_error(what) {}
  InputError(const std::string& what, std::size_t offset)
      : std::runtime_error("character " + std::to_string(offset + 1) + ": " + what) {}
};

}  // namespace tool
