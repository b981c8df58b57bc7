#pragma once

#include <filesystem>

#include "lumivard/platform/core/Export.h"
#include "lumivard/platform/core/io/IDataReader.h"

namespace lumivard::platform::core::io {

/// Reads a file.
class LVP_EXPORT FileReader : public IDataReader {
public:
    /// Touches nothing before `open`.
    explicit FileReader(std::filesystem::path path);
    ~FileReader() override;
    FileReader(const FileReader&) = delete;
    FileReader& operator=(const FileReader&) = delete;

    /// False when the file is not there, is a directory, or may not be read; `errno` tells why.
    bool open() override;
    void close() override;
    /// Throws `std::system_error` with the path when the file cannot be read.
    unsigned long read(void* buffer, unsigned long size) override;

private:
    std::filesystem::path _path;
    int _file = -1;
};

}  // namespace lumivard::platform::core::io
