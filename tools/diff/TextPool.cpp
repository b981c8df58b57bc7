#include "tools/diff/TextPool.h"

#include <algorithm>
#include <cstring>
#include <random>

#include "tools/diff/Mix.h"

namespace lvp::tool {

namespace {

constexpr std::size_t kBlock = 16'384;  // characters

std::uint64_t randomNumber() {
    std::random_device device;
    return (std::uint64_t{device()} << 32) | device();
}

}  // namespace

TextPool::TextPool() : _seed(randomNumber()), _ids(0, tHash{_seed}) {
    add({});
}

TextPool::tId TextPool::add(std::wstring_view text) {
    const auto known = _ids.find(text);
    if (known != _ids.end()) return known->second;
    const auto id = static_cast<tId>(_texts.size());
    _texts.push_back(keep(text));
    _ids.emplace(_texts.back(), id);
    return id;
}

std::wstring_view TextPool::keep(std::wstring_view text) {
    if (text.size() > _left) {
        const std::size_t size = std::max(text.size(), kBlock);
        _blocks.push_back(std::make_unique<wchar_t[]>(size));
        _free = _blocks.back().get();
        _left = size;
    }
    if (!text.empty()) std::memcpy(_free, text.data(), text.size() * sizeof(wchar_t));
    const std::wstring_view kept(_free, text.size());
    _free += text.size();
    _left -= text.size();
    return kept;
}

std::size_t TextPool::tHash::operator()(std::wstring_view text) const {
    return mixed(seed, reinterpret_cast<const char*>(text.data()), text.size() * sizeof(wchar_t));
}

}  // namespace lvp::tool
