#include "tools/view/PageStream.h"

namespace lvp::tool {

PageStream::PageStream(lumivard::platform::core::io::IDataWriter& writer) : std::ostream(nullptr), _buffer(writer) {
    rdbuf(&_buffer);
    exceptions(std::ios::badbit);  // else a stream keeps to itself what the writer throws
}

PageStream::Buffer::int_type PageStream::Buffer::overflow(int_type character) {
    if (!traits_type::eq_int_type(character, traits_type::eof())) put(traits_type::to_char_type(character));
    return traits_type::not_eof(character);
}

std::streamsize PageStream::Buffer::xsputn(const char* text, std::streamsize size) {
    for (std::streamsize i = 0; i < size; ++i) put(text[i]);
    return size;
}

int PageStream::Buffer::sync() {
    _writer.write(_bytes.data(), _bytes.size());
    _written += _bytes.size();
    _bytes.clear();
    return 0;
}

void PageStream::Buffer::put(char byte) {
    constexpr std::size_t kPortion = 1 << 16;
    if (byte == '<') {
        _bytes += "\\u003c";
    } else if (byte == '>') {
        _bytes += "\\u003e";
    } else if (byte == '&') {
        _bytes += "\\u0026";
    } else if ((byte == '\xA8' || byte == '\xA9') && _bytes.ends_with("\xE2\x80")) {
        // The line ends U+2028 and U+2029, which a script could not hold.
        _bytes.replace(_bytes.size() - 2, 2, byte == '\xA8' ? "\\u2028" : "\\u2029");
    } else {
        _bytes += byte;
        if (_bytes.size() >= kPortion && (byte & 0x80) == 0) sync();
    }
}

}  // namespace lvp::tool
