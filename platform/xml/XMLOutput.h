#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "lumivard/platform/core/io/IDataWriter.h"

namespace lumivard::platform::core::xml {

/// Gathers the bytes of a document in a block, which goes to the writer when it is full. What it escapes and what goes
/// out as it is, is its caller's affair. The writer is not owned; its exceptions pass through.
class XMLOutput {
public:
    explicit XMLOutput(io::IDataWriter* writer) : _writer(writer) {}

    void put(char byte) {
        *room(1) = byte;
        ++_end;
    }
    void put(std::string_view bytes) {
        if (bytes.size() > kBlock) return putLong(bytes);
        _end = std::copy(bytes.begin(), bytes.end(), room(bytes.size()));
    }

    /// Writes wide text as the value of an attribute or as text.
    void putAttribute(std::wstring_view text);
    void putText(std::wstring_view text);

    /// Hands what is left to the writer. Called again it does nothing.
    void finish();

private:
    static constexpr std::size_t kBlock = 65536;

    template <bool attribute>
    void escape(std::wstring_view text);
    void putLong(std::string_view bytes);
    void drain();

    /// The place where so many bytes fit, behind what the block holds.
    char* room(std::size_t size) {
        if (size > static_cast<std::size_t>(_block + kBlock - _end)) drain();
        return _end;
    }

    io::IDataWriter* _writer;
    char _block[kBlock];
    char* _end = _block;
};

}  // namespace lumivard::platform::core::xml
