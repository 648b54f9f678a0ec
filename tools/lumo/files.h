#pragma once
// Whole files, and what is said when one cannot be had.

#include <string>

namespace tool {

/// The contents of a file, or of standard input when the name is "-". An InputError names the file and the
/// cause.
std::string ReadText(const std::string& file);

/// Replaces the contents of a file; "-" is standard output. An InputError names the file and the cause.
void WriteText(const std::string& file, const std::string& text);

/// An InputError when something that was printed has not arrived: a disk may be full.
void FlushOutput();

}  // namespace tool
