#pragma once
// The operations of `lumo edit`: a small language for the editing functions of the library.

#include <string>

#include "document.h"

namespace tool {

/// Applies one operation, [ID/]VERB[:ARGUMENTS], to an element: the one with this id, else the first. True
/// when it changed something. An InputError when it cannot be read, or names an element or a node that is not
/// there.
bool ApplyOperation(Document& document, const std::string& operation);

/// One line for each verb.
std::string OperationHelp();

}  // namespace tool
