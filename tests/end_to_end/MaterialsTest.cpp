#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/end_to_end/Documents.h"
#include "tests/support/TemporaryFolder.h"

// The main job on real input: a document of engineering materials into a store file and back.

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;

const std::string kMaterialsDocument = LVP_SOURCE_DIR "/examples/data/materials.xml";

using test_support::read;
using test_support::written;

class Materials : public testing::Test {
protected:
    Materials() {
        const auto store = stores::file(path(), stores::tMode::kWrite);
        read(store.get(), bytesOf(kMaterialsDocument));
    }

    std::filesystem::path path() const { return _folder / "materials.lvp"; }
    std::unique_ptr<IDataStore> reopened() const { return stores::file(path(), stores::tMode::kRead); }

private:
    TemporaryFolder _folder;
};

TEST_F(Materials, StandInTheFileAfterItIsOpenedAgain) {
    const auto store = reopened();
    EXPECT_EQ(store->version(), 1u);
    const auto graphite = structure::IContainerFrontEnd::find(store.get(), L"Carbon.Graphite");
    ASSERT_TRUE(graphite);
    EXPECT_EQ(graphite->type(), structure::IContainer::kNode);
    EXPECT_EQ(graphite->path().string(), "Carbon.Graphite");
    EXPECT_EQ(graphite->localize(L"en-us").string(), "Graphite");
    EXPECT_EQ(graphite->parent()->tag().string(), "Carbon");

    const auto density = graphite->property(L"Density");
    auto* value = metadata::IPrimitive::to(density.get());
    ASSERT_NE(value, nullptr);
    double number = 0;
    ASSERT_TRUE(value->get(&number, 0, 1));
    EXPECT_EQ(number, 1750.0);
    EXPECT_EQ(value->valuetype(), metadata::kDouble);
    EXPECT_EQ(value->units(), units::kKilogramPerCubicMeter);

    const auto kind = graphite->property(L"KindOfMaterial");
    auto* text = metadata::IPrimitive::to(kind.get());
    std::vector<wchar_t> characters(text->dimension());
    ASSERT_TRUE(text->get(characters.data(), 0, text->dimension()));
    EXPECT_EQ(std::wstring(characters.data()), L"Solid");
}

// Counts what the public interfaces reach below the groups of a store.
struct tCounts {
    unsigned int materials = 0;
    unsigned int values = 0;
    unsigned int withUnits = 0;
};

void count(structure::IContainer& container, tCounts& counts) {
    ++counts.materials;
    const auto properties = container.properties();
    for (bool more = static_cast<bool>(properties->current()); more; more = properties->next()) {
        ++counts.values;
        const auto property = properties->current();
        counts.withUnits += metadata::IPrimitive::to(property.get())->units() != units::kNoUnit ? 1 : 0;
    }
}

tCounts countGroups(IDataStore* store, const std::vector<std::wstring>& groups) {
    tCounts counts;
    for (const std::wstring& name : groups) {
        const auto group = structure::IContainerFrontEnd::find(store, name.c_str());
        const auto children = group->containers();
        for (bool more = static_cast<bool>(children->current()); more; more = children->next()) {
            count(*children->current(), counts);
        }
    }
    return counts;
}

// How often a text stands in the document.
unsigned int occurrences(const std::string& document, const std::string& text) {
    unsigned int found = 0;
    for (auto at = document.find(text); at != std::string::npos; at = document.find(text, at + 1)) ++found;
    return found;
}

TEST_F(Materials, AreAllReachedThroughThePublicInterfaces) {
    const std::string document = bytesOf(kMaterialsDocument);
    std::vector<std::wstring> groups;
    for (auto at = document.find("<group name=\""); at != std::string::npos;
         at = document.find("<group name=\"", at + 1)) {
        const auto begin = at + 13;
        const std::string name = document.substr(begin, document.find('"', begin) - begin);
        groups.push_back(core::string::StringAlgorithm::UTF8Decode(name.c_str()));
    }
    const auto store = reopened();
    const tCounts counts = countGroups(store.get(), groups);
    EXPECT_EQ(counts.materials, 119u);
    EXPECT_EQ(counts.materials, occurrences(document, "<node "));
    EXPECT_EQ(counts.values, occurrences(document, "<double ") + occurrences(document, "<string "));
    EXPECT_EQ(counts.withUnits, occurrences(document, " units=\""));
}

TEST_F(Materials, AreWrittenTheSameFromTheSecondWritingOn) {
    const std::string first = written(reopened().get());
    const auto second = stores::memory();
    read(second.get(), first);
    EXPECT_EQ(written(second.get()), first);
}

TEST_F(Materials, CanBeChangedAfterReading) {
    {
        const auto store = stores::file(path(), stores::tMode::kWrite);
        const auto carbon = structure::IContainerFrontEnd::find(store.get(), L"Carbon");
        EXPECT_TRUE(carbon->destroy(L"Graphite")) << "nothing of the reader may be left open in the store";
        EXPECT_TRUE(carbon->create(structure::IContainer::kNode, L"Diamond", nullptr));
        store->flush();
    }
    const auto store = reopened();
    EXPECT_FALSE(structure::IContainerFrontEnd::find(store.get(), L"Carbon.Graphite"));
    EXPECT_TRUE(structure::IContainerFrontEnd::find(store.get(), L"Carbon.Diamond"));
}

}  // namespace
