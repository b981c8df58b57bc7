#pragma once

#include <string>

namespace lvp::tool {

/// Copies a whole store into one that is empty, a file that is made or a store in a database, record by record, so that
/// each stands at the same offset; then opens the copy anew and compares. A failure is one of `kCannotOpen` where
/// something stands in the way, and of `kCannotFinish` where the copy is not as it should be.
void copyStore(const std::string& from, const std::string& to);

}  // namespace lvp::tool
