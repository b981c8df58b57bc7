#include <memory>
#include <string>
#include <vector>

#include "container/ContainerImpl.h"
#include "design/Subtree.h"
#include "design/Table.h"
#include "property/PropertyImpl.h"
#include "record/Entity.h"
#include "record/Guard.h"
#include "schema/Finder.h"

// Copies of what is there. They are deep and share nothing with their sources; what names another thing, a schema or a
// link's target, goes on naming it by the same text.

namespace lumivard::platform::data {

using Record::Guard;

namespace {

constexpr unsigned int BADOFF = IDataStore::BADOFF;

/// Where a copy goes: the name behind the last "." and the path before it. Without a "." both are the whole text.
struct tDestination {
    explicit tDestination(const WideString& text) {
        const std::wstring whole(text);
        const std::size_t dot = whole.rfind(L'.');
        dotted = dot != std::wstring::npos;
        path = dotted ? whole.substr(0, dot) : whole;
        name = dotted ? whole.substr(dot + 1) : whole;
    }

    std::wstring path;
    std::wstring name;
    bool dotted;
};

/// Gives a copy, which is attached to nothing yet, its own name.
void putName(IDataStore* store, unsigned int copy, const std::wstring& name) {
    Record::Entity(store, copy, Record::kInPlace)
        .name(reinterpret_cast<const char*>(name.c_str()), Record::textSection(name.c_str()));
}

/// Opens a record that takes in containers as a set: a container or a table; null for any other.
std::unique_ptr<Metadata::Set> openSet(IDataStore* store, unsigned int offset) {
    switch (Record::peek(store, offset)) {
        case Record::kContainer:
            return std::make_unique<Structural::Container>(store, offset, false);
        case Record::kTable:
            return std::make_unique<Design::Table>(store, offset, false);
        default:
            return nullptr;
    }
}

/// Makes a copy of an open item a child of a set, under its own name; false when that is taken.
bool cloneInto(Metadata::Set& set, Metadata::Item& source) {
    if (set.lookup(source.tag()) != BADOFF) return false;
    set.add(source.clone(set.store()));
    return true;
}

}  // namespace

bool ContainerImpl::copy(SharedPtr<structure::IContainer> source) {
    const auto* ours = dynamic_cast<const ContainerImpl*>(source.get());
    if (!ours) return false;
    const Guard guard(store());
    IDataStore* from = ours->store();
    const std::vector<unsigned int> entries = ours->item()->entries();
    Design::Subtree::Copies copies(from, store());
    for (const unsigned int offset : entries) {
        const Record::Entity item(from, offset, Record::kInPlace);
        if (!Record::isChild(item.type())) return false;
        if (_container->lookup(item.name().c_str()) != BADOFF) continue;
        _container->add(copies.add(offset));
    }
    // The object may know of items that the list has lost since.
    return entries.size() == ours->item()->items();
}

bool ContainerImpl::clone(SharedPtr<structure::IContainer> source) {
    const auto* ours = dynamic_cast<const ContainerImpl*>(source.get());
    if (!ours) return false;
    const Guard guard(store());
    return cloneInto(*_container, *ours->item());
}

bool ContainerImpl::clone(SharedPtr<metadata::IProperty> source) {
    const auto* ours = dynamic_cast<const PropertyImpl*>(source.get());
    if (!ours) return false;
    const Guard guard(store());
    return cloneInto(*_container, *ours->item());
}

bool ContainerImpl::clone(WideString source, WideString destination, bool fromRoot) {
    const tDestination to(destination);
    if (to.name.empty()) return false;
    const Guard guard(store());
    const unsigned int found =
        fromRoot ? Schema::Finder(store(), 0, source.value()).offset : _container->lookup(source.value());
    if (found == BADOFF) return false;
    const unsigned int owner = to.dotted ? _container->lookup(to.path.c_str()) : _container->offset();
    if (Record::peek(store(), owner) != Record::kContainer) return false;
    Structural::Container set(store(), owner, false);
    if (set.find(to.name.c_str()) != BADOFF) return false;
    if (!Record::isChild(Record::peek(store(), found))) return false;

    const unsigned int copy = Design::Subtree::clone(store(), found, store());
    putName(store(), copy, to.name);
    set.add(copy);
    if (!to.dotted) _container->update();
    return true;
}

bool ContainerImpl::clone(IDataStore* store, WideString destination) {
    const tDestination to(destination);
    if (!store || to.name.empty()) return false;
    const Guard guard(store);
    if (store->extent() == 0) return false;
    const std::unique_ptr<Metadata::Set> set = openSet(store, Schema::Finder(store, 0, to.path.c_str()).offset);
    if (!set) return false;
    const Guard ownGuard(this->store());
    const unsigned int copy = Design::Subtree::clone(this->store(), _container->offset(), store);
    putName(store, copy, to.name);
    set->add(copy);
    return true;
}

}  // namespace lumivard::platform::data
