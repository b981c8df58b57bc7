// In stores that the library left, the checker finds nothing.
#include <gtest/gtest.h>

#include <algorithm>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/stores.h"
#include "tests/check/Describe.h"
#include "tests/check/SoundStores.h"
#include "tests/check/Walks.h"
#include "tests/support/StoreFixture.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TreeHelpers.h"

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using namespace lumivard::platform::test_support;
using structure::IContainer;
using structure::IContainerFrontEnd;

const std::string kExamples = LVP_SOURCE_DIR "/examples/data/";
const check::Options kWhole{.whole = true};

class Clean : public StoreTest {
protected:
    void expectClean() {
        const auto report = check::examine(*store(), kWhole);
        EXPECT_EQ(describe(report), "");
        EXPECT_TRUE(report.clean());
        EXPECT_EQ(report.reached, report.records);
        EXPECT_TRUE(check::plan(*store(), kWhole).steps.empty());
    }
};
LVP_ON_EACH_STORE(Clean);

TEST_P(Clean, IsAnEmptyStore) {
    const auto report = check::examine(*store());
    EXPECT_TRUE(report.clean());
    EXPECT_EQ(report.records, 0u);
}

TEST_P(Clean, IsAStoreThatWasJustSetUp) {
    IContainerFrontEnd::toplevel(store(), L"top");
    expectClean();
}

TEST_P(Clean, IsAStoreWithItemsOfEveryKind) {
    sound::fill(*store());
    expectClean();
}

TEST_P(Clean, AreTheExamplesMaterials) {
    sound::read(*store(), kExamples + "materials.xml");
    expectClean();
    EXPECT_GT(check::examine(*store()).records, 1000u);
}

TEST_P(Clean, AreTheExamplesSchemas) {
    sound::read(*store(), kExamples + "schemas.xml");
    expectClean();
}

TEST_P(Clean, IsADocumentWhoseTopIsNoRoot) {
    tree::container(store(), L"top");
    tree::addTable(store(), 0, L"table");
    expectClean();
}

TEST_P(Clean, IsADocumentOfOneValue) {
    tree::primitive(store(), L"value");
    expectClean();
}

TEST_P(Clean, AreItemsWithWhatCameFromSchemas) {
    sound::read(*other(), kExamples + "motion-schemas.xml");
    const auto locator = metadata::ISchemaLocator::make(other());
    core::io::FileReader reader(kExamples + "motion.xml");
    format::xml::IXMLFrontEnd::parse(store(), &reader, locator.get(), nullptr, nullptr);
    const auto report = check::examine(*store(), kWhole);
    // What a value in the document takes the place of is not erased.
    EXPECT_EQ(report.total(), report.byCode.contains("live.unattached") ? report.byCode.at("live.unattached") : 0u)
        << describe(report);
}

TEST_P(Clean, IsAStoreAfterManyRenamesCopiesAndDestroys) {
    auto top = IContainerFrontEnd::toplevel(store(), L"top");
    for (int i = 0; i < 60; ++i) {
        const std::wstring name = L"n" + std::to_wstring(i);
        top->create(IContainer::kNode, name.c_str(), nullptr)->create(L"v", metadata::kDouble);
        if (i % 2 == 0)
            top->container(name.c_str())->rename((name + std::wstring(static_cast<std::size_t>(i), L'x')).c_str());
        if (i % 3 == 0) top->clone(name.c_str(), (name + L"copy").c_str(), false);
        top = IContainerFrontEnd::toplevel(store(), L"top");
        if (i % 5 == 0) top->destroy((L"n" + std::to_wstring(i / 2)).c_str());
    }
    top = {};
    expectClean();
}

TEST(CleanFile, IsAFileThatWasOpenedAgain) {
    const TemporaryFolder folder;
    sound::fill(*stores::file(folder / "store.lvp", stores::tMode::kWrite));
    const auto store = stores::file(folder / "store.lvp", stores::tMode::kRead);
    EXPECT_EQ(describe(check::examine(*store, kWhole)), "");
}

TEST(CleanVerdict, MeansThatEverythingCanBeAsked) {
    const auto store = sound::filled();
    std::set<std::wstring> lost;
    EXPECT_EQ(walks::askEverything(*store, lost), walks::reachable(*store).size());
    EXPECT_TRUE(lost.empty());
}

}  // namespace
