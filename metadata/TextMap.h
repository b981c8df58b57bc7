#pragma once

#include <cwchar>
#include <functional>
#include <memory>
#include <sparsehash/dense_hash_map>
#include <string_view>
#include <utility>

#include "metadata/MapAllocator.h"

namespace lumivard::platform::data::Metadata {

/// Finds values by a wide text. The map keeps the pointers that it is given and copies no text: a key lives as long as
/// its entry, as a rule inside the value.
///
/// The whole text is hashed. `core::tMurmur2Kernel` takes in only the first quarter of a text, under which thousands of
/// names with one beginning ("item_000001", "item_000002", ...) would fall together; no stored data depends on the
/// order of a walk, so the maps are free to hash better.
///
/// An empty map costs one pointer: most objects are opened and dropped without a look-up.
template <class Value>
class TextMap {
public:
    /// The value under a text, or null. The pointer is good until the map changes.
    const Value* find(const wchar_t* key) const {
        if (!_map) return nullptr;
        const auto found = _map->find(key);
        return found == _map->end() ? nullptr : &found->second;
    }

    /// Adds an entry unless the text has one; false when it has.
    bool insert(const wchar_t* key, Value value) {
        if (!_map) _map = make();
        return _map->insert(std::make_pair(key, std::move(value))).second;
    }

    /// Removes an entry, if it is there.
    void erase(const wchar_t* key) {
        if (_map) _map->erase(key);
    }

    /// Goes back to the state of a new map.
    void clear() { _map.reset(); }

    std::size_t size() const { return _map ? _map->size() : 0; }
    bool empty() const { return size() == 0; }

    /// Calls `visit(key, value)` for each entry, in no particular order. The map must not change meanwhile.
    template <class Visit>
    void each(Visit visit) const {
        if (!_map) return;
        for (const auto& entry : *_map) visit(entry.first, entry.second);
    }

private:
    struct tHash {
        std::size_t operator()(const wchar_t* key) const { return std::hash<std::wstring_view>{}(key); }
    };

    // The two keys that a dense_hash_map reserves. They are told from texts by their address, so that no text is
    // forbidden, not even one that spells the same.
    static constexpr wchar_t kEmptyKey[] = L"$$$$$_____empty_key";
    static constexpr wchar_t kDeletedKey[] = L"$$$$$_____deleted_key";

    struct tEqual {
        bool operator()(const wchar_t* a, const wchar_t* b) const {
            if (a == b) return true;
            if (reserved(a) || reserved(b)) return false;
            return std::wcscmp(a, b) == 0;
        }
        static bool reserved(const wchar_t* key) { return key == kEmptyKey || key == kDeletedKey; }
    };

    using tAllocator = MapAllocator<std::pair<const wchar_t* const, Value>>;
    using tMap = google::dense_hash_map<const wchar_t*, Value, tHash, tEqual, tAllocator>;

    static std::unique_ptr<tMap> make() {
        auto map = std::make_unique<tMap>();
        map->set_empty_key(kEmptyKey);
        map->set_deleted_key(kDeletedKey);
        return map;
    }

    std::unique_ptr<tMap> _map;
};

}  // namespace lumivard::platform::data::Metadata
