#include "tests/xml/XmlFixture.h"
#include "xml/XMLContainer.h"
#include "xml/XMLPrimitive.h"
#include "xml/XMLRoot.h"
#include "xml/XMLTable.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::data::XMLTable;
using lumivard::platform::data::Metadata::Item;

/// Which element may stand in which.
class Nesting : public XmlTest {};
LVP_ON_EACH_STORE(Nesting);

const char* const kElements[] = {"root",      "binary",    "uuid",      "string", "time",    "uri",     "version",
                                 "bool",      "int8",      "uint8",     "int16",  "uint16",  "int32",   "uint32",
                                 "int64",     "uint64",    "scalar",    "double", "vector2", "vector3", "vector4",
                                 "matrix2x2", "matrix3x3", "matrix4x4", "table",  "node",    "group",   "link"};

bool isContainer(const std::string& name) {
    return name == "node" || name == "group" || name == "link";
}

bool isValue(const std::string& name) {
    return name != "root" && name != "table" && !isContainer(name);
}

bool mayStandIn(const std::string& parent, const std::string& child) {
    if (child == "root" || isValue(parent)) return false;
    if (parent == "root") return child == "table" || isContainer(child);
    if (parent == "table") return child == "table" || isValue(child);
    return true;
}

TEST_P(Nesting, IsAllowedAsTheTableOfParentsAndChildrenSays) {
    for (const char* parent : kElements) {
        for (const char* child : kElements) {
            const std::string document =
                std::string("<") + parent + " name='p'><" + child + " name='c'/></" + parent + ">";
            const tMessages expected =
                mayStandIn(parent, child) ? kNone : tMessages{std::string(child) + " : could not nest the element"};
            EXPECT_EQ(read(document), expected) << document;
        }
    }
}

TEST_P(Nesting, IsAllowedToEachElementAtTheTop) {
    for (const char* element : kElements) {
        const auto fresh = GetParam().make();
        EXPECT_EQ(readInto(fresh.get(), std::string("<") + element + " name='a'/>"), kNone);
        EXPECT_EQ(writtenFrom(fresh.get()).substr(1, std::strlen(element)), element);
    }
}

TEST_P(Nesting, IsJudgedAfterTheAttributes) {
    EXPECT_EQ(read("<root name='r'><int32/></root>"), tMessages{"int32 : missing mandatory 'id' attribute"});
    EXPECT_EQ(read("<int32 name='a'><struct name='s' type='S'/></int32>"),
              tMessages{"struct : missing locator to resolve the 'type' attribute"});
}

TEST_P(Nesting, SetsTheOwnerOfTheChild) {
    ASSERT_EQ(read("<root name='r'><group name='g'><table name='t'><int32 name='i'/></table></group></root>"), kNone);
    EXPECT_EQ(stored::word(store(), at(L"g"), stored::kParent), 0u);
    EXPECT_EQ(stored::word(store(), at(L"g.t"), stored::kParent), at(L"g"));
    EXPECT_EQ(stored::word(store(), at(L"g.t.i"), stored::kParent), at(L"g.t"));
}

/// An item over a record that turned into something else behind its back.
class ChildOfAnotherKind : public XmlTest {
protected:
    std::unique_ptr<Item> childOfKind(int kind) {
        auto child = std::make_unique<Structural::Container>(store(), Structural::Container::tType::kNode, L"c");
        stored::putByte(store(), child->offset(), 0, static_cast<unsigned char>(kind));
        return child;
    }
};
LVP_ON_EACH_STORE(ChildOfAnotherKind);

TEST_P(ChildOfAnotherKind, IsRefusedByRootsAndContainers) {
    Structural::Container parent(store(), Structural::Container::tType::kGroup, L"p");
    lumivard::platform::data::XMLRoot root(store());
    lumivard::platform::data::XMLContainer group(store(), Structural::Container::tType::kGroup, nullptr);
    for (const int kind : {0, 3, 5, 255}) {
        EXPECT_EQ(root.nest(parent, childOfKind(kind)), nullptr) << kind;
        EXPECT_EQ(group.nest(parent, childOfKind(kind)), nullptr) << kind;
    }
    EXPECT_EQ(parent.items(), 0u);
}

TEST_P(ChildOfAnotherKind, ComesBackFromATableWithoutBeingAdded) {
    Design::Table parent(store(), L"p");
    XMLTable table(store(), nullptr);
    for (const int kind : {3, 5, 255}) {
        auto child = childOfKind(kind);
        const Item* same = child.get();
        EXPECT_EQ(table.nest(parent, std::move(child)).get(), same) << kind;
    }
    for (const int kind : {0, 4}) EXPECT_EQ(table.nest(parent, childOfKind(kind)), nullptr) << kind;
    EXPECT_EQ(parent.items(), 0u);
}

}  // namespace
