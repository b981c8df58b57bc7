#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace lvp::tool {

/// The texts of both sides, each of them kept once: two are equal when their numbers are. It forgets none.
class TextPool {
public:
    /// The number of a text; that of the empty one is 0. `kNone` is given to no text.
    using tId = std::uint32_t;
    static constexpr tId kNone = 0xFFFFFFFFu;

    TextPool();

    tId add(std::wstring_view text);

    /// The text of a number, as long as the pool lives.
    std::wstring_view operator[](tId id) const { return _texts[id]; }

    /// A number that is another one in each process: for hashes that nobody can foresee.
    std::uint64_t seed() const { return _seed; }

private:
    struct tHash {
        std::uint64_t seed;
        std::size_t operator()(std::wstring_view text) const;
    };

    std::wstring_view keep(std::wstring_view text);

    std::uint64_t _seed;
    std::vector<std::unique_ptr<wchar_t[]>> _blocks;
    std::size_t _left = 0;  ///< characters that are free at the end of the last block
    wchar_t* _free = nullptr;
    std::vector<std::wstring_view> _texts;
    std::unordered_map<std::wstring_view, tId, tHash> _ids;
};

}  // namespace lvp::tool
