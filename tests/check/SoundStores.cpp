#include "tests/check/SoundStores.h"

#include <numeric>
#include <vector>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tests/support/StoredRecords.h"

namespace lumivard::platform::test_support::sound {

namespace {

using namespace data;
using metadata::IPrimitive;
using metadata::ISchema;
using metadata::ITable;
using structure::IContainer;
using structure::IContainerFrontEnd;

constexpr ISchema* kNoSchema = nullptr;

void fillValues(IContainer& group) {
    const double numbers[] = {1.5, 2.5, 3.5};
    const int whole = 7;
    const wchar_t words[] = L"steel";
    group.create(L"numbers", metadata::kDouble)->set(numbers, 0, 3);
    group.create(L"whole", metadata::kInt32)->set(&whole, 0, 1);
    auto text = group.create(L"text", metadata::kString);
    text->set(words, 0, 6);
    text->valuelocale(L"en");
    group.create(L"elsewhere", metadata::kBinary)->uri(L"file:values.bin");
    auto made = group.create(L"made", metadata::kStruct);
    made->schema(L"Point");
    made->set("12345678", 0, 8);
    group.create(L"empty", metadata::kScalar);
    const bool truths[] = {true, false};
    group.create(L"truths", metadata::kBool)->set(truths, 0, 2);
}

void fillTables(IContainer& group) {
    auto table = group.create(L"table", kNoSchema);
    table->defaults(units::kMeter, metadata::kDouble);
    table->defaults(units::kPascal, metadata::kScalar);
    const double length = 2.5;
    table->create(L"length", metadata::kDouble, units::kMeter)->set(&length, 0, 1);
    auto below = table->create(L"below", kNoSchema);
    below->create(L"deep", metadata::kInt64, units::kNoUnit);
    below->container()->describe(L"en", L"below the table");
}

void fillContainers(IContainer& group) {
    auto node = group.create(IContainer::kNode, L"node", kNoSchema);
    node->describe(L"en", L"a node");
    node->describe(L"de", L"ein Knoten");
    fillValues(*node);
    auto link = group.create(IContainer::kLink, L"link", kNoSchema);
    structure::ILink::to(link.get())->target(L"top.node");
    auto inner = group.create(IContainer::kGroup, L"inner", kNoSchema);
    inner->create(IContainer::kGroup, L"innermost", kNoSchema)->create(L"x", metadata::kInt8);
    for (const wchar_t* hollow : {L"h1", L"h2", L"h3"}) inner->create(IContainer::kGroup, hollow, kNoSchema);
    inner->create(IContainer::kNode, L"gone", kNoSchema)->create(L"y", metadata::kInt8);
    inner->destroy(L"gone");
    inner->rename(L"renamed");
    group.container(core::string::WideString())->container(L"renamed")->rename(L"a name that is a good deal longer");
}

}  // namespace

void fill(IDataStore& store) {
    auto top = IContainerFrontEnd::toplevel(&store, L"top");
    fillValues(*top);
    fillTables(*top);
    fillContainers(*top);
    top = IContainerFrontEnd::toplevel(&store, L"top");
    auto other = IContainerFrontEnd::toplevel(&store, L"other");
    other->copy(top);
    other->destroy(L"link");
    other->clone(L"node", L"twin", false);
}

void read(IDataStore& store, const std::string& document) {
    core::io::FileReader reader(document);
    format::xml::IXMLFrontEnd::parse(&store, &reader, nullptr, nullptr, nullptr);
}

void copy(IDataStore& from, IDataStore& to) {
    std::vector<unsigned int> offsets(static_cast<std::size_t>(from.extent()));
    std::iota(offsets.begin(), offsets.end(), 0);
    stored::copy(&from, offsets, &to);
}

std::unique_ptr<IDataStore> copyOf(IDataStore& store) {
    auto made = stores::memory();
    copy(store, *made);
    return made;
}

std::unique_ptr<IDataStore> filled() {
    auto store = stores::memory();
    fill(*store);
    return store;
}

}  // namespace lumivard::platform::test_support::sound
