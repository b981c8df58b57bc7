#pragma once

#include "lumivard/platform/core/io/IDataReader.h"
#include "lumivard/platform/core/io/IDataWriter.h"
#include "tools/base/Watch.h"

namespace lvp::tool {

/// A reader whose bytes count as progress.
class WatchedReader : public lumivard::platform::core::io::IDataReader {
public:
    WatchedReader(IDataReader& under, Watch& watch) : _under(under), _watch(watch) {}

    bool open() override { return _under.open(); }
    void close() override { _under.close(); }
    unsigned long read(void* buffer, unsigned long size) override {
        // In pieces, so that the progress is seen and an interrupt is heard.
        const unsigned long count = _under.read(buffer, size < kPiece ? size : kPiece);
        _bytes += count;
        _watch.reached(_bytes);
        return count;
    }

    unsigned long long bytes() const { return _bytes; }

private:
    static constexpr unsigned long kPiece = 1UL << 16;

    IDataReader& _under;
    Watch& _watch;
    unsigned long long _bytes = 0;
};

/// A writer, which is open already, whose bytes count as progress. It stays open until its owner closes it.
class WatchedWriter : public lumivard::platform::core::io::IDataWriter {
public:
    WatchedWriter(IDataWriter& under, Watch& watch) : _under(under), _watch(watch) {}

    bool open() override { return true; }
    void close() override {}
    void write(const void* data, unsigned long size) override {
        _watch.advance(size);
        _under.write(data, size);
    }

private:
    IDataWriter& _under;
    Watch& _watch;
};

}  // namespace lvp::tool
