#pragma once

#include <filesystem>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/io/IDataWriter.h"

namespace lumivard::platform::core::io {

/// Writes a file that appears whole at `close`, or not at all: the bytes go to a file beside it, which takes the
/// target's name when everything is on the disk. Until then readers see the old file, if there was one.
///
/// The new file has the permissions of the old one; the owner is who writes it. A path that is a symbolic link stays
/// one: the file that it leads to is replaced. Only files are replaced, no devices or pipes. Threads: one at a time.
class LVP_EXPORT FileWriter : public IDataWriter {
public:
    /// Touches nothing before `open`.
    explicit FileWriter(std::filesystem::path path);
    /// Without a `close` the new bytes are thrown away and the target stays as it was.
    ~FileWriter() override;
    FileWriter(const FileWriter&) = delete;
    FileWriter& operator=(const FileWriter&) = delete;

    /// False when no file can be made beside the target, or the target is there and is no file; `errno` tells why.
    /// What a `close` has not put in place yet is thrown away.
    bool open() override;
    /// Puts the new file in the target's place. Throws `std::system_error`, with the target as it was and nothing left
    /// beside it, when that fails. After a `write` that threw it throws away what was written instead. Without an
    /// `open` it does nothing.
    void close() override;
    /// Throws `std::system_error` when the bytes cannot be written; where `open` gave false, with the reason of that.
    void write(const void* data, unsigned long size) override;

private:
    bool openBeside();
    void discard() noexcept;

    std::filesystem::path _path;
    std::filesystem::path _target;  // behind the symbolic links of _path, absolute
    std::filesystem::path _beside;
    int _file = -1;
    int _cause = 0;  // why it could not be opened
    bool _failed = false;
};

}  // namespace lumivard::platform::core::io
