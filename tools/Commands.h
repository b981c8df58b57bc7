#pragma once

#include <string>
#include <vector>

#include "tools/CheckResult.h"
#include "tools/ExitStatus.h"

namespace lvp::tool {

// `schemas` are stores and documents in which the schemas are found that a command meets.

/// Reads a document into a new or empty store. Faults go to standard error as they come.
tExitStatus importDocument(const std::string& document, const std::string& store,
                           const std::vector<std::string>& schemas);

/// Writes a store, or the item at a dotted path in it, as a document: to `output`, or to standard output when that is
/// empty.
tExitStatus exportDocument(const std::string& store, const std::string& path, const std::string& output,
                           const std::vector<std::string>& schemas);

/// Prints a store, or what lies at and below a dotted path in it, as a tree.
tExitStatus printTree(const std::string& store, const std::string& path, const std::vector<std::string>& schemas);

/// Tells whether the container or table at a dotted path conforms to the schemas of a list, and why not: `kDone` when
/// it does, `kFaults` when not.
tExitStatus validate(const std::string& store, const std::string& path, const std::string& uris,
                     const std::vector<std::string>& schemas);

/// Prints the fields of the schemas of a list, as a struct value holds them.
tExitStatus showSchema(const std::string& uris, const std::vector<std::string>& schemas);

/// Copies the item at a dotted path, with all that it holds, to a new name in a container: in the same store, or in
/// `target` where that is not empty.
tExitStatus copyItem(const std::string& store, const std::string& path, const std::string& destination,
                     const std::string& target);

/// The same, and the item is gone from its old place.
tExitStatus moveItem(const std::string& store, const std::string& path, const std::string& destination,
                     const std::string& target);

/// Gives back the space in a store's file that nothing uses, and brings it to the newest format.
tExitStatus compactStore(const std::string& store);

/// Examines a store, and its file below the records, and with `repair` mends it: `kDone` when nothing is the matter
/// with it in the end, `kFaults` otherwise.
tExitStatus checkStore(const tCheckOptions& options);

}  // namespace lvp::tool
