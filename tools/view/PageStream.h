#pragma once

#include <cstdint>
#include <ostream>
#include <streambuf>
#include <string>

#include "lumivard/platform/core/io/IDataWriter.h"

namespace lvp::tool {

/// Puts JSON into a page: characters that could end the element that it stands in, or begin another one, become
/// escapes, which mean the same to a reader of JSON. They stand in texts only: nothing else in JSON is made of them.
class PageStream : public std::ostream {
public:
    /// `writer` is open, and outlives the stream. What it throws passes through.
    explicit PageStream(lumivard::platform::core::io::IDataWriter& writer);

    /// How many bytes have gone to the writer: all, behind a flush.
    std::uint64_t written() const { return _buffer.written(); }

private:
    class Buffer : public std::streambuf {
    public:
        explicit Buffer(lumivard::platform::core::io::IDataWriter& writer) : _writer(writer) {}

        std::uint64_t written() const { return _written; }

    protected:
        int_type overflow(int_type character) override;
        std::streamsize xsputn(const char* text, std::streamsize size) override;
        int sync() override;

    private:
        void put(char byte);

        lumivard::platform::core::io::IDataWriter& _writer;
        std::string _bytes;
        std::uint64_t _written = 0;
    };

    Buffer _buffer;
};

}  // namespace lvp::tool
