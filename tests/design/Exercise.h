#pragma once

#include <string>
#include <vector>

#include "schema/Finder.h"
#include "tests/support/TreeHelpers.h"

/// Everything that can be done to an item, for records that may hold anything. What comes back is of no account here:
/// it is the sanitizers that judge, and the caller, who looks at what is left.
namespace lumivard::platform::test_support::exercise {

using core::storage::datastore::IDataStore;
using data::Metadata::Item;
using data::Metadata::Set;

inline const wchar_t* const kNames[] = {L"a", L"b", L"", L"a.b", L"a.a.a.b", L"..", L"unknown", nullptr};

inline void read(Item& item) {
    std::wstring text;
    std::wstring locale;
    item.path(text);
    item.flags();
    for (unsigned int i = 0; i <= item.locales(); ++i) item.locale(i, text, locale);
    for (const wchar_t* name : kNames) item.localize(name);
    item.unreferenced();
}

inline void readSet(Set& set) {
    read(set);
    for (const wchar_t* name : kNames) {
        set.find(name);
        set.lookup(name);
        if (name) data::Schema::Finder(set.store(), set.offset(), name);
    }
    for (unsigned int i = 0; i < 4; ++i) set.at(i);
    set.entries();
    set.update();
}

inline void read(data::Design::Primitive& item) {
    read(static_cast<Item&>(item));
    item.units();
    const unsigned int size = item.dimension() * data::Design::Primitive::stride(item.valuetype());
    std::vector<char> values(size);
    item.get(values.data(), 0, item.dimension());
}

inline void read(data::Design::Table& item) {
    readSet(item);
    for (const auto group : item.groups()) {
        item.units(group);
        item.valuetype(group);
    }
}

inline void read(data::Structural::Container& item) {
    readSet(item);
}

inline void read(data::Metadata::Root& item) {
    readSet(item);
}

/// Reads a record as each of the classes, whatever its kind.
inline void readAsEach(IDataStore* store, unsigned int offset) {
    data::Metadata::Root root(store, offset);
    data::Structural::Container container(store, offset, false);
    data::Design::Table table(store, offset, false);
    data::Design::Primitive primitive(store, offset);
    read(root);
    read(container);
    read(table);
    read(primitive);
}

inline void change(Item& item, IDataStore* target) {
    item.show();
    item.localize(L"text", L"en");
    item.localize(nullptr, L"a");
    item.duplicate(target);
    item.clone(target);
}

inline void changeSet(Set& set, IDataStore* target) {
    change(set, target);
    set.duplicate(target, 0);
    set.add(tree::primitive(set.store(), L"added"));
    set.rename(L"a", L"c");
    set.rename(L"added", L"renamed");
    for (const wchar_t* name : {L"b", L"renamed"}) set.remove(name);
}

inline void change(data::Design::Primitive& item, IDataStore* target) {
    change(static_cast<Item&>(item), target);
    item.base(L"T");
    item.valuelocale(L"de");
    item.uri(L"x");
    item.uri(nullptr);
    item.reset(3);
    // In an empty array the element is taken from its own place in the block.
    const std::string block(64, 'v');
    item.set(block.data(), 0, 1);
    item.set(block.data(), 3, 1);
}

inline void change(data::Design::Table& item, IDataStore* target) {
    changeSet(item, target);
    item.defaults(data::units::kMeter, data::metadata::kDouble);
}

inline void change(data::Structural::Container& item, IDataStore* target) {
    changeSet(item, target);
    item.info(L"target");
}

inline void change(data::Metadata::Root& item, IDataStore* target) {
    changeSet(item, target);
}

/// Opens a record as what it says it is and hands it to `use`; does nothing for one that is no item or is not there.
template <class Use>
void asItself(IDataStore* store, unsigned int offset, Use use) {
    if (store->size(offset) == 0) return;
    switch (data::Record::peek(store, offset)) {
        case data::Record::kRoot: {
            data::Metadata::Root item(store, offset);
            return use(item);
        }
        case data::Record::kPrimitive: {
            data::Design::Primitive item(store, offset);
            return use(item);
        }
        case data::Record::kTable: {
            data::Design::Table item(store, offset, false);
            return use(item);
        }
        case data::Record::kContainer: {
            data::Structural::Container item(store, offset, false);
            return use(item);
        }
        default:
            return;
    }
}

}  // namespace lumivard::platform::test_support::exercise
