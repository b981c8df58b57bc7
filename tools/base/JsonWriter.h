#pragma once

#include <charconv>
#include <concepts>
#include <ostream>
#include <string>
#include <string_view>

namespace lvp::tool {

/// Writes JSON: the caller sees to it that keys and values come where they may. Texts are UTF-8; what is none becomes
/// U+FFFD, and control characters, which could take hold of a terminal, become escapes.
class JsonWriter {
public:
    explicit JsonWriter(std::ostream& out) : _out(out) {}

    void beginObject() { begin('{'); }
    void endObject() { end('}'); }
    void beginArray() { begin('['); }
    void endArray() { end(']'); }

    /// The name of the value that follows.
    JsonWriter& key(const std::string& name);

    void value(const std::string& text);
    void value(const char* text) { value(std::string(text)); }
    void value(bool truth);
    void value(std::integral auto number) {
        separate();
        char digits[24];
        _out.write(digits, std::to_chars(digits, digits + sizeof digits, number).ptr - digits);
    }
    /// In the shortest form that reads back as the same number; "inf", "-inf" and "nan" as texts.
    void value(double number);
    void value(float number);
    /// A number or a truth value that is a text already.
    void literal(const std::string& text);
    /// A text of hexadecimal digits, two for each byte of the portions that `next()` gives; an empty one ends it. No
    /// more than one portion is held at a time.
    template <class Next>
    void hex(Next next) {
        separate();
        _out << '"';
        for (std::string_view bytes = next(); !bytes.empty(); bytes = next()) writeHex(bytes);
        _out << '"';
    }

private:
    void begin(char bracket);
    void end(char bracket);
    void separate();
    void quote(const std::string& text);
    void writeReal(auto number);
    void writeHex(std::string_view bytes);

    std::ostream& _out;
    bool _first = true;  ///< nothing stands in the innermost object or array so far
    bool _keyed = false;
};

}  // namespace lvp::tool
