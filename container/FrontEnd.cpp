#include "container/Facades.h"
#include "lumivard/platform/core/thread/Mutex.h"
#include "lumivard/platform/data/structure/IContainerFrontEnd.h"
#include "metadata/Root.h"
#include "record/Guard.h"
#include "record/Root.h"
#include "schema/Finder.h"

namespace lumivard::platform::data::structure {

using Record::Guard;

namespace {

constexpr unsigned int kTop = 0;
constexpr const wchar_t* kRootName = L"root";
constexpr const wchar_t* kDefaultName = L"default";
constexpr unsigned int kFreshVersion = 1;

/// Makes the look at an empty store and its setting-up one step, across all stores of the process. Taken before the
/// store's guard, here and nowhere else.
core::thread::Mutex _kMutex;

void setUp(IDataStore* store) {
    if (store->extent() != 0) return;
    const Record::Root root(store, kRootName);
    store->version(kFreshVersion);
}

/// Whether the record at the top can hold children: a root, or the container or table of a document that had no root.
bool standsOnTop(IDataStore* store) {
    const Record::Entity top(store, kTop, Record::kInPlace);
    switch (top.type()) {
        case Record::kRoot:
            return top.size() >= Record::Root::kName;
        case Record::kTable:
        case Record::kContainer:
            return top.size() >= Record::Entity::kChildren + sizeof(unsigned int);
        default:
            return false;
    }
}

unsigned int firstContainer(IDataStore* store, const Metadata::Root& root) {
    for (const unsigned int offset : root.entries()) {
        if (Record::peek(store, offset) == Record::kContainer) return offset;
    }
    return IDataStore::BADOFF;
}

}  // namespace

int IContainerFrontEnd::version() {
    return 1;
}

SharedPtr<IContainer> IContainerFrontEnd::toplevel(IDataStore* store, WideString name) {
    const core::thread::Mutex::ScopedLock mutex(_kMutex);
    const Guard guard(store);
    setUp(store);
    if (!standsOnTop(store)) return {};

    Metadata::Root root(store, kTop);
    const wchar_t* wanted = name.value();
    const unsigned int found = wanted ? root.find(wanted) : firstContainer(store, root);
    if (found != IDataStore::BADOFF) {
        return Record::peek(store, found) == Record::kContainer ? openPlain(store, found) : SharedPtr<IContainer>();
    }
    const wchar_t* called = wanted ? wanted : kDefaultName;
    if (root.find(called) != IDataStore::BADOFF) return {};
    return makePlainGroup(root, called);
}

SharedPtr<IContainer> IContainerFrontEnd::find(IDataStore* store, WideString name) {
    const core::thread::Mutex::ScopedLock mutex(_kMutex);
    const Guard guard(store);
    if (store->extent() == 0 || !standsOnTop(store)) return {};
    const unsigned int offset = Schema::Finder(store, kTop, name.value()).offset;
    if (Record::peek(store, offset) != Record::kContainer) return {};
    return openPlain(store, offset);
}

}  // namespace lumivard::platform::data::structure
