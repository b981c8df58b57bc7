#pragma once

#include <cstdint>
#include <optional>

#include "lumivard/platform/stores/FileOptions.h"
#include "lumivard/platform/stores/FileReport.h"
#include "stores/engine/EngineError.h"

namespace lumivard::platform::stores::lmdb {

/// The examinations of an open file that the engine makes, with the verifier. All throw `EngineError` when the disk
/// fails.

/// What has to be known before the file is mapped: its description of itself, and the way to its header. A writer may
/// be at work meanwhile.
FileReport verifyHeader(int descriptor);

/// Every page of the state that a transaction of LMDB's holds still, and with `values` every stored record's checksum.
/// Nothing when the file has forgotten the beginning of that state, since two commits have come after it. `progress`
/// hears of each page, and may end it.
std::optional<FileReport> verifyAll(int descriptor, std::uint64_t transaction, bool values, const tProgress& progress);

/// Whether a file ends before the last of its pages. In order where those behind its end are free, which only the
/// examination of all pages can tell.
bool isShort(const FileReport& report);

/// The refusal of a file that is damaged, by its first fault.
class UnsoundFile : public EngineError {
public:
    explicit UnsoundFile(const FileReport& report);
    const FileReport& report() const noexcept { return _report; }

private:
    FileReport _report;
};

/// Throws `UnsoundFile` if a report names a fault.
void requireSound(const FileReport& report);

}  // namespace lumivard::platform::stores::lmdb
