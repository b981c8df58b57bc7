#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tools/Commands.h"
#include "tools/Files.h"
#include "tools/Items.h"

namespace lvp::tool {

using namespace lumivard::platform::data;

namespace {

constexpr unsigned char kInherited = 0x02;
constexpr unsigned char kHidden = 0x04;

/// A path, cut before its last name; the owner of an item at the top is empty.
struct tPath {
    explicit tPath(const std::string& path) : whole(path) {
        const std::size_t dot = whole.rfind('.');
        owner = dot == std::string::npos ? std::string() : whole.substr(0, dot);
        name = dot == std::string::npos ? whole : whole.substr(dot + 1);
    }

    std::string whole;
    std::string owner;
    std::string name;
};

/// One side of a transfer.
struct tPlace {
    IDataStore* store;
    std::string storeName;
    tPath path;
};

[[noreturn]] void refuse(const std::string& cause) {
    throw Failure(kCannotOpen, cause);
}

[[noreturn]] void refuseSource(const tPlace& from) {
    refuse("the store " + from.storeName + " holds no container, and no property in one, at the path " +
           from.path.whole);
}

/// The container that takes in the copy, in which its name is free.
SharedPtr<IContainer> openDestination(const tPlace& to) {
    const tPath& path = to.path;
    if (path.owner.empty() || path.name.empty()) {
        refuse("the destination " + path.whole + " names no container to stand in: give CONTAINER.NAME");
    }
    auto owner = containerAt(*to.store, path.owner);
    if (!owner) refuse("the store " + to.storeName + " holds no container at the path " + path.owner);
    if (owner->has(wide(path.name))) {
        refuse("in the store " + to.storeName + ", " + path.owner + " already holds " + path.name);
    }
    return owner;
}

/// Makes what came from a schema a property like any other, and what is below it. Only what a container has from its
/// own schemas is to stay with it.
void release(const SharedPtr<IProperty>& property) {
    std::vector<SharedPtr<IProperty>> waiting{property};
    while (!waiting.empty()) {
        const auto each = waiting.back();
        waiting.pop_back();
        each->off(kInherited | kHidden);
        auto* table = metadata::ITable::to(each.get());
        for (unsigned int i = 0; table && i < table->items(); ++i) {
            if (const auto below = table->at(i)) waiting.push_back(below);
        }
    }
}

/// Copies a property under a new name. The library copies it under its own; so it goes by a group in another store,
/// where no name is taken.
bool copyProperty(const SharedPtr<IProperty>& property, IContainer& owner, const std::string& name) {
    const auto store = lumivard::platform::stores::memory();
    const auto passage = structure::IContainerFrontEnd::toplevel(store.get(), L"passage");
    if (!passage->clone(property)) return false;
    const auto copied = passage->property(property->tag());
    release(copied);
    if (copied->tag().string() != name && !copied->rename(wide(name))) return false;
    return owner.clone(passage->container(WideString())->property(wide(name)));
}

void copy(const tPlace& from, const tPlace& to) {
    const auto owner = openDestination(to);
    bool done = false;
    if (const auto container = containerAt(*from.store, from.path.whole)) {
        done = from.store == to.store ? owner->clone(wide(from.path.whole), wide(to.path.name), true)
                                      : container->clone(to.store, wide(to.path.whole));
    } else if (const auto property = propertyAt(*from.store, from.path.whole)) {
        done = copyProperty(property, *owner, to.path.name);
    } else {
        refuseSource(from);
    }
    if (!done) throw Failure(kCannotFinish, from.path.whole + " in the store " + from.storeName + " cannot be copied");
}

/// Destroys an item in its owner, a container or a table; false when it is in use.
bool destroy(IDataStore& store, const tPath& path) {
    if (const auto container = containerAt(store, path.owner)) return container->destroy(wide(path.name));
    const auto property = propertyAt(store, path.owner);
    auto* table = metadata::ITable::to(property.get());
    return table && table->destroy(wide(path.name));
}

/// Refuses what cannot leave its place.
void requireMovable(const tPlace& from, const tPlace& to) {
    const std::string& path = from.path.whole;
    const auto property = propertyAt(*from.store, path);
    if (!property && !containerAt(*from.store, path)) refuseSource(from);
    const std::string item = path + " in the store " + from.storeName;
    if (from.path.owner.empty()) refuse(item + " stands at the top, which nothing can leave");
    if (from.store == to.store && (to.path.whole + ".").rfind(path + ".", 0) == 0) {
        refuse(item + " cannot move to " + to.path.whole + ", which is its own place or below it");
    }
    if (property && (property->flags() & kInherited)) {
        refuse(item + " came from a schema and stays where it is: copy it instead");
    }
}

/// Opens both places of a transfer, in one store or two, and hands them on.
template <class Work>
tExitStatus transfer(const std::string& storeName, const std::string& path, const std::string& destination,
                     const std::string& target, bool changesSource, Work work) {
    const auto source = changesSource || target.empty() ? openToChange(storeName) : openToRead(storeName);
    const auto other = target.empty() ? nullptr : openToChange(target);
    const tPlace from{source.get(), storeName, tPath(path)};
    const tPlace to{other ? other.get() : source.get(), other ? target : storeName, tPath(destination)};
    requireSetUp(*from.store, from.storeName);
    requireSetUp(*to.store, to.storeName);
    work(from, to);
    return kDone;
}

}  // namespace

tExitStatus copyItem(const std::string& storeName, const std::string& path, const std::string& destination,
                     const std::string& target) {
    return transfer(storeName, path, destination, target, false, [](const tPlace& from, const tPlace& to) {
        copy(from, to);
        to.store->flush();
    });
}

tExitStatus moveItem(const std::string& storeName, const std::string& path, const std::string& destination,
                     const std::string& target) {
    return transfer(storeName, path, destination, target, true, [](const tPlace& from, const tPlace& to) {
        requireMovable(from, to);
        copy(from, to);
        // Between two stores the copy is safe before the item goes: whatever happens, it is in one of them.
        if (from.store != to.store) to.store->flush();
        if (!destroy(*from.store, from.path)) {
            destroy(*to.store, to.path);
            to.store->flush();
            throw Failure(kCannotFinish, from.path.whole + " in the store " + from.storeName + " is in use and stays");
        }
        from.store->flush();
    });
}

}  // namespace lvp::tool
