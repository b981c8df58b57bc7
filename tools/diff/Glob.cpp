#include "tools/diff/Glob.h"

namespace lvp::tool {

Glob::Glob(std::wstring_view pattern) {
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool levelBegins = i == 0 || pattern[i - 1] == L'.';
        if (pattern.substr(i, 3) == L"**." && levelBegins) {
            _tokens.push_back({tPart::kLevels, 0});
            i += 2;
        } else if (pattern.substr(i, 2) == L"**") {
            _tokens.push_back({tPart::kAll, 0});
            ++i;
        } else if (pattern[i] == L'*') {
            _tokens.push_back({tPart::kName, 0});
        } else if (pattern[i] == L'?') {
            _tokens.push_back({tPart::kAny, 0});
        } else {
            if (pattern[i] == L'\\' && i + 1 < pattern.size()) ++i;
            _tokens.push_back({tPart::kCharacter, pattern[i]});
        }
    }
}

Glob::tState Glob::begin() const {
    tState state(_tokens.size() + 1);
    reach(state, 0);
    return state;
}

/// A place is reached, and those behind it as far as what lies between may be nothing.
void Glob::reach(tState& state, std::size_t place) const {
    while (state[place] = 1, place < _tokens.size()) {
        const tPart part = _tokens[place].part;
        if (part == tPart::kCharacter || part == tPart::kAny) return;
        ++place;
    }
}

Glob::tState Glob::after(const tState& state, std::wstring_view characters) const {
    tState now = state;
    tState next;
    for (const wchar_t character : characters) {
        next.assign(now.size(), 0);
        for (std::size_t i = 0; i < _tokens.size(); ++i) {
            if (!now[i]) continue;
            switch (_tokens[i].part) {
                case tPart::kCharacter:
                    if (character == _tokens[i].character) reach(next, i + 1);
                    break;
                case tPart::kAny:
                    if (character != L'.') reach(next, i + 1);
                    break;
                case tPart::kName:
                    if (character != L'.') reach(next, i);
                    break;
                case tPart::kAll:
                    reach(next, i);
                    break;
                case tPart::kLevels:
                    next[i] = 1;  // within a level, which has to come to its end
                    if (character == L'.') reach(next, i + 1);
            }
        }
        now.swap(next);
    }
    return now;
}

}  // namespace lvp::tool
