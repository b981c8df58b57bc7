#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::data::Check {

using core::storage::datastore::IDataStore;

/// What is to be changed in which record. Nothing happens before `applyTo`.
class Edits {
public:
    /// Fields of an entity: the count to 0, the owner to another, a reference to none.
    void refs(unsigned int offset) { _edits[offset].refs = true; }
    void parent(unsigned int offset, unsigned int owner) { _edits[offset].parent = owner; }
    void children(unsigned int offset) { _edits[offset].children = true; }
    void locale(unsigned int offset) { _edits[offset].locale = true; }
    void defaults(unsigned int offset) { _edits[offset].defaults = true; }

    /// The name of an item.
    void rename(unsigned int offset, std::wstring name) { _edits[offset].name = std::move(name); }

    /// Takes an entry out of a list; entries are named in ascending order. `cut` takes out what follows the last whole
    /// one.
    void drop(unsigned int list, std::size_t index) { _edits[list].dropped.push_back(index); }
    void cut(unsigned int list) { _edits[list].cut = true; }

    /// Whether a set loses its list.
    bool losesChildren(unsigned int offset) const {
        const auto edit = _edits.find(offset);
        return edit != _edits.end() && edit->second.children;
    }

    /// Changes the records in a store.
    void applyTo(IDataStore& store) const;

    /// Whether there is anything to be changed.
    bool empty() const { return _edits.empty(); }

private:
    struct tEdit {
        bool refs = false;
        bool children = false;
        bool locale = false;
        bool defaults = false;
        bool cut = false;
        std::optional<unsigned int> parent;
        std::optional<std::wstring> name;
        std::vector<std::size_t> dropped;

        bool ofAnEntity() const { return refs || children || locale || parent; }
        bool ofAList() const { return cut || !dropped.empty(); }
    };

    static void changeEntity(IDataStore& store, unsigned int offset, const tEdit& edit);
    static void changeList(IDataStore& store, unsigned int offset, const tEdit& edit);

    std::map<unsigned int, tEdit> _edits;
};

}  // namespace lumivard::platform::data::Check
