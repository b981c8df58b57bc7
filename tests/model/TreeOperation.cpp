#include "tests/model/TreeOperation.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "lumivard/platform/core/string/WideString.h"

namespace lumivard::platform::model {

namespace {

std::wstring number(long long value) {
    return L" " + std::to_wstring(value);
}

std::string inUtf8(const std::wstring& text) {
    return data::WideString(text.c_str()).string();
}

std::wstring hex(const std::string& bytes) {
    std::wstring text;
    for (const char byte : bytes) {
        text += L"0123456789abcdef"[static_cast<unsigned char>(byte) >> 4];
        text += L"0123456789abcdef"[static_cast<unsigned char>(byte) & 15];
    }
    return text;
}

std::wstring texts(TreeObject& object) {
    std::wstring line = number(object.locales());
    for (unsigned int index = 0; index <= object.locales() + 1; ++index) {
        const std::wstring locale = object.locale(index);
        line += L" " + locale + L"=" + object.localize(locale);
    }
    return line;
}

std::wstring defaults(TreeObject& table) {
    std::wstring line = number(table.groups());
    for (unsigned int index = 0; index <= table.groups(); ++index) {
        const units::tUnitGroup group = table.group(index);
        line += number(group) + number(table.defaultKind(group)) + number(table.defaultUnit(group));
    }
    for (unsigned int index = 0; index <= table.items(); ++index) {
        const auto item = table.at(index);
        line += item ? L" " + item->tag() : L" -";
    }
    return line;
}

std::wstring value(TreeObject& primitive) {
    const auto bytes = primitive.get(0, primitive.dimension());
    return number(primitive.valuetype()) + number(primitive.unit()) + number(primitive.dimension()) +
           number(primitive.bytes()) + L" " + primitive.uri() + L" " + primitive.valuelocale() + L" " +
           (bytes ? hex(*bytes) : L"-");
}

/// What a client can see of an item, but for its children.
std::wstring look(TreeObject& object) {
    std::wstring line =
        object.path() + L" " + object.tag() + L" [" + object.base() + L"]" + number(object.flags()) + texts(object);
    switch (object.kind()) {
        case TreeObject::kContainer:
            return line + number(object.type()) + number(object.empty()) + number(object.isLink()) + L" " +
                   object.target();
        case TreeObject::kTable:
            return line + L" table" + number(object.items()) + defaults(object);
        default:
            return line + value(object);
    }
}

std::wstring children(TreeObject& object) {
    std::wstring line;
    for (const auto& child : object.children()) line += (child ? child->tag() : L"-") + L" ";
    return line;
}

/// A line for each item from an object downwards. A store that does wrong may give a tree that goes on for ever.
std::wstring all(TreeObject::tPtr top) {
    constexpr int kMost = 3000;
    std::wstring lines;
    std::vector<TreeObject::tPtr> waiting;
    waiting.push_back(std::move(top));
    for (int items = 0; !waiting.empty() && items < kMost; ++items) {
        const TreeObject::tPtr object = std::move(waiting.back());
        waiting.pop_back();
        if (!object) continue;
        lines += look(*object) + L"\n";
        std::vector<TreeObject::tPtr> below = object->children();
        std::move(below.rbegin(), below.rend(), std::back_inserter(waiting));
    }
    return lines;
}

std::string elements(const TreeOperation& operation) {
    std::string data((operation.number + operation.count) * 8, '\0');
    for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<char>(i * 37 + operation.count * 11 + 1);
    return data;
}

std::vector<std::wstring> list(const TreeOperation& operation) {
    std::vector<std::wstring> texts(operation.count % 4, operation.text);
    if (texts.size() > 1) texts[1] = operation.name;
    return texts;
}

// A few units of a few groups; kinds of all sorts.
constexpr units::tUnit kUnits[] = {units::kNoUnit, units::kMeter, units::kMilliMeter, units::kKilogramPerCubicMeter,
                                   units::kMegaPascal};

units::tUnit unitOf(const TreeOperation& operation) {
    return kUnits[operation.count % std::size(kUnits)];
}

metadata::tValue kindOf(const TreeOperation& operation) {
    return static_cast<metadata::tValue>(1 + operation.number % metadata::kStruct);
}

}  // namespace

TreeObject::tPtr TreeClient::open(unsigned int store, const std::wstring& path) {
    if (auto container = _tree.find(store, path)) return container;
    const std::size_t dot = path.find(L'.');
    if (dot == std::wstring::npos) return nullptr;
    const auto top = _tree.find(store, path.substr(0, dot));
    return top ? top->find(path.substr(dot + 1)) : nullptr;
}

int TreeClient::target(const TreeOperation& operation) {
    if (operation.slot != TreeOperation::kNone) {
        return _kept[operation.slot] ? static_cast<int>(_kept[operation.slot]->kind()) : -1;
    }
    const auto object = open(operation.store, operation.path);
    return object ? static_cast<int>(object->kind()) : -1;
}

bool TreeClient::isGone(const TreeOperation& operation) const {
    using Op = TreeOperation;
    const auto gone = [this](unsigned int slot) { return _kept[slot] && _kept[slot]->isGone(); };
    const bool copies = operation.code == Op::kCopy || operation.code == Op::kClone;
    // A rename goes by the name in the owner, whatever item has it now.
    if (operation.code == Op::kDropAll || operation.code == Op::kRename) return false;
    return (operation.slot != Op::kNone && gone(operation.slot)) || (copies && gone(operation.source));
}

std::wstring TreeClient::perform(const TreeOperation& operation) {
    if (operation.code == TreeOperation::kDropAll) {
        dropAll();
        _tree.reopen();
        return {};
    }
    if (operation.slot != TreeOperation::kNone) {
        TreeObject::tPtr& kept = _kept[operation.slot];
        if (operation.code == TreeOperation::kDrop) kept.reset();
        return kept ? perform(*kept, operation) : L"nothing is kept";
    }
    if (operation.code == TreeOperation::kKeep) return keep(open(operation.store, operation.path), operation.into);
    const auto fresh = open(operation.store, operation.path);
    return fresh ? perform(*fresh, operation) : L"nothing is found";
}

void TreeClient::dropAll() {
    for (auto& kept : _kept) kept.reset();
}

std::wstring TreeClient::keep(TreeObject::tPtr result, unsigned int slot) {
    if (!result) return L"null";
    const std::wstring line = look(*result);
    if (slot != TreeOperation::kNone) _kept[slot] = std::move(result);
    return line;
}

std::wstring TreeClient::perform(TreeObject& object, const TreeOperation& operation) {
    using Op = TreeOperation;
    switch (operation.code) {
        case Op::kLook:
            return look(object);
        case Op::kParent:
            return keep(object.parent(), operation.into);
        case Op::kRename:
            return number(object.rename(operation.name));
        case Op::kDescribe:
            object.describe(operation.name, operation.text);
            return texts(object);
        case Op::kDestroy:
            return number(object.destroy(operation.name));
        case Op::kFind:
            return keep(object.find(operation.text), operation.into);
        case Op::kMakePrimitive:
            return keep(object.makePrimitive(operation.name, kindOf(operation), unitOf(operation)), operation.into);
        case Op::kMakeTable:
            return keep(object.makeTable(operation.name, operation.schema), operation.into);
        case Op::kWalk:
            return children(object);
        default:
            return object.kind() == TreeObject::kContainer ? performOnContainer(object, operation)
                                                           : performOnProperty(object, operation);
    }
}

std::wstring TreeClient::performOnContainer(TreeObject& object, const TreeOperation& operation) {
    using Op = TreeOperation;
    TreeObject* const source = _kept[operation.source].get();
    switch (operation.code) {
        case Op::kMakeContainer:
            return keep(object.makeContainer(static_cast<IContainer::tType>(operation.number % 3), operation.name,
                                             operation.schema),
                        operation.into);
        case Op::kHas:
            return number(object.has(operation.text));
        case Op::kAgain:
            return keep(object.again(), operation.into);
        case Op::kConforms:
            return number(object.conforms(static_cast<int>(operation.number % std::size(kSchemaNames))));
        case Op::kCopy:
            return source && source->kind() == TreeObject::kContainer ? number(object.copy(*source)) : L"no source";
        case Op::kClone:
            return source ? number(object.clone(*source)) : L"no source";
        case Op::kClonePath:
            return number(object.clone(operation.text, operation.path, operation.count % 2 == 0));
        case Op::kCloneTo:
            return number(object.cloneTo(operation.number % 2, operation.text));
        case Op::kTarget:
            object.target(operation.text);
            return object.target();
        case Op::kFollow:
            return keep(object.follow(operation.number % 2), operation.into);
        default:
            return L"not of containers";
    }
}

std::wstring TreeClient::performOnProperty(TreeObject& object, const TreeOperation& operation) {
    using Op = TreeOperation;
    switch (operation.code) {
        case Op::kOn:
            object.on(static_cast<unsigned char>(operation.number));
            return number(object.flags());
        case Op::kOff:
            object.off(static_cast<unsigned char>(operation.number));
            return number(object.flags());
        case Op::kAt:
            return keep(object.at(operation.number), operation.into);
        case Op::kMakeByGroup:
            return keep(object.makeByGroup(operation.name, units::group(unitOf(operation))), operation.into);
        case Op::kDefaults:
            return number(object.defaults(unitOf(operation), kindOf(operation))) + defaults(object);
        case Op::kSet:
            return number(object.set(elements(operation), operation.number, operation.count)) + value(object);
        case Op::kReset:
            return number(object.reset(operation.count)) + value(object);
        case Op::kGet: {
            const auto bytes = object.get(operation.number, operation.count);
            return bytes ? hex(*bytes) : L"none";
        }
        case Op::kUri:
            return number(object.uri(operation.text)) + value(object);
        case Op::kSchema:
            return number(object.schema(operation.text)) + object.base();
        case Op::kValueLocale:
            object.valuelocale(operation.name);
            return object.valuelocale();
        case Op::kWrite:
            return number(object.write(list(operation))) + value(object);
        default:
            return L"not of properties";
    }
}

std::wstring TreeClient::everything(unsigned int store, const std::wstring& top) {
    return all(_tree.find(store, top));
}

std::string described(const TreeOperation& operation) {
    static constexpr const wchar_t* kNames[] = {L"look",
                                                L"parent",
                                                L"rename",
                                                L"describe",
                                                L"keep",
                                                L"on",
                                                L"off",
                                                L"destroy",
                                                L"find",
                                                L"make primitive",
                                                L"make table",
                                                L"walk",
                                                L"make container",
                                                L"has",
                                                L"again",
                                                L"conforms",
                                                L"copy",
                                                L"clone",
                                                L"clone path",
                                                L"clone to",
                                                L"target",
                                                L"follow",
                                                L"at",
                                                L"make by group",
                                                L"defaults",
                                                L"set",
                                                L"reset",
                                                L"get",
                                                L"uri",
                                                L"schema",
                                                L"value locale",
                                                L"write",
                                                L"drop",
                                                L"drop all"};
    const std::wstring on = operation.slot == TreeOperation::kNone
                                ? L" at " + std::to_wstring(operation.store) + L":" + operation.path
                                : L" through" + number(operation.slot);
    return inUtf8(kNames[operation.code] + on + L", source" + number(operation.source) + L", into" +
                  number(operation.into) + L", name \"" + operation.name + L"\", text \"" + operation.text + L"\"," +
                  number(operation.number) + number(operation.count) + L", schema" + number(operation.schema));
}

std::string firstDifference(const std::wstring& found, const std::wstring& expected) {
    const auto at = std::mismatch(found.begin(), found.end(), expected.begin(), expected.end()).first - found.begin();
    const auto newline = at == 0 ? std::wstring::npos : found.rfind(L'\n', static_cast<std::size_t>(at) - 1);
    const std::size_t start = newline == std::wstring::npos ? 0 : newline + 1;
    return inUtf8(L"it gave\n" + found.substr(start, 400) + L"\nand not\n" + expected.substr(start, 400));
}

}  // namespace lumivard::platform::model
