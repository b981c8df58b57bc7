#include <memory>

#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tools/Verbs.h"
#include "tools/base/ChangedStore.h"
#include "tools/base/Files.h"
#include "tools/base/Kinds.h"
#include "tools/base/Nearest.h"
#include "tools/items/Items.h"
#include "tools/items/Texts.h"
#include "tools/items/Typed.h"
#include "tools/schemas/Schemas.h"

namespace lvp::tool {

using namespace lumivard::platform::data;

namespace {

struct tOptions {
    std::string store;
    std::string path;
    std::string kind;
    std::vector<std::string> words;
    std::string unit;
    std::string target;
    std::string classes;
    std::vector<std::string> schemas;
    std::vector<std::string> texts;
    bool parents = false;
};

/// A kind of item by its name.
struct tMade {
    bool isContainer = false;
    bool isTable = false;
    IContainer::tType type = IContainer::kNode;
    tValue value{};
};

tMade madeKind(const std::string& name) {
    for (const auto type : {IContainer::kNode, IContainer::kGroup, IContainer::kLink}) {
        if (name == nameOf(type)) return {.isContainer = true, .type = type};
    }
    if (name == "table") return {.isTable = true};
    const tValue value = kindNamed(name);
    if (value != tValue{}) return {.value = value};
    std::vector<std::string> kinds{"node", "group", "link", "table"};
    for (unsigned int kind = metadata::kBinary; kind <= metadata::kStruct; ++kind) {
        kinds.emplace_back(nameOf(static_cast<tValue>(kind)));
    }
    const std::vector<std::string> near = nearest(name, kinds, 1);
    throw Failure(kWrongUsage, "there is no kind \"" + name + "\"" + (near.empty() ? "" : ", but " + near.front()) +
                                   ": it is one of " + listed(kinds));
}

/// What is given makes sense for the kind.
void requireFitting(const tOptions& options, const tMade& kind) {
    const bool isSet = kind.isContainer || kind.isTable;
    if (isSet && (!options.words.empty() || !options.unit.empty())) {
        throw Failure(kWrongUsage, "a " + options.kind + " has no value");
    }
    if (!isSet && !options.classes.empty()) throw Failure(kWrongUsage, "only containers and tables have --class");
    if (!options.target.empty() && (!kind.isContainer || kind.type != IContainer::kLink)) {
        throw Failure(kWrongUsage, "only a link has --to");
    }
    if (!options.classes.empty() && options.schemas.empty()) {
        throw Failure(kWrongUsage, "give the --schemas in which " + options.classes + " is found");
    }
}

[[noreturn]] void refuseName(const tOptions& options) {
    throw Failure(kCannotOpen, "in the store " + options.store + ", " + options.path + " is there already");
}

/// A container at the top, which is a group: no operation makes another one there.
void makeTop(IDataStore& store, const tOptions& options, const tMade& kind) {
    if (itemAt(store, options.path) != tItem::kNothing) refuseName(options);
    if (!kind.isContainer || kind.type != IContainer::kGroup || !options.classes.empty()) {
        throw Failure(kWrongUsage, "at the top of a store only a group without schemas can be made: " + options.path +
                                       " names no container to stand in");
    }
    structure::IContainerFrontEnd::toplevel(&store, wide(options.path));
}

/// The primitive goes by a table in another store: only tables make one with a unit.
bool makeValue(IContainer& owner, const tOptions& options, const tMade& kind) {
    const tTyped value = typedValue(kind.value, options.words, options.unit);
    const auto store = lumivard::platform::stores::memory();
    const auto table = structure::IContainerFrontEnd::toplevel(store.get(), L"passage")->create(L"table", nullptr);
    const auto made = table->create(wide(tItemPath(options.path).name), kind.value, value.unit);
    if (!made || !put(*made, value)) throw Failure(kCannotFinish, "the value is too long");
    return owner.clone(table->lookup(wide(tItemPath(options.path).name)));
}

bool makeValue(metadata::ITable& owner, const tOptions& options, const tMade& kind) {
    const tTyped value = typedValue(kind.value, options.words, options.unit);
    const auto made = owner.create(wide(tItemPath(options.path).name), kind.value, value.unit);
    if (made && !put(*made, value)) throw Failure(kCannotFinish, "the value is too long");
    return static_cast<bool>(made);
}

bool makeIn(IContainer& owner, const tOptions& options, const tMade& kind, ISchema* schema) {
    const WideString name = wide(tItemPath(options.path).name);
    if (!kind.isContainer) {
        return kind.isTable ? static_cast<bool>(owner.create(name, schema)) : makeValue(owner, options, kind);
    }
    const auto made = owner.create(kind.type, name, schema);
    if (made && !options.target.empty()) structure::ILink::to(made.get())->target(wide(options.target));
    return static_cast<bool>(made);
}

bool makeIn(metadata::ITable& owner, const tOptions& options, const tMade& kind, ISchema* schema) {
    if (kind.isContainer) throw Failure(kWrongUsage, "a table holds no " + options.kind);
    if (kind.isTable) return static_cast<bool>(owner.create(wide(tItemPath(options.path).name), schema));
    return makeValue(owner, options, kind);
}

/// Makes the groups that are missing on the way to an item.
void makeParents(IDataStore& store, const std::string& owner) {
    for (std::size_t end = owner.find('.'); !owner.empty(); end = owner.find('.', end + 1)) {
        const tItemPath path(owner.substr(0, end));
        if (itemAt(store, path.whole) == tItem::kNothing) {
            if (path.owner.empty()) {
                structure::IContainerFrontEnd::toplevel(&store, wide(path.name));
            } else if (const auto above = containerAt(store, path.owner)) {
                above->create(IContainer::kGroup, wide(path.name), nullptr);
            }
        }
        if (end == std::string::npos) return;
    }
}

void makeBelow(IDataStore& store, const tOptions& options, const tMade& kind, ISchema* schema) {
    const tItemPath path(options.path);
    if (path.name.empty()) throw Failure(kWrongUsage, "the path " + options.path + " ends without a name");
    if (options.parents) makeParents(store, path.owner);
    if (itemAt(store, path.whole) != tItem::kNothing) refuseName(options);
    bool made = false;
    if (const auto container = containerAt(store, path.owner)) {
        made = makeIn(*container, options, kind, schema);
    } else if (const auto property = propertyAt(store, path.owner);
               auto* table = metadata::ITable::to(property.get())) {
        made = makeIn(*table, options, kind, schema);
    } else if (itemAt(store, path.owner) == tItem::kNothing) {
        refusePath(store, options.store, path.owner);
    } else {
        throw Failure(kWrongUsage, path.owner + " in the store " + options.store + " cannot hold items");
    }
    if (!made) refuseName(options);
}

tExitStatus make(const tOptions& options) {
    const tMade kind = madeKind(options.kind);
    requireFitting(options, kind);
    const Schemas schemas(options.schemas);
    SharedPtr<ISchema> schema;
    if (!options.classes.empty()) {
        schemas.resolve(options.classes);  // each of them is there
        schema = schemas.locator()->resolve(wide(options.classes));
    }
    const bool atTop = options.path.find('.') == std::string::npos;
    if (!atTop && !options.parents && !isThere(options.store)) {
        throw Failure(kCannotOpen, "there is no store " + options.store +
                                       ": with -p it is made, with the groups on the "
                                       "way to " +
                                       options.path);
    }
    ChangedStore store(options.store, atTop || options.parents);
    if (atTop) {
        makeTop(*store, options, kind);
    } else {
        makeBelow(*store, options, kind, schema.get());
    }
    setTexts(*store, options.store, options.path, options.texts);
    store.keep();
    return kDone;
}

}  // namespace

void declareMake(CommandLine& line) {
    const auto options = std::make_shared<tOptions>();
    line.add("mk", "Make a container, a table or a value; the store too, where there is none",
             "mk materials.lvp Carbon.Graphite.Length double 2.5 Meter", [options] { return make(*options); })
        .store(options->store)
        .item(options->path)
        .argument("KIND", options->kind, "node, group, link, table, or a kind of values such as double")
        .optionalArguments("VALUE", options->words, "As set takes them")
        .option("--unit", options->unit, "The unit of a value by name")
        .option("--to", options->target, "Where a link leads")
        .option("--class", options->classes, "The schemas whose items it gets, joined by ;")
        .schemas(options->schemas)
        .options("--text", options->texts, "LOCALE=TEXT: what it is called; may be given again")
        .flag("-p,--parents", options->parents, "Make the groups that are missing on the way");
}

}  // namespace lvp::tool
