#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <regex>
#include <set>

#include "tests/check/Walks.h"
#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::stores::memory;
namespace Metadata = lumivard::platform::data::Metadata;
using tType = Structural::Container::tType;

/// A text of characters that matter to XML, to lists and to UTF-8, none of them beyond what a document can carry.
std::wstring anyText() {
    const std::wstring kCharacters = L"ab.<>&\"' \t\n\r;\x7f\xe4\x20ac\xfffd\x1f600";
    return *rc::gen::container<std::wstring>(rc::gen::elementOf(kCharacters));
}

void name(Metadata::Item& item) {
    for (int i = *rc::gen::inRange(0, 3); i > 0; --i) item.localize(anyText().c_str(), anyText().c_str());
}

template <class T>
void fill(Design::Primitive& primitive, const std::vector<T>& values) {
    primitive.set(reinterpret_cast<const char*>(values.data()), 0, static_cast<unsigned int>(values.size()));
}

template <class T>
void fill(Design::Primitive& primitive) {
    fill(primitive, *rc::gen::container<std::vector<T>>(rc::gen::arbitrary<T>()));
}

/// Numbers of few digits, and `least` of them: others differ from themselves after 7 digits of them were written.
template <class T>
void fillWithReals(Design::Primitive& primitive, int least = 0) {
    std::vector<T> values;
    for (int i = *rc::gen::inRange(least, least + 9); i > 0; --i) {
        values.push_back(static_cast<T>(*rc::gen::inRange(-10'000, 10'000)) / 8);
    }
    fill(primitive, values);
}

void fillWithTexts(Design::Primitive& primitive) {
    std::wstring run;
    for (int i = *rc::gen::inRange(1, 4); i > 0; --i) run.append(anyText()).append(1, L'\0');
    primitive.set(reinterpret_cast<const char*>(run.data()), 0, static_cast<unsigned int>(run.size()));
}

void fillByKind(Design::Primitive& primitive) {
    switch (primitive.valuetype()) {
        case metadata::kBinary:
            return fill<char>(primitive);
        case metadata::kBool:
        case metadata::kUInt8:
            return fill<std::uint8_t>(primitive);
        case metadata::kInt8:
            return fill<std::int8_t>(primitive);
        case metadata::kInt16:
            return fill<std::int16_t>(primitive);
        case metadata::kUInt16:
            return fill<std::uint16_t>(primitive);
        case metadata::kInt32:
            return fill<std::int32_t>(primitive);
        case metadata::kUInt32:
            return fill<std::uint32_t>(primitive);
        case metadata::kInt64:
            return fill<std::int64_t>(primitive);
        case metadata::kUInt64:
            return fill<std::uint64_t>(primitive);
        case metadata::kScalar:
            return fillWithReals<float>(primitive);
        case metadata::kUUID:
        case metadata::kString:
        case metadata::kTime:
        case metadata::kURI:
        case metadata::kVersion:
            return fillWithTexts(primitive);
        case metadata::kDouble:
            return fillWithReals<double>(primitive);
        default:  // as many components as any vector or matrix begins with: fewer would come back as that many
            return fillWithReals<double>(primitive, 16);
    }
}

unsigned int makePrimitive(IDataStore* store, const std::wstring& tag) {
    const auto kind = static_cast<metadata::tValue>(*rc::gen::inRange(1, 24));
    Design::Primitive primitive(store, kind, tag.c_str());
    if (*rc::gen::arbitrary<bool>()) primitive.units(*rc::gen::element(units::kMeter, units::kVolt, units::kUnitless));
    if (*rc::gen::arbitrary<bool>()) primitive.valuelocale(anyText().c_str());
    if (*rc::gen::inRange(0, 5) == 0) primitive.uri(anyText().c_str());
    fillByKind(primitive);
    name(primitive);
    return primitive.offset();
}

enum class tParent { kRoot, kContainer, kTable };

void makeChildren(IDataStore* store, Metadata::Set& set, tParent parent, int depth);

unsigned int makeTable(IDataStore* store, const std::wstring& tag, int depth) {
    Design::Table table(store, tag.c_str());
    if (*rc::gen::arbitrary<bool>())
        table.defaults(units::kMeter, static_cast<metadata::tValue>(*rc::gen::inRange(1, 24)));
    if (*rc::gen::arbitrary<bool>()) table.defaults(units::kVolt, metadata::kVec3);
    makeChildren(store, table, tParent::kTable, depth);
    name(table);
    return table.offset();
}

unsigned int makeContainer(IDataStore* store, const std::wstring& tag, int depth) {
    const auto type = *rc::gen::element(tType::kNode, tType::kGroup, tType::kLink);
    Structural::Container container(store, type, tag.c_str());
    if (type == tType::kLink && *rc::gen::arbitrary<bool>()) container.info(anyText().c_str());
    makeChildren(store, container, tParent::kContainer, depth);
    name(container);
    return container.offset();
}

void makeChildren(IDataStore* store, Metadata::Set& set, tParent parent, int depth) {
    if (depth == 0) return;
    for (int i = *rc::gen::inRange(0, 4); i > 0; --i) {
        const std::wstring tag = anyText();
        if (set.find(tag.c_str()) != kNoItem) continue;
        // A root takes no primitives, and a table no containers.
        const int kind = *rc::gen::inRange(parent == tParent::kRoot ? 1 : 0, parent == tParent::kTable ? 2 : 3);
        set.add(kind == 0   ? makePrimitive(store, tag)
                : kind == 1 ? makeTable(store, tag, depth - 1)
                            : makeContainer(store, tag, depth - 1));
    }
}

/// What the first item that differs between two trees has of another kind; empty where none does.
std::string differenceOf(IDataStore& one, IDataStore& other) {
    const auto first = walks::inOrder(one);
    const auto second = walks::inOrder(other);
    for (std::size_t i = 0; i < std::min(first.size(), second.size()); ++i) {
        if (first[i].name != second[i].name) return "another name";
        const auto& told = first[i].told;
        const auto differing = std::mismatch(told.begin(), told.end(), second[i].told.begin(), second[i].told.end());
        if (differing.first != told.end()) return "another " + std::string(differing.first->first);
    }
    return first.size() == second.size() ? "" : "another number of items";
}

RC_GTEST_PROP(RandomTree, IsTheSameDocumentAfterItWasWrittenAndRead, ()) {
    const auto store = memory();
    {
        Metadata::Root root(store.get(), anyText().c_str());
        makeChildren(store.get(), root, tParent::kRoot, 4);
        name(root);
    }
    store->version(*rc::gen::arbitrary<unsigned int>());
    const std::string first = writtenFrom(store.get());

    const auto second = memory();
    RC_ASSERT(readInto(second.get(), first) == kNone);
    RC_ASSERT(writtenFrom(second.get()) == first);
    // Writing may leave out what a second writing leaves out as well.
    RC_ASSERT(differenceOf(*store, *second) == "");
}

/// A document that is read.
std::unique_ptr<IDataStore> storeFrom(const std::string& document) {
    auto store = memory();
    readInto(store.get(), document);
    return store;
}

TEST(TreeComparison, SeesEachAttributeThatIsLeftOut) {
    const auto whole = storeFrom(
        "<root name='r'><name locale='de'>R</name><group name='a'><node name='n'/><link name='l' to='a'/>"
        "<table name='t'><default unit='Meter' type='scalar'/></table><string name='s' locale='de'>S</string>"
        "<int8 name='i' units='Meter'>5</int8><binary name='b' uri='u'/></group></root>");
    const std::string document = writtenFrom(whole.get());
    const std::regex attribute(" (name|locale|to|unit|type|units|uri)=\"[^\"]*\"");
    int count = 0;
    for (std::sregex_iterator found(document.begin(), document.end(), attribute), end; found != end; ++found, ++count) {
        const auto position = static_cast<std::size_t>(found->position());
        const auto less = storeFrom(std::string(document).erase(position, found->str().size()));
        EXPECT_NE(differenceOf(*whole, *less), "") << found->str();
    }
    EXPECT_EQ(count, 15);
    EXPECT_EQ(differenceOf(*whole, *storeFrom(document)), "");
}

}  // namespace
