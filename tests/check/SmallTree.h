#pragma once

#include <memory>
#include <string>

#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tests/support/StoredRecords.h"
#include "tests/support/TreeHelpers.h"

namespace lumivard::platform::test_support {

/// A store with one record of each kind, in which nothing is wrong, and ways to spoil it:
///
///     root ─ group ─┬─ node ─── leaf
///                   └─ table ─┬─ value
///                             └─ below
struct SmallTree {
    using IDataStore = core::storage::datastore::IDataStore;

    SmallTree() {
        root = tree::root(&store);
        group = tree::addContainer(&store, root, L"group");
        node = tree::addContainer(&store, group, L"node");
        leaf = tree::addContainer(&store, node, L"leaf");
        table = tree::addTable(&store, group, L"table");
        value = tree::add(&store, table, tree::primitive(&store, L"value", data::metadata::kUInt8));
        below = tree::addTable(&store, table, L"below");
        fill();
        list = stored::word(&store, node, stored::kChildren);
        names = stored::word(&store, node, stored::kLocale);
        defaults = stored::word(&store, table, 22);
    }

    void word(unsigned int offset, unsigned int position, unsigned int number) {
        stored::putWord(&store, offset, position, number);
    }
    void byte(unsigned int offset, unsigned int position, unsigned char number) {
        stored::putByte(&store, offset, position, number);
    }
    void put(unsigned int offset, const std::string& bytes) {
        store.update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), true);
    }
    void resize(unsigned int offset, unsigned int size) { put(offset, stored::bytes(&store, offset).substr(0, size)); }
    void grow(unsigned int offset, unsigned int count) {
        put(offset, stored::bytes(&store, offset) + std::string(count, '\0'));
    }

    /// Gives a container those bytes as its name.
    void rename(unsigned int container, const std::string& section) {
        put(container, stored::bytes(&store, container).substr(0, 32) + section);
        word(container, 19, static_cast<unsigned int>(section.size()));
    }

    /// Gives the node those bytes as its localized names.
    void texts(const char* bytes, unsigned int size) {
        put(names, std::string("\5\0\0\0\0\0\0\0", 8) + std::string(bytes, size));
        word(names, 1, size);
    }

    void enlist(unsigned int owner, unsigned int offset) { stored::enlist(&store, owner, offset); }

    /// Adds a new container to an owner, without asking whether the name is free.
    void enlistNew(unsigned int owner, const wchar_t* name) {
        const unsigned int made = tree::container(&store, name);
        word(made, stored::kParent, owner);
        enlist(owner, made);
    }

    std::unique_ptr<IDataStore> owned = stores::memory();
    IDataStore& store = *owned;
    unsigned int root, group, node, leaf, table, value, below;
    unsigned int list;      ///< of the node's children
    unsigned int names;     ///< the node's localized names
    unsigned int defaults;  ///< the table's

private:
    void fill() {
        const unsigned char bytes[] = {1, 0, 0, 0, 2, 0, 0x11, 0, 3, 0, 0, 0};
        data::Design::Primitive(&store, value).set(reinterpret_cast<const char*>(bytes), 0, sizeof(bytes));
        data::Structural::Container(&store, node, false).localize(L"a node", L"en");
        data::Design::Table(&store, table, false).defaults(data::units::kMeter, data::metadata::kDouble);
    }
};

}  // namespace lumivard::platform::test_support
