#pragma once

#include <tbb/concurrent_hash_map.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "lumivard/platform/core/memory/PooledHeap.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"

namespace lumivard::platform::data::Schema {

class Layout;

/// A set of stores to search, and every layout that was built from them, by name.
///
/// A layout is built without any lock, so two threads may build one at the same time: the first to finish is kept, and
/// the other gets that. Only what is kept counts itself in its table's record, by the thread that built it: the counts
/// of one schema are never written by two threads.
class SchemaLocatorImpl final : public metadata::ISchemaLocator, public core::memory::PooledObject {
public:
    SchemaLocatorImpl() = default;
    ~SchemaLocatorImpl() override;
    SchemaLocatorImpl(const SchemaLocatorImpl&) = delete;
    SchemaLocatorImpl& operator=(const SchemaLocatorImpl&) = delete;

    SharedPtr<metadata::ISchema> resolve(WideString uri) override;
    void push(IDataStore* store) override;
    bool pop(IDataStore* store) override;
    void reset() override;

    /// Appends the URIs of a list, which are joined by ";", to `out`, as they are and empty ones included.
    static void tokenize(const wchar_t* text, std::vector<std::wstring>& out);

    /// The layout of a name that was built before; null when there is none. Touches no store.
    Layout* known(const wchar_t* name) const;

    /// Takes a new layout, and returns the one that its name means from now on: this one, which then holds its table,
    /// unless there was one already, for which this one is dropped. Where it cannot hold the table, the name stays
    /// unknown.
    Layout* keep(std::unique_ptr<Layout> layout);

    /// The stores, in no particular order.
    std::vector<IDataStore*> stores() const;

    /// How stores are told apart: by their addresses. Their hash is that of the first 8 bytes *at* the address, which
    /// all stores of one class share.
    struct _tVoidKernel {
        std::size_t hash(const void* store) const;
        bool equal(const void* a, const void* b) const { return a == b; }
    };

private:
    /// Names by their whole text: see `Metadata::TextMap`.
    struct tNameKernel {
        std::size_t hash(const wchar_t* name) const;
        bool equal(const wchar_t* a, const wchar_t* b) const;
    };

    // With the standard allocator: TBB's own hides from a thread sanitizer what one thread hands to another.
    template <class Key, class Value, class Kernel>
    using tMap = tbb::concurrent_hash_map<Key, Value, Kernel, std::allocator<std::pair<const Key, Value>>>;

    tMap<const wchar_t*, std::unique_ptr<Layout>, tNameKernel> _layouts;  // a key is the text in its layout
    tMap<IDataStore*, bool, _tVoidKernel> _stores;

    // Layouts that could not hold their tables, and that another thread may have been given before.
    std::vector<std::unique_ptr<Layout>> _failed;
    std::mutex _failedMutex;
};

}  // namespace lumivard::platform::data::Schema
