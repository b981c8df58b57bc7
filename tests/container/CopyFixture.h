#pragma once

#include <algorithm>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/support/ClientFixture.h"
#include "tests/support/RecordHelpers.h"

namespace lumivard::platform::test_support {

/// All records of a store by their offsets, and its extent at the end: two of these are equal when nothing was written
/// in between.
inline std::map<unsigned int, std::string> contents(IDataStore* store) {
    std::map<unsigned int, std::string> records;
    const auto extent = static_cast<unsigned int>(store->extent());
    for (unsigned int offset = 0; offset <= extent; ++offset) {
        const std::string bytes = stored::bytes(store, offset);
        if (!bytes.empty()) records[offset] = bytes;
    }
    records[stored::BADOFF] = std::to_string(extent);
    return records;
}

/// The children of an entity; a primitive has none.
inline std::vector<unsigned int> childrenOf(IDataStore* store, unsigned int offset) {
    return stored::byte(store, offset, 0) == 1 ? std::vector<unsigned int>() : stored::children(store, offset);
}

/// The name of a primitive, a table or a container, with its terminator, as it lies in the record.
inline std::string storedName(IDataStore* store, unsigned int offset) {
    const std::string bytes = stored::bytes(store, offset);
    switch (bytes.at(0)) {
        case 1:
            return bytes.substr(44 + stored::word(store, offset, 26), stored::word(store, offset, 30));
        case 2:
            return bytes.substr(36, stored::word(store, offset, 26));
        default:
            return bytes.substr(32, stored::word(store, offset, 19));
    }
}

/// The offset of what is at a path from the top of a store; `BADOFF` when there is nothing.
inline unsigned int offsetOf(IDataStore* store, const std::wstring& path) {
    unsigned int offset = 0;
    std::wistringstream names(path);
    for (std::wstring name; std::getline(names, name, L'.');) {
        const std::vector<unsigned int> children = childrenOf(store, offset);
        const auto found = std::find_if(children.begin(), children.end(), [&](unsigned int child) {
            return storedName(store, child) == wide(name.c_str());
        });
        if (found == children.end()) return stored::BADOFF;
        offset = *found;
    }
    return offset;
}

/// All that a record and those below it hold, in order, without what tells where they stand and who has them open. Two
/// subtrees with the same picture have the same content.
inline std::string picture(IDataStore* store, unsigned int offset) {
    constexpr unsigned int kDefaults = 22;
    std::string bytes = stored::bytes(store, offset);
    const auto kind = bytes.at(0);
    std::string lists = " locale " + hex(store, stored::word(store, offset, stored::kLocale));
    for (const unsigned int field : {stored::kParent, stored::kRefs, stored::kLocale}) bytes.replace(field, 4, "....");
    if (kind != 1) bytes.replace(stored::kChildren, 4, "....");
    if (kind == 2) {
        lists += " defaults " + hex(store, stored::word(store, offset, kDefaults));
        bytes.replace(kDefaults, 4, "....");
    }
    std::string picture = hex(bytes) + lists + " {";
    for (const unsigned int child : childrenOf(store, offset)) picture += "\n" + test_support::picture(store, child);
    return picture + "}";
}

/// An entity and everything below it, parents first.
inline std::vector<unsigned int> subtree(IDataStore* store, unsigned int offset) {
    std::vector<unsigned int> all{offset};
    for (std::size_t i = 0; i < all.size(); ++i) {
        for (const unsigned int child : childrenOf(store, all[i])) all.push_back(child);
    }
    return all;
}

/// Copies are made from the top-level group "from" into the top-level group "to", which stands in either store. The
/// other store begins with records of its own, so that a copy there never has its source's offset.
class CopyingTest : public ClientTest {
protected:
    CopyingTest() {
        IContainerFrontEnd::toplevel(other(), L"first")->create(L"number", metadata::kInt32);
        for (IDataStore* each : {store(), other()}) IContainerFrontEnd::toplevel(each, L"to");
        IContainerFrontEnd::toplevel(store(), L"from");
    }

    /// The two groups, as new objects at each call.
    SharedPtr<IContainer> from() { return find(L"from"); }
    SharedPtr<IContainer> to() { return find(L"to"); }
    SharedPtr<IContainer> otherTo() { return IContainerFrontEnd::find(other(), L"to"); }

    /// A new primitive with one value.
    static void addNumber(IContainer& owner, const wchar_t* name, int value = 1) {
        owner.create(name, metadata::kInt32)->set(&value, 0, 1);
    }

    /// The value of such a primitive; -1 when there is none.
    static int number(IContainer& owner, const wchar_t* path) {
        const auto property = owner.property(path);
        if (!property) return -1;
        const auto all = values<int>(asPrimitive(property));
        return all.size() == 1 ? all[0] : -1;
    }

    static SharedPtr<IContainer> addGroup(IContainer& owner, const wchar_t* name) {
        return owner.create(IContainer::kGroup, name, kNoSchema);
    }

    /// The names of all children: first the containers, then the properties, each in their order.
    static tNames children(IContainer& owner) {
        tNames all = names(*owner.containers());
        for (const std::wstring& name : names(*owner.properties())) all.push_back(name);
        return all;
    }
};

}  // namespace lumivard::platform::test_support
