#pragma once
// What shells need to complete the program's command line.

#include <string>

#include "cli_model.h"

namespace tool {

std::string BashCompletion(const CliCommand& program);
std::string ZshCompletion(const CliCommand& program);
std::string FishCompletion(const CliCommand& program);

}  // namespace tool
