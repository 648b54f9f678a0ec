#pragma once
// What the program says about itself besides the help of its options.

#include <memory>
#include <string>

#include "cli_model.h"

namespace tool {

/// What holds for every subcommand: streams, units, exit codes.
std::string Conventions();

/// How help is laid out: remarks are wrapped, names of flags stand as they are typed.
std::shared_ptr<CLI::FormatterBase> HelpFormatter();

/// The manual page, section 1, for man(1).
std::string ManualPage(const CliCommand& program, const std::string& version);

}  // namespace tool
