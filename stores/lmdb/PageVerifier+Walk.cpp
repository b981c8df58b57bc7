// How the verifier goes through a tree of pages.
#include <algorithm>
#include <string>

#include "stores/lmdb/PageVerifier.h"

namespace lumivard::platform::stores::lmdb {
namespace {

constexpr std::uint64_t kFirstPage = 2;
constexpr std::size_t kDeepest = 20;  // levels; LMDB's pages hold far more than the two nodes that a branch must have

std::string pageName(std::uint64_t number) {
    return "page " + std::to_string(number);
}

}  // namespace

// Visits the data nodes of a tree in the order of their keys, or the last one alone. The stack is as deep as the tree.
void PageVerifier::_walk(const page::Tree& tree, bool lastOnly, const Visit& visit) {
    if (tree.root == page::kNone) return;
    if (tree.depth > kDeepest) return _fault("container.meta", "it claims a tree of too many levels", _meta.page);
    std::uint64_t entries = 0;
    std::vector<Frame> way(1);
    way.front().number = tree.root;
    if (!_open(way.front(), tree.depth == 1)) return;
    while (!way.empty()) {
        Frame& frame = way.back();
        const bool leaf = way.size() == tree.depth;
        if (frame.next == 0 && lastOnly) frame.next = frame.nodes - 1;
        if (leaf) {
            entries += frame.nodes;
            _visitNodes(frame, frame.next, visit);
        }
        if (leaf || frame.next == frame.nodes) {
            way.pop_back();
            continue;
        }
        Frame below = _below(frame, frame.next++);
        if (_open(below, way.size() + 1 == tree.depth)) way.push_back(std::move(below));
    }
    if (!lastOnly && entries != tree.entries && _report.faultCount == 0) {
        _fault("container.count",
               "a tree has " + std::to_string(entries) + " entries, and says " + std::to_string(tree.entries),
               _meta.page);
    }
}

// The page under a branch's node, between whose key and the next one's its keys must lie.
PageVerifier::Frame PageVerifier::_below(const Frame& frame, std::size_t index) const {
    Frame below;
    below.number = page::node(frame.bytes, _nodeAt(frame, index)).child;
    below.from = index == 0 ? frame.from : _keyAt(frame, index);
    below.to = index + 1 == frame.nodes ? frame.to : _keyAt(frame, index + 1);
    return below;
}

// Reads and measures the page of a frame. False, with the fault noted, when it must not be used.
bool PageVerifier::_open(Frame& frame, bool leaf) {
    if (!_use(frame.number, 1)) return false;
    frame.bytes.resize(_meta.pageSize());
    if (!_file.read(_position(frame.number), frame.bytes)) {
        _fault("container.length", "it ends before " + pageName(frame.number), frame.number);
        return false;
    }
    const auto number = page::number<std::uint64_t>(frame.bytes, 0);
    const auto flags = page::number<std::uint16_t>(frame.bytes, page::kFlagsAt);
    if (number != frame.number || flags != (leaf ? page::kLeaf : page::kBranch)) {
        _fault("container.page", pageName(frame.number) + " is not the page that should be there", frame.number);
        return false;
    }
    if (!_soundNodes(frame, leaf)) {
        _fault("container.page", pageName(frame.number) + " is laid out wrong", frame.number);
        return false;
    }
    if (!_soundKeys(frame, leaf)) {
        _fault("container.order", pageName(frame.number) + " has keys that are out of order", frame.number);
        return false;
    }
    return true;
}

// Notes that pages are used. False, with the fault noted, where they are none or in use already.
bool PageVerifier::_use(std::uint64_t number, std::uint64_t count) {
    if (number < kFirstPage || number > _meta.lastPage || count > _meta.lastPage + 1 - number) {
        _fault("container.page", "something refers to " + pageName(number) + ", which there is not", _meta.page);
        return false;
    }
    if (number >= _filePages || count > _filePages - number) {
        _fault("container.length", "it ends before " + pageName(number + count - 1), number);
        return false;
    }
    if (!_marks) return true;
    if (_used.insert(number, count)) {
        _goOn();
        return true;
    }
    _fault("container.shared", pageName(number) + " is in use twice", number);
    return false;
}

std::size_t PageVerifier::_nodeAt(const Frame& frame, std::size_t index) const {
    return page::number<std::uint16_t>(frame.bytes, page::kHeader + index * page::kPointer);
}

std::uint64_t PageVerifier::_keyAt(const Frame& frame, std::size_t index) const {
    return page::number<std::uint64_t>(frame.bytes, _nodeAt(frame, index) + page::kNodeHeader);
}

// Sets how many nodes there are. They must cover what lies behind the free space, each byte once: LMDB reckons with the
// space that `upper` leaves, and splits a page that looks full though it holds two nodes.
bool PageVerifier::_soundNodes(Frame& frame, bool leaf) {
    const std::size_t size = frame.bytes.size();
    const std::size_t lower = page::number<std::uint16_t>(frame.bytes, page::kLowerAt);
    const std::size_t upper = page::number<std::uint16_t>(frame.bytes, page::kUpperAt);
    if (lower < page::kHeader || lower % 2 != 0 || upper % 2 != 0 || lower > upper || upper > size) return false;
    frame.nodes = (lower - page::kHeader) / page::kPointer;
    if (frame.nodes < (leaf ? 1 : 2)) return false;

    std::vector<std::pair<std::size_t, std::size_t>> places;
    places.reserve(frame.nodes);
    for (std::size_t index = 0; index < frame.nodes; ++index) {
        const std::size_t at = _nodeAt(frame, index);
        if (at < upper || at % 2 != 0 || size - std::min(at, size) < page::kNodeHeader) return false;
        const std::uint64_t length = _soundLength(frame, index, leaf);
        if (length == 0 || length > size - at) return false;
        places.emplace_back(at, at + static_cast<std::size_t>(length + length % 2));
    }
    std::sort(places.begin(), places.end());
    std::size_t end = upper;
    for (const auto& [from, to] : places) {
        if (from != end) return false;
        end = to;
    }
    return end == size;
}

// How many bytes a node takes; 0 for one that no store file has. The first key of a branch stands for all that is
// smaller, and need not be there.
std::uint64_t PageVerifier::_soundLength(const Frame& frame, std::size_t index, bool leaf) const {
    const page::Node node = page::node(frame.bytes, _nodeAt(frame, index));
    if (!leaf) {
        const bool sound = node.keySize == page::kKey || (index == 0 && node.keySize == 0);
        return sound ? page::kNodeHeader + node.keySize : 0;
    }
    if (node.keySize != page::kKey) return 0;
    if (node.flags == page::kBigData) return page::kNodeHeader + page::kKey + page::kPageNumber;
    const std::uint64_t length = page::kNodeHeader + page::kKey + std::uint64_t{node.size};
    return node.flags == 0 && length <= page::largestNode(frame.bytes.size()) ? length : 0;
}

bool PageVerifier::_soundKeys(const Frame& frame, bool leaf) const {
    std::optional<std::uint64_t> before;
    for (std::size_t index = leaf ? 0 : 1; index < frame.nodes; ++index) {
        const std::uint64_t key = _keyAt(frame, index);
        if ((before && key <= *before) || (frame.from && key < *frame.from) || (frame.to && key >= *frame.to))
            return false;
        before = key;
    }
    return true;
}

void PageVerifier::_visitNodes(const Frame& frame, std::size_t first, const Visit& visit) {
    for (std::size_t index = first; index < frame.nodes; ++index) {
        const std::size_t at = _nodeAt(frame, index);
        const std::size_t data = at + page::kNodeHeader + page::kKey;
        Leaf leaf{frame.number, _keyAt(frame, index), page::node(frame.bytes, at), _position(frame.number) + data};
        if (leaf.node.flags == page::kBigData) {
            const auto number = page::number<std::uint64_t>(frame.bytes, data);
            if (!_soundOverflow(leaf, number)) continue;
            leaf.position = _position(number) + page::kHeader;
        }
        visit(leaf);
    }
}

// The pages of a value that is too long for its leaf: as many as it needs, or more where a longer one was there before.
bool PageVerifier::_soundOverflow(const Leaf& leaf, std::uint64_t first) {
    std::array<std::byte, page::kHeader> bytes{};
    if (first < kFirstPage || first > _meta.lastPage || !_file.read(_position(first), bytes)) {
        _fault("container.page", "record " + std::to_string(leaf.key) + " refers to " + pageName(first), leaf.page);
        return false;
    }
    const auto count = page::number<std::uint32_t>(bytes, page::kCountAt);
    if (page::number<std::uint64_t>(bytes, 0) != first ||
        page::number<std::uint16_t>(bytes, page::kFlagsAt) != page::kOverflow ||
        count < page::overflowPages(leaf.node.size, _meta.pageSize())) {
        _fault("container.page", pageName(first) + " is not the beginning of a long value", first);
        return false;
    }
    return _use(first, count);
}

}  // namespace lumivard::platform::stores::lmdb
