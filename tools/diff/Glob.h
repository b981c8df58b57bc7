#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lvp::tool {

/// A pattern of whole paths. `?` is any one character and `*` any number of them, dots excepted; `**` is any number of
/// any characters. Where a level begins `**.` is any number of whole levels, none included: `**.Density` is a Density
/// at any depth. A backslash makes the character behind it an ordinary one.
///
/// It is matched from state to state, so that a path is gone through once, and what lies below a path goes on from
/// there: each character costs a look at each character of the pattern, whatever both are.
class Glob {
public:
    /// Where in the pattern one may be after some characters of a path.
    using tState = std::vector<char>;

    explicit Glob(std::wstring_view pattern);

    tState begin() const;
    tState after(const tState& state, std::wstring_view characters) const;
    bool matches(const tState& state) const { return state.back() != 0; }
    bool matches(std::wstring_view path) const { return matches(after(begin(), path)); }

private:
    enum class tPart : unsigned char { kCharacter, kAny, kName, kAll, kLevels };
    struct tToken {
        tPart part;
        wchar_t character;
    };

    void reach(tState& state, std::size_t place) const;

    std::vector<tToken> _tokens;
};

}  // namespace lvp::tool
