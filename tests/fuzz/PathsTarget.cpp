#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tests/fuzz/Targets.h"

namespace lumivard::platform::fuzz {

using core::string::StringAlgorithm;
using core::string::WideString;
using data::metadata::ISchemaLocator;
using data::metadata::ITable;
using data::structure::IContainer;
using data::structure::IContainerFrontEnd;
using data::structure::ILink;
using data::structure::IVisitor;

namespace {

constexpr const char* kDocument =
    "<root name='r'><group name='a'><node name=''><int8 name=''/></node><link name='l' to='a'/><int32 name='n'/>"
    "<table name='t'><double name='d'/><table name='u'><string name='e'/></table><table name=''/></table>"
    "<group name='b'><node name='\xc3\xa4'/><group name='x.y'/><table name='t'/></group></group>"
    "<table name='t'><int8 name='i'/></table><group name='x.y'/></root>";

/// The same tree a second time, with nothing of the library in it.
struct Node {
    enum tKind { kContainer, kTable, kPrimitive };
    tKind kind;
    std::wstring name;
    std::vector<Node> children;
};

using tNodes = std::vector<Node>;

const Node& tree() {
    static const Node primitive{Node::kPrimitive, L"", {}};
    static const Node t{
        Node::kTable,
        L"t",
        {{Node::kPrimitive, L"d", {}}, {Node::kTable, L"u", {{Node::kPrimitive, L"e", {}}}}, {Node::kTable, L"", {}}}};
    static const Node b{Node::kContainer,
                        L"b",
                        {{Node::kContainer, L"\xe4", {}}, {Node::kContainer, L"x.y", {}}, {Node::kTable, L"t", {}}}};
    static const Node a{
        Node::kContainer,
        L"a",
        {{Node::kContainer, L"", {primitive}}, {Node::kContainer, L"l", {}}, {Node::kPrimitive, L"n", {}}, t, b}};
    static const Node root{Node::kContainer,
                           L"r",
                           {a, {Node::kTable, L"t", {{Node::kPrimitive, L"i", {}}}}, {Node::kContainer, L"x.y", {}}}};
    return root;
}

const Node* child(const Node& node, std::wstring_view name) {
    for (const Node& each : node.children) {
        if (each.name == name) return &each;
    }
    return nullptr;
}

/// Where a path leads from a node; null for nowhere. The one name behind a primitive is not looked at.
const Node* follow(const Node* node, std::wstring_view path) {
    if (path.empty()) return nullptr;
    for (;;) {
        const auto dot = path.find(L'.');
        if (node->kind == Node::kPrimitive) return dot == path.npos ? node : nullptr;
        node = child(*node, path.substr(0, dot));
        if (!node || dot == path.npos) return node;
        path.remove_prefix(dot + 1);
    }
}

bool is(const Node* node, Node::tKind kind) {
    return node && node->kind == kind;
}

/// Whether one of the URIs, joined by ";", leads to a table.
bool namesASchema(std::wstring_view uris) {
    if (uris.empty()) return false;
    for (;;) {
        const auto end = uris.find(L';');
        if (is(follow(&tree(), uris.substr(0, end)), Node::kTable)) return true;
        if (end == uris.npos) return false;
        uris.remove_prefix(end + 1);
    }
}

std::unique_ptr<core::storage::datastore::IDataStore> filledStore() {
    auto store = stores::memory();
    core::io::MemoryReader reader(kDocument);
    data::format::xml::IXMLFrontEnd::parse(store.get(), &reader, nullptr, nullptr, nullptr);
    return store;
}

void checkContainer(IContainer& container, const Node& node, const std::wstring& path) {
    const Node* expected = follow(&node, path);
    const WideString wide(path.c_str());
    require(container.has(wide) == (expected != nullptr), "there is something at a path where a walk finds it");
    const bool property = is(expected, Node::kTable) || is(expected, Node::kPrimitive);
    const auto found = container.property(wide);
    require(static_cast<bool>(found) == property, "a property is found where a walk finds it");
    if (found) require(found->tag().length() == expected->name.size(), "and it is the one that the walk finds");
    // Without a name the container is opened anew.
    const auto opened = container.container(wide);
    require(static_cast<bool>(opened) == (is(expected, Node::kContainer) || path.empty()),
            "a container is found where a walk finds it");
    require(!container.validates(wide, nullptr, true), "nothing conforms to no schema");
}

}  // namespace

int fuzzPaths(const std::uint8_t* data, std::size_t size) {
    static const auto store = filledStore();
    const std::wstring path = StringAlgorithm::UTF8Decode(std::string(data, data + size).c_str());

    require(static_cast<bool>(IContainerFrontEnd::find(store.get(), path.c_str())) ==
                is(follow(&tree(), path), Node::kContainer),
            "a container is found where a walk from the top finds it");
    IVisitor visitor;
    require(IVisitor::visit(store.get(), path, visitor) == (path.empty() || follow(&tree(), path)),
            "what lies at a path is shown where a walk from the top finds it");
    const auto top = IContainerFrontEnd::find(store.get(), L"a");
    require(static_cast<bool>(top), "the fixed tree is there");
    const Node& a = *child(tree(), L"a");
    checkContainer(*top, a, path);

    const auto table = top->property(L"t");
    const bool found = static_cast<bool>(ITable::to(table.get())->lookup(path.c_str()));
    require(found == (follow(child(a, L"t"), path) != nullptr), "an item of a table is found where a walk finds it");

    const auto schema = ISchemaLocator::make(store.get())->resolve(path.c_str());
    require(static_cast<bool>(schema) == namesASchema(path), "the URI of a table names a schema, and no other");

    const auto link = top->container(L"l");
    ILink::to(link.get())->target(path.c_str());
    require(static_cast<bool>(ILink::to(link.get())->follow(nullptr)) == is(follow(&tree(), path), Node::kContainer),
            "a link leads where its path does");
    return 0;
}

}  // namespace lumivard::platform::fuzz
