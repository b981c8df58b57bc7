#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "lumivard/platform/core/io/IDataWriter.h"
#include "tools/base/Text.h"

namespace lvp::tool {

/// Hands a document in UTF-8 on to a writer that is open. On its way to a terminal, characters with which hostile text
/// could take hold of that become character references, so that it is the same document.
class TerminalWriter : public lumivard::platform::core::io::IDataWriter {
public:
    TerminalWriter(IDataWriter& under, bool terminal) : _under(under), _terminal(terminal) {}

    bool open() override { return true; }
    void close() override {
        put(_held);
        _held.clear();
        _under.close();
    }
    void write(const void* data, unsigned long size) override {
        if (!_terminal) return _under.write(data, size);
        _held.append(static_cast<const char*>(data), size);
        // A character may be cut here: such ones have up to three bytes.
        const std::size_t whole = _held.size() - std::min<std::size_t>(_held.size(), kLongest - 1);
        _held.erase(0, put(_held, whole));
    }

private:
    static constexpr std::size_t kLongest = 3;

    void put(std::string_view text) { put(text, text.size()); }

    /// Writes the characters that begin before a place, and gives the place behind them.
    std::size_t put(std::string_view text, std::size_t before) {
        std::string out;
        std::size_t i = 0;
        while (i < before) {
            const tUnsafe found = unsafeAt(text.substr(i));
            const bool layout = text[i] == '\n' || text[i] == '\t';
            if (found.bytes == 0 || layout) {
                out += text[i++];
                continue;
            }
            out += "&#" + std::to_string(found.character) + ";";
            i += found.bytes;
        }
        _under.write(out.data(), out.size());
        return i;
    }

    IDataWriter& _under;
    bool _terminal;
    std::string _held;
};

}  // namespace lvp::tool
