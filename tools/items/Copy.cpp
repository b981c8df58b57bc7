#include <memory>
#include <optional>

#include "lumivard/platform/data.h"
#include "tools/Verbs.h"
#include "tools/base/ChangedStore.h"
#include "tools/base/Files.h"
#include "tools/base/Kinds.h"
#include "tools/base/WatchedStore.h"
#include "tools/items/CopyStore.h"
#include "tools/items/Items.h"

namespace lvp::tool {

using namespace lumivard::platform::data;

namespace {

/// One side of a transfer.
struct tPlace {
    IDataStore* store;
    std::string storeName;
    tItemPath path;
};

[[noreturn]] void refuse(const std::string& cause) {
    throw Failure(kCannotOpen, cause);
}

[[noreturn]] void refuseSource(const tPlace& from) {
    if (itemAt(*from.store, from.path.whole) == tItem::kNothing) {
        refusePath(*from.store, from.storeName, from.path.whole);
    }
    refuse("the store " + from.storeName + " holds no container, and no property in one, at the path " +
           from.path.whole + ": what stands at the top beside containers cannot be copied");
}

/// The container that takes in the copy, in which its name is free.
SharedPtr<IContainer> openDestination(const tPlace& to) {
    const tItemPath& path = to.path;
    if (path.owner.empty() || path.name.empty()) {
        refuse("the destination " + path.whole + " names no container to stand in: give CONTAINER.NAME");
    }
    auto owner = containerAt(*to.store, path.owner);
    if (!owner && itemAt(*to.store, path.owner) == tItem::kTable) {
        refuse(path.owner + " in the store " + to.storeName + " is a table: cp and mv put items into containers only");
    }
    if (!owner) refuse("the store " + to.storeName + " holds no container at the path " + path.owner);
    if (owner->has(wide(path.name))) {
        refuse("in the store " + to.storeName + ", " + path.owner + " already holds " + path.name);
    }
    return owner;
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

struct tOptions {
    std::string store;
    std::string path;
    std::string destination;
    std::string target;
};

/// Opens both places of a transfer, in one store or two, and hands them on. Where there are two the source is changed
/// too, if the item leaves it.
template <class Work>
tExitStatus transfer(const char* doing, const tOptions& options, bool leaves, Work work) {
    const bool two = !options.target.empty() && !isSameStore(options.store, options.target);
    ChangedStore target(two ? options.target : options.store, false);
    std::optional<ChangedStore> left;
    std::optional<HeldStore> read;
    if (two && leaves) left.emplace(options.store, false);
    if (two && !leaves) read.emplace(openToRead(options.store));
    Watch watch(doing, "steps");
    WatchedStore watchedTarget(*target, watch);
    std::optional<WatchedStore> watchedSource;
    if (two) watchedSource.emplace(left ? **left : **read, watch);
    const tPlace from{two ? &*watchedSource : &watchedTarget, options.store, tItemPath(options.path)};
    const tPlace to{&watchedTarget, two ? options.target : options.store, tItemPath(options.destination)};
    requireSetUp(*from.store, from.storeName);
    requireSetUp(*to.store, to.storeName);
    work(from, to);
    // Between two stores the copy is safe before the item goes: whatever happens, it is in one of them.
    target.keep();
    if (left) left->keep();
    return kDone;
}

tExitStatus copyItem(const tOptions& options) {
    if (!options.path.empty() && !options.destination.empty()) return transfer("cp", options, false, copy);
    if (!options.path.empty()) throw Failure(kWrongUsage, "cp: where the copy goes is missing: give CONTAINER.NAME");
    if (options.target.empty()) throw Failure(kWrongUsage, "cp: give a PATH and its DESTINATION, or a store by --to");
    if (isSameStore(options.store, options.target))
        refuse("the store " + options.store + " cannot be copied onto itself");
    copyStore(options.store, options.target);
    return kDone;
}

tExitStatus moveItem(const tOptions& options) {
    return transfer("mv", options, true, [](const tPlace& from, const tPlace& to) {
        requireMovable(from, to);
        copy(from, to);
        if (!destroyItem(*from.store, from.path)) {
            throw Failure(kCannotFinish, from.path.whole + " in the store " + from.storeName +
                                             " is in use and stays: it was left open by a program that ended early; "
                                             "lvp-data check --repair mends that");
        }
    });
}

}  // namespace

void declareCopy(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("cp", "Copy an item with all that it holds, or a whole store into an empty one",
             "cp materials.lvp Carbon.Graphite Carbon.MyGraphite", [options] { return copyItem(*options); })
        .store(options->store)
        .optionalArgument("PATH", options->path,
                          "Names from the top down, joined by dots; the whole store when left out")
        .optionalArgument("DESTINATION", options->destination, "CONTAINER.NAME: the new place and name")
        .option("--to", options->target, "The store of the destination; the same one when left out");
}

void declareMove(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("mv", "Move an item, with all that it holds", "mv materials.lvp Carbon.MyGraphite Other.MyGraphite",
             [options] { return moveItem(*options); })
        .store(options->store)
        .item(options->path)
        .argument("DESTINATION", options->destination, "CONTAINER.NAME: the new place and name")
        .option("--to", options->target, "The store of the destination; the same one when left out");
}

}  // namespace lvp::tool
