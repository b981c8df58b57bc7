#include "lumivard/platform/data.h"
#include "tools/Commands.h"
#include "tools/Files.h"
#include "tools/Items.h"
#include "tools/Text.h"

namespace lvp::tool {

using namespace lumivard::platform::data;

namespace {

constexpr unsigned char kInherited = 0x02;

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
    throw Failure(kCannotOpen, printable(cause));
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

/// A name that no item of a container has.
std::string freeName(IContainer& container) {
    std::string name = "copy";
    while (container.has(wide(name))) name += "_";
    return name;
}

/// Copies a property into another store. On the way it keeps its name, so it goes by a group of its own, where no name
/// is taken, and gets the new one from there.
void copyAcross(const SharedPtr<IProperty>& property, IContainer& owner, const std::string& name) {
    const std::string passage = freeName(owner);
    owner.create(IContainer::kGroup, wide(passage), nullptr)->clone(property);
    owner.clone(wide(passage + "." + property->tag().string()), wide(name), false);
    owner.destroy(wide(passage));
}

void copy(const tPlace& from, const tPlace& to) {
    const auto owner = openDestination(to);
    if (from.store == to.store) {
        if (!owner->clone(wide(from.path.whole), wide(to.path.name), true)) refuseSource(from);
    } else if (const auto container = containerAt(*from.store, from.path.whole)) {
        container->clone(to.store, wide(to.path.whole));
    } else if (const auto property = propertyAt(*from.store, from.path.whole)) {
        copyAcross(property, *owner, to.path.name);
    } else {
        refuseSource(from);
    }
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
    if (from.path.owner.empty()) refuse(path + " stands at the top of the store, which nothing can leave");
    if (from.store == to.store && (to.path.whole + ".").rfind(path + ".", 0) == 0) {
        refuse(path + " cannot move to " + to.path.whole + ", which is its own place or below it");
    }
    const auto property = propertyAt(*from.store, path);
    if (!property && !containerAt(*from.store, path)) refuseSource(from);
    if (property && (property->flags() & kInherited)) {
        refuse(path + " came from a schema and stays where it is: copy it instead");
    }
}

}  // namespace

tExitStatus copyItem(const std::string& storeName, const std::string& path, const std::string& destination,
                     const std::string& target) {
    const auto source = target.empty() ? openToWrite(storeName) : openToRead(storeName);
    const auto other = target.empty() ? nullptr : openToWrite(target);
    const tPlace from{source.get(), storeName, tPath(path)};
    const tPlace to{other ? other.get() : source.get(), other ? target : storeName, tPath(destination)};
    requireSetUp(*from.store, from.storeName);
    requireSetUp(*to.store, to.storeName);
    copy(from, to);
    to.store->flush();
    return kDone;
}

tExitStatus moveItem(const std::string& storeName, const std::string& path, const std::string& destination,
                     const std::string& target) {
    const auto source = openToWrite(storeName);
    const auto other = target.empty() ? nullptr : openToWrite(target);
    const tPlace from{source.get(), storeName, tPath(path)};
    const tPlace to{other ? other.get() : source.get(), other ? target : storeName, tPath(destination)};
    requireSetUp(*from.store, from.storeName);
    requireSetUp(*to.store, to.storeName);
    requireMovable(from, to);
    copy(from, to);
    if (!destroy(*from.store, from.path)) {
        destroy(*to.store, to.path);
        throw Failure(kCannotFinish, printable(path + " in the store " + storeName + " cannot be taken away"));
    }
    // The new place first: whatever happens in between, the item is in one of them.
    to.store->flush();
    from.store->flush();
    return kDone;
}

}  // namespace lvp::tool
