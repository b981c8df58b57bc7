#include "stores/lmdb/PageVerifier.h"

#include <algorithm>
#include <bit>

#include "stores/core/Checksum.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/HeaderFormat.h"
#include "stores/lmdb/StoredValue.h"

namespace lumivard::platform::stores::lmdb {
namespace {

constexpr std::size_t kMostFaults = 1000;
constexpr std::uint64_t kPiece = 1 << 20;                       // of a long value, read at once
constexpr std::uint64_t kFirstPage = 2;                         // behind the metas
constexpr std::uint64_t kLongestFile = std::uint64_t{1} << 46;  // half of the address space there is for its map

// LMDB counts on, and has its own uses for the numbers at the end.
constexpr std::uint64_t kMostTransactions = std::uint64_t{1} << 63;

std::string text(std::uint64_t number) {
    return std::to_string(number);
}

}  // namespace

PageVerifier::PageVerifier(const PageReader& file) : _file(file) {
    _report.length = _file.length();
}

void PageVerifier::_fault(const char* code, const std::string& what, std::uint64_t page) {
    if (_report.faultCount++ < kMostFaults) _report.faults.push_back({code, what, _position(page)});
}

// --- The metas

bool PageVerifier::readMetas() {
    std::array<std::byte, page::kMetaEnd> bytes{};
    std::uint64_t position = 0;
    for (std::uint64_t index = 0; index < _metas.size(); ++index) {
        if (!_file.read(position, bytes)) {
            _fault("container.length", "it ends before its description of itself", 0);
            return false;
        }
        _metas[index] = page::meta(bytes);
        if (!_soundMeta(_metas[index], index)) {
            _fault("container.meta", "its description of itself makes no sense", 0);
            return false;
        }
        position = _metas[index].pageSize();
    }
    const std::uint64_t first = _metas[0].transaction;
    const std::uint64_t second = _metas[1].transaction;
    if (std::max(first, second) - std::min(first, second) != (first == second ? 0 : 1)) {
        _fault("container.meta", "its two descriptions of itself do not belong together", 0);
        return false;
    }
    _take(_metas[first < second ? 1 : 0]);
    return true;
}

bool PageVerifier::useTransaction(std::uint64_t transaction) {
    const auto found = std::find_if(_metas.begin(), _metas.end(),
                                    [&](const page::Meta& meta) { return meta.transaction == transaction; });
    if (found == _metas.end()) return false;
    _take(*found);
    return true;
}

void PageVerifier::_take(const page::Meta& meta) {
    _meta = meta;
    _filePages = _report.length / meta.pageSize();
    _report.pageSize = meta.pageSize();
    _report.pages = meta.lastPage + 1;
}

// LMDB finds the meta of a transaction by whether its number is odd.
bool PageVerifier::_soundMeta(const page::Meta& meta, std::uint64_t index) {
    const std::uint32_t size = meta.pageSize();
    return meta.page == index && meta.flags == page::kMeta && meta.magic == page::kMagic &&
           meta.version == page::kVersion && std::has_single_bit(size) && size >= page::kSmallest &&
           size <= page::kLargest && size == (index == 0 ? size : _metas[0].pageSize()) &&
           (meta.transaction == 0 || meta.transaction % 2 == index) && meta.transaction < kMostTransactions &&
           meta.lastPage >= kFirstPage - 1 && meta.lastPage < kLongestFile / size;
}

// --- The header alone

void PageVerifier::verifyHeader() {
    if (_meta.records.flags != page::kIntegerKeys) return _fault("container.header", header::kMissing, _meta.page);
    if (!_soundTrees())
        return _fault("container.meta", "it describes its trees in a way that makes no sense", _meta.page);
    _findHeader();
    if (_report.faultCount != 0) return;
    if (!_headerSeen) return _fault("container.header", header::kMissing, 0);
    if (!_isOfItsTransaction() || !_isOlderOneSound()) {
        _fault("container.meta", "its description of itself is not that of its newest state", _meta.page);
    }
}

bool PageVerifier::_soundTrees() const {
    const auto sound = [](const page::Tree& tree) { return (tree.depth == 0) == (tree.root == page::kNone); };
    return sound(_meta.records) && _meta.records.pad == 0 && sound(_meta.free) &&
           (_meta.free.flags & ~page::kOneFile) == page::kIntegerKeys;
}

void PageVerifier::_findHeader() {
    _walk(_meta.records, true, [&](const Leaf& leaf) {
        if (leaf.key == header::kKey) _header(leaf);
    });
}

bool PageVerifier::_isOfItsTransaction() const {
    return _report.format == header::kOldestFormat || _transaction == _meta.transaction;
}

// The meta that was not taken may be the newest one, with a number that was damaged: its header tells. The state that
// it describes is still there, but nobody needs it, so that nothing else about it is a fault.
bool PageVerifier::_isOlderOneSound() const {
    PageVerifier older(_file);
    older._take(_metas[1 - _meta.page]);
    if (older._meta.transaction == 0 || !older._soundTrees()) return true;
    older._findHeader();
    return older._report.faultCount != 0 || !older._headerSeen || older._isOfItsTransaction();
}

// Nobody else's database is laid out like ours, but it may have any keys, values and lengths.
void PageVerifier::_header(const Leaf& leaf) {
    _headerSeen = true;
    std::array<std::byte, header::kLongest> bytes{};
    const auto value = std::span(bytes).first(std::min<std::size_t>(bytes.size(), leaf.node.size));
    if (!_file.read(leaf.position, value)) {
        _fault("container.length", "it ends before its header", leaf.page);
        return;
    }
    try {
        const header::Stored stored = header::decode(value, leaf.node.size);
        _report.format = stored.format;
        _extent = stored.header.extent;
        _transaction = stored.transaction;
    } catch (const EngineError& error) {
        _fault("container.header", error.what(), leaf.page);
    }
}

// --- All of it

void PageVerifier::verifyAll(bool values, const tProgress& progress) {
    _progress = progress;
    verifyHeader();
    if (_report.faultCount != 0) return;
    _marks = true;
    _walk(_meta.records, false, [&](const Leaf& leaf) { _record(leaf, values); });
    if (_highest > _extent) {
        _fault("container.header",
               "a record stands at offset " + text(_highest - 1) + ", but only " + text(_extent) +
                   " offsets were handed out",
               _meta.page);
    }
    _walk(_meta.free, false, [&](const Leaf& leaf) { _freeList(leaf); });
    _freePages();
}

void PageVerifier::_record(const Leaf& leaf, bool values) {
    if (leaf.key == header::kKey) return;
    if (leaf.key > header::kKey - 2) {
        _fault("container.order",
               "page " + text(leaf.page) + " holds the key " + text(leaf.key) + ", which no record has", leaf.page);
        return;
    }
    _highest = std::max(_highest, leaf.key + 1);
    ++_report.records;
    if (values) _checksum(leaf);
}

void PageVerifier::_checksum(const Leaf& leaf) {
    const std::size_t trailer = storedValue::trailer(_report.format);
    if (trailer == 0) return;
    bool sound = leaf.node.size >= trailer;
    std::uint32_t sum = storedValue::checksum(leaf.key, {});
    std::uint64_t position = leaf.position;
    std::uint64_t left = sound ? leaf.node.size - trailer : 0;
    std::vector<std::byte> piece;
    for (; sound && left != 0; left -= piece.size(), position += piece.size()) {
        _goOn();  // a value may be long
        piece.resize(static_cast<std::size_t>(std::min(left, kPiece)));
        sound = _file.read(position, piece);
        sum = crc32c(piece, sum);
    }
    std::uint32_t stored = 0;
    sound = sound && _file.read(position, std::as_writable_bytes(std::span(&stored, 1))) && stored == sum;
    if (!sound) _fault("container.checksum", "record " + text(leaf.key) + " is not as it was written", leaf.page);
}

// --- Free pages

// A list of pages that a transaction has freed: u64 how many, then their numbers, falling. The value may be longer.
void PageVerifier::_freeList(const Leaf& leaf) {
    const auto wrong = [&](const std::string& what) {
        _fault("container.free", "the list of pages that transaction " + text(leaf.key) + " has freed " + what,
               leaf.page);
    };
    std::vector<std::uint64_t> list(leaf.node.size / sizeof(std::uint64_t));
    if (list.empty() || leaf.node.size % sizeof(std::uint64_t) != 0) return wrong("has an odd length");
    if (leaf.key == 0 || leaf.key > _meta.transaction) return wrong("is of no transaction that there was");
    if (!_file.read(leaf.position, std::as_writable_bytes(std::span(list)))) return wrong("lies behind the file's end");
    const std::uint64_t count = list.front();
    if (count > list.size() - 1) return wrong("is shorter than it says");
    std::uint64_t before = _meta.lastPage + 1;
    for (const std::uint64_t number : std::span(list).subspan(1, static_cast<std::size_t>(count))) {
        if (number >= before || number < kFirstPage) return wrong("names page " + text(number) + " out of order");
        _free.push_back(before = number);
    }
}

// Each page is in use or free, and that once. So all that lie behind the end of the file are free.
void PageVerifier::_freePages() {
    std::sort(_free.begin(), _free.end());
    if (const auto twice = std::adjacent_find(_free.begin(), _free.end()); twice != _free.end()) {
        _fault("container.free", "page " + text(*twice) + " is free twice", *twice);
    }
    for (const std::uint64_t number : _free) {
        if (_used.contains(number)) {
            _fault("container.free", "page " + text(number) + " is in use and free", number);
        }
    }
    _report.freePages = _free.size();
    const std::uint64_t known = kFirstPage + _used.size() + _free.size();
    if (_report.faultCount == 0 && known != _meta.lastPage + 1) {
        _fault("container.free", text(_meta.lastPage + 1 - known) + " pages are neither in use nor free", _meta.page);
    }
}

}  // namespace lumivard::platform::stores::lmdb
