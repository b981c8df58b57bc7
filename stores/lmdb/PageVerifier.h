#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "lumivard/platform/stores/FileOptions.h"
#include "lumivard/platform/stores/FileReport.h"
#include "stores/lmdb/PageFormat.h"
#include "stores/lmdb/PageReader.h"
#include "stores/lmdb/PageSet.h"
#include "stores/lmdb/Progress.h"

namespace lumivard::platform::stores::lmdb {

/// Measures a store file before anybody maps it: LMDB trusts its pages, and a changed byte in one of them may end the
/// process or give other data in silence.
///
/// It reads and never maps, uses no length, count or page number before it has measured it, visits a page at most once,
/// and so ends in time and memory in proportion to the file's length, whatever the file holds. It goes on after a fault
/// where it can, so that a report tells all. What it finds sound, LMDB reads and writes without harm.
///
/// The file must stand still, or the state that is verified must be pinned by a transaction of LMDB's. One object for
/// one examination. Throws `EngineError` when the disk fails, and `std::bad_alloc`.
class PageVerifier {
public:
    explicit PageVerifier(const PageReader& file);

    /// Reads the two metas and takes the newer one. False when one of them is not sound: nothing else can be said then.
    bool readMetas();

    /// Takes the meta of one transaction instead of the newer one. False when neither is of it any more.
    bool useTransaction(std::uint64_t transaction);

    /// Finds the store's header, and examines the pages on the way there.
    void verifyHeader();

    /// Examines all pages that are in use, the free list, and with `values` the checksum of each stored value.
    /// `progress` hears of each page in use; ended by it, it throws `EngineError`.
    void verifyAll(bool values, const tProgress& progress = {});

    /// What was found so far.
    const FileReport& report() const { return _report; }

private:
    struct Frame {
        std::uint64_t number = 0;
        std::vector<std::byte> bytes;
        std::size_t nodes = 0;
        std::size_t next = 0;
        std::optional<std::uint64_t> from;  // the keys below lie at or above this one
        std::optional<std::uint64_t> to;    // and below this one
    };
    struct Leaf {
        std::uint64_t page;
        std::uint64_t key;
        page::Node node;
        std::uint64_t position;  // of the value in the file, in bytes
    };
    using Visit = std::function<void(const Leaf&)>;

    void _fault(const char* code, const std::string& text, std::uint64_t page);
    std::uint64_t _position(std::uint64_t page) const { return page * _meta.pageSize(); }

    bool _soundMeta(const page::Meta& meta, std::uint64_t index);
    void _take(const page::Meta& meta);
    bool _soundTrees() const;
    void _findHeader();
    bool _isOfItsTransaction() const;
    bool _isOlderOneSound() const;

    void _walk(const page::Tree& tree, bool lastOnly, const Visit& visit);
    bool _open(Frame& frame, bool leaf);
    bool _soundNodes(Frame& frame, bool leaf);
    std::uint64_t _soundLength(const Frame& frame, std::size_t index, bool leaf) const;
    bool _soundKeys(const Frame& frame, bool leaf) const;
    std::size_t _nodeAt(const Frame& frame, std::size_t index) const;
    std::uint64_t _keyAt(const Frame& frame, std::size_t index) const;
    Frame _below(const Frame& frame, std::size_t index) const;
    void _visitNodes(const Frame& frame, std::size_t first, const Visit& visit);

    bool _use(std::uint64_t number, std::uint64_t count);
    void _goOn() const { goOn(_progress, _used.size(), _meta.lastPage + 1); }
    bool _soundOverflow(const Leaf& leaf, std::uint64_t first);

    void _record(const Leaf& leaf, bool values);
    void _header(const Leaf& leaf);
    void _checksum(const Leaf& leaf);
    void _freeList(const Leaf& leaf);
    void _freePages();

    const PageReader _file;
    FileReport _report;
    std::array<page::Meta, 2> _metas;
    page::Meta _meta;
    std::uint64_t _filePages = 0;
    bool _marks = false;  // each page that is used; not on the one way down to the header
    PageSet _used;
    tProgress _progress;
    std::vector<std::uint64_t> _free;
    bool _headerSeen = false;
    std::uint64_t _extent = 0;
    std::uint64_t _transaction = 0;  // that the header names
    std::uint64_t _highest = 0;      // one more than the largest key of a record
};

}  // namespace lumivard::platform::stores::lmdb
