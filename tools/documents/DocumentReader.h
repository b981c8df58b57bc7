#pragma once

#include <string>

#include "lumivard/platform/core/io/IDataReader.h"

namespace lvp::tool {

/// Reads a document: a file, a pipe by its name, or for "-" what comes on standard input. While it waits for a pipe, an
/// interrupt ends the reading by an exception.
class DocumentReader : public lumivard::platform::core::io::IDataReader {
public:
    explicit DocumentReader(std::string name) : _name(std::move(name)) {}
    ~DocumentReader() override { DocumentReader::close(); }
    DocumentReader(const DocumentReader&) = delete;
    DocumentReader& operator=(const DocumentReader&) = delete;

    bool open() override;
    void close() override;
    unsigned long read(void* buffer, unsigned long size) override;

private:
    void wait() const;

    std::string _name;
    int _file = -1;
    bool _waits = false;  ///< bytes may come later
};

}  // namespace lvp::tool
