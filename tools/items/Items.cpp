#include "tools/items/Items.h"

#include <vector>

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/data/metadata/ITable.h"
#include "lumivard/platform/data/structure/IContainerFrontEnd.h"
#include "lumivard/platform/stores.h"
#include "tools/base/ExitStatus.h"
#include "tools/base/Kinds.h"
#include "tools/base/Nearest.h"

namespace lvp::tool {

using lumivard::platform::data::metadata::ITable;
using lumivard::platform::data::structure::IContainerFrontEnd;

namespace {

/// Sees what is at a path, and the names of what it holds.
class Look : public IVisitor {
public:
    /// Where the whole store is shown, the items at the top are what it holds.
    explicit Look(bool wholeStore) : _seen(wholeStore) {}

    void primitive(const tPrimitive& item) override { see(tItem::kPrimitive, item.name); }
    bool table(const tTable& item) override { return see(tItem::kTable, item.name); }
    bool container(const tContainer& item) override { return see(tItem::kContainer, item.name); }

    tItem kind = tItem::kNothing;
    std::string name;
    std::vector<std::string> names;

private:
    bool see(tItem what, std::wstring_view called) {
        if (_seen) {
            names.push_back(utf8(called));
            return false;
        }
        _seen = true;
        kind = what;
        name = utf8(called);
        return true;
    }

    bool _seen;
};

/// What is exactly at a path: the library lets one that goes a name beyond a value end on the value.
Look look(IDataStore& store, const tItemPath& path) {
    Look look(path.whole.empty());
    visit(store, path.whole, look);
    if (look.name != path.name) look.kind = tItem::kNothing;
    return look;
}

/// Makes what came from a schema a property like any other, and what is below it. Only what a container has from its
/// own schemas is to stay with it.
void release(const SharedPtr<IProperty>& property) {
    std::vector<SharedPtr<IProperty>> waiting{property};
    while (!waiting.empty()) {
        const auto each = waiting.back();
        waiting.pop_back();
        each->off(kInherited | kHidden);
        auto* table = ITable::to(each.get());
        for (unsigned int i = 0; table && i < table->items(); ++i) {
            if (const auto below = table->at(i)) waiting.push_back(below);
        }
    }
}

}  // namespace

WideString wide(const std::string& text) {
    const std::wstring decoded = lumivard::platform::core::string::StringAlgorithm::UTF8Decode(text.c_str());
    if (utf8(decoded) != text) throw Failure(kWrongUsage, "\"" + text + "\" is not text in UTF-8");
    return decoded.c_str();
}

std::string utf8(std::wstring_view text) {
    return WideString(std::wstring(text).c_str()).string();
}

tItemPath::tItemPath(const std::string& path) : whole(path) {
    const std::size_t dot = whole.rfind('.');
    if (dot != std::string::npos) owner = whole.substr(0, dot);
    name = dot == std::string::npos ? whole : whole.substr(dot + 1);
}

bool visit(IDataStore& store, const std::string& path, IVisitor& visitor) {
    return IVisitor::visit(&store, static_cast<const wchar_t*>(wide(path)), visitor);
}

tItem itemAt(IDataStore& store, const std::string& path) {
    return look(store, tItemPath(path)).kind;
}

void refusePath(IDataStore& store, const std::string& storeName, const std::string& path) {
    tItemPath missing(path);
    while (!missing.owner.empty() && itemAt(store, missing.owner) == tItem::kNothing) {
        missing = tItemPath(missing.owner);
    }
    const Look owner = look(store, tItemPath(missing.owner));
    std::string sentence = "the store " + storeName + " holds nothing at the path " + path;
    if (missing.name.empty() && owner.kind != tItem::kPrimitive) {
        sentence += ": a name in it is empty";
    } else if (owner.kind == tItem::kPrimitive) {
        sentence += ": " + missing.owner + " is a value, which holds no items";
    } else {
        const std::string near = listed(nearest(missing.name, owner.names, 3));
        const std::string where = missing.owner.empty() ? "at its top" : "in " + missing.owner;
        sentence +=
            near.empty() ? ": " + where + " there is no " + missing.name : "; near to it " + where + ": " + near;
    }
    throw Failure(kCannotOpen, sentence);
}

SharedPtr<IContainer> containerAt(IDataStore& store, const std::string& path) {
    return IContainerFrontEnd::find(&store, wide(path));
}

SharedPtr<IProperty> propertyAt(IDataStore& store, const std::string& path) {
    // By single names: a longer path that goes one name beyond a value ends on the value all the same.
    std::size_t end = path.rfind('.');
    SharedPtr<IContainer> container;
    for (; !container && end != std::string::npos && end != 0; end = path.rfind('.', end - 1)) {
        container = containerAt(store, path.substr(0, end));
        if (container) break;
    }
    SharedPtr<IProperty> property;
    while (container && end != std::string::npos) {
        const std::size_t next = path.find('.', end + 1);
        const WideString name = wide(path.substr(end + 1, next == std::string::npos ? next : next - end - 1));
        auto* table = ITable::to(property.get());
        if (property && !table) return {};
        property = table ? table->lookup(name) : container->property(name);
        if (!property) return {};
        end = next;
    }
    return property;
}

bool destroyItem(IDataStore& store, const tItemPath& path) {
    if (const auto container = containerAt(store, path.owner)) return container->destroy(wide(path.name));
    const auto property = propertyAt(store, path.owner);
    auto* table = ITable::to(property.get());
    return table && table->destroy(wide(path.name));
}

// The library copies it under its own name; so it goes by a group in another store, where no name is taken.
bool copyProperty(const SharedPtr<IProperty>& property, IContainer& owner, const std::string& name) {
    const auto store = lumivard::platform::stores::memory();
    const auto passage = IContainerFrontEnd::toplevel(store.get(), L"passage");
    if (!passage->clone(property)) return false;
    const auto copied = passage->property(property->tag());
    release(copied);
    if (copied->tag().string() != name && !copied->rename(wide(name))) return false;
    return owner.clone(passage->container(WideString())->property(wide(name)));
}

}  // namespace lvp::tool
