#pragma once

#include <string>

#include "lumivard/platform/data/check/Repair.h"

namespace lvp::tool {

/// Writes the old bytes of all records that a repair changes to a new file beside the store, and returns its name: that
/// of `fileBeside` with ".before-repair" behind it, and a number where there is such a file already. It is on the disk
/// when this returns. A failure is one of `kCannotFinish`, and leaves no file.
///
///     lvp-data before-repair 1
///     <offset> <length in bytes> <the bytes in hexadecimal digits>
///     ...
std::string keepOldBytes(const std::string& store, const lumivard::platform::data::check::Repair& repair);

}  // namespace lvp::tool
