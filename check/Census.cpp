#include "check/Census.h"

#include <algorithm>
#include <exception>
#include <new>

namespace lumivard::platform::data::Check {

namespace {

bool before(const tNode& node, unsigned int offset) {
    return node.offset < offset;
}

}  // namespace

void Census::search(IDataStore& store, bool whole) {
    const unsigned long long extent = store.extent();
    _searched = whole || extent <= kSearched;
    _end = _searched ? std::min<unsigned long long>(extent, tNode::BADOFF) : 1;
    for (unsigned long long offset = 0; offset < _end; ++offset) add(store, static_cast<unsigned int>(offset));
}

void Census::add(IDataStore& store, unsigned int offset) {
    tNode node;
    node.offset = offset;
    try {
        node.size = store.size(offset);
        if (node.size == 0) return;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        // Whoever asks again may hear nothing of it, and take the record for an empty one.
        refused(node, error.what());
    }
    _nodes.push_back(node);
}

void Census::refused(tNode& node, const std::string& words) {
    node.readable = false;
    _findings.add(kUnreadable, node.offset, "the store says: " + words);
}

bool Census::meet(IDataStore& store, unsigned int offset) {
    if (offset == tNode::BADOFF || offset < _end) return false;
    if (_met.contains(offset)) return false;
    const std::size_t count = _nodes.size();
    add(store, offset);
    // Offsets where there is nothing are not kept: a damaged list may name as many of them as it has entries.
    if (_nodes.size() == count) return false;
    _met.insert(offset);
    return true;
}

void Census::settle() {
    std::sort(_nodes.begin(), _nodes.end(), [](const tNode& a, const tNode& b) { return a.offset < b.offset; });
    _met = {};
    constexpr unsigned long long kSlack = 1 << 16;
    if (_nodes.empty() || _nodes.back().offset > 8ull * _nodes.size() + kSlack) return;
    _dense.assign(std::size_t{_nodes.back().offset} + 1, kNone);
    for (unsigned int number = 0; number < size(); ++number) _dense[_nodes[number].offset] = number;
}

unsigned int Census::find(unsigned int offset) const {
    if (!_dense.empty()) return offset < _dense.size() ? _dense[offset] : kNone;
    const auto found = std::lower_bound(_nodes.begin(), _nodes.end(), offset, before);
    return found != _nodes.end() && found->offset == offset ? static_cast<unsigned int>(found - _nodes.begin()) : kNone;
}

unsigned int Census::find(unsigned int offset, Record::tType kind) const {
    const unsigned int number = find(offset);
    return number != kNone && _nodes[number].mayBe(kind) ? number : kNone;
}

}  // namespace lumivard::platform::data::Check
