#pragma once

#include <string>

#include "tools/ExitStatus.h"

namespace lvp::tool {

/// Reads a document into a new or empty store. Faults go to standard error as they come.
tExitStatus importDocument(const std::string& document, const std::string& store);

/// Writes a store, or the item at a dotted path in it, as a document: to `output`, or to standard output when that is
/// empty.
tExitStatus exportDocument(const std::string& store, const std::string& path, const std::string& output);

/// Prints a store, or what lies at and below a dotted path in it, as a tree.
tExitStatus printTree(const std::string& store, const std::string& path);

}  // namespace lvp::tool
