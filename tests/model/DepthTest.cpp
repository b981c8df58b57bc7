// No operation's need of the stack grows with the depth of the data: everything that can be done to a tree is done to
// one that is far deeper than a small stack has room for.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include <sys/resource.h>

#include "tests/end_to_end/Documents.h"
#include "tests/stores/ChildProcess.h"
#include "tests/support/Campaign.h"
#include "tests/support/ClientFixture.h"
#include "tests/support/Sanitized.h"
#include "tests/support/SmallStack.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::model {
namespace {

using namespace test_support;

// As deep as this, a walk that took 26 bytes of stack for a level would not come to its end, sanitizers or not.
std::uint64_t levels() {
    static const std::uint64_t chosen = effort("LVP_LEVELS", usually(100'000));
    return chosen;
}

/// Groups "x", each in the one before, below `top`, which counts as one of them; gives the innermost.
SharedPtr<IContainer> addGroups(SharedPtr<IContainer> top, std::uint64_t count = levels()) {
    for (std::uint64_t level = 1; level < count; ++level) top = top->create(IContainer::kGroup, L"x", kNoSchema);
    return top;
}

/// Tables "x", each in the one before, in a table "t"; gives the innermost.
SharedPtr<metadata::ITable> addTables(IContainer& top) {
    auto table = top.create(L"t", kNoSchema);
    for (std::uint64_t level = 1; level < levels(); ++level) table = table->create(L"x", kNoSchema);
    return table;
}

/// How many containers there are on the way along the first ones in each, the given one included.
std::uint64_t depth(SharedPtr<IContainer> container) {
    std::uint64_t depth = 0;
    for (; container; ++depth) container = container->containers()->current();
    return depth;
}

/// The same for tables; the given property may be null.
std::uint64_t depth(SharedPtr<IProperty> table) {
    std::uint64_t depth = 0;
    for (; table && table->type() == 1; ++depth) table = asTable(table).properties()->current();
    return depth;
}

/// A test whose body runs on a small stack, what it makes is dropped there as well.
class Depth : public testing::Test {
protected:
    SharedPtr<IContainer> top(const wchar_t* name) { return IContainerFrontEnd::toplevel(_store.get(), name); }
    SharedPtr<IContainer> otherTop(const wchar_t* name) { return IContainerFrontEnd::toplevel(_other.get(), name); }
    IDataStore* store() { return _store.get(); }
    IDataStore* other() { return _other.get(); }

private:
    std::unique_ptr<IDataStore> _store = stores::memory();
    std::unique_ptr<IDataStore> _other = stores::memory();
};

TEST_F(Depth, OfContainersIsMadeWalkedFoundAndDestroyed) {
    onASmallStack([&] {
        auto inner = addGroups(top(L"g"));
        EXPECT_EQ(depth(top(L"g")), levels());
        EXPECT_EQ(inner->path().length(), 2 * levels() - 1);
        EXPECT_TRUE(IContainerFrontEnd::find(store(), inner->path()));
        std::uint64_t up = 0;
        for (auto above = inner; above; above = above->parent()) ++up;
        EXPECT_EQ(up, levels());
        EXPECT_FALSE(top(L"g")->destroy(L"x")) << "the innermost is open";
        inner.reset();
        EXPECT_TRUE(top(L"g")->destroy(L"x"));
        EXPECT_EQ(depth(top(L"g")), 1u);
    });
}

TEST_F(Depth, OfTablesIsMadeWalkedFoundAndDestroyed) {
    onASmallStack([&] {
        auto inner = addTables(*top(L"g"));
        EXPECT_EQ(depth(top(L"g")->property(L"t")), levels());
        const auto path = inner->container()->path();
        EXPECT_EQ(path.length(), 2 * levels() + 1);
        EXPECT_TRUE(top(L"g")->property(path.substr(2, -1)));
        std::uint64_t up = 0;
        for (auto above = inner; above; above = above->container()->parent()) ++up;
        EXPECT_EQ(up, levels());
        EXPECT_FALSE(top(L"g")->destroy(L"t")) << "the innermost is open";
        inner.reset();
        EXPECT_TRUE(top(L"g")->destroy(L"t"));
        EXPECT_FALSE(top(L"g")->has(L"t"));
    });
}

TEST_F(Depth, IsCopied) {
    onASmallStack([&] {
        addGroups(top(L"groups"));
        EXPECT_TRUE(top(L"to")->copy(top(L"groups")));
        EXPECT_EQ(depth(top(L"to")), levels());
        addTables(*top(L"tables"));
        EXPECT_TRUE(otherTop(L"to")->copy(top(L"tables")));
        EXPECT_EQ(depth(otherTop(L"to")->property(L"t")), levels());
    });
}

TEST_F(Depth, IsCloned) {
    onASmallStack([&] {
        addGroups(top(L"groups"));
        EXPECT_TRUE(top(L"to")->clone(top(L"groups")));
        EXPECT_EQ(depth(top(L"to")->container(L"groups")), levels());
        addTables(*top(L"tables"));
        EXPECT_TRUE(top(L"to")->clone(top(L"tables")->property(L"t")));
        EXPECT_EQ(depth(top(L"to")->property(L"t")), levels());
    });
}

TEST_F(Depth, IsClonedToAPathAndToAStore) {
    onASmallStack([&] {
        addTables(*top(L"from"));
        EXPECT_TRUE(top(L"to")->clone(L"from.t", L"copy", true));
        EXPECT_EQ(depth(top(L"to")->property(L"copy")), levels());
        otherTop(L"to");
        EXPECT_TRUE(top(L"from")->clone(other(), L"to.copy"));
        EXPECT_EQ(depth(otherTop(L"to")->property(L"copy.t")), levels());
    });
}

TEST_F(Depth, IsCopiedBelowItself) {
    onASmallStack([&] {
        const auto inner = addGroups(top(L"g"));
        EXPECT_TRUE(inner->copy(top(L"g")));
        EXPECT_EQ(depth(top(L"g")), 2 * levels() - 1);
    });
}

TEST_F(Depth, OfASchemaIsLaidOutInheritedAndCompared) {
    onASmallStack([&] {
        const double one = 1;
        addTables(*otherTop(L"s"))->create(L"v", metadata::kDouble, units::kNoUnit)->set(&one, 0, 1);
        const auto locator = metadata::ISchemaLocator::make(other());
        const auto schema = locator->resolve(L"s.t");
        ASSERT_TRUE(schema);
        EXPECT_TRUE(top(L"g")->create(IContainer::kGroup, L"group", schema.get()));
        EXPECT_TRUE(top(L"g")->create(L"table", schema.get()));
        EXPECT_EQ(depth(top(L"g")->property(L"table")), levels());
        EXPECT_EQ(depth(top(L"g")->property(L"group.x")), levels() - 1);
        EXPECT_TRUE(top(L"g")->create(IContainer::kGroup, L"alike", kNoSchema)->clone(top(L"g")->property(L"table.x")));
        EXPECT_FALSE(top(L"g")->validates(L"alike", schema.get(), true));
        EXPECT_TRUE(top(L"g")->validates(L"alike", schema.get(), false));
    });
}

TEST_F(Depth, IsShownByAValueInTheInnermost) {
    onASmallStack([&] {
        addTables(*otherTop(L"s"))->create(L"v", metadata::kInt32, units::kNoUnit);
        const auto locator = metadata::ISchemaLocator::make(other());
        top(L"g")->create(L"table", locator->resolve(L"s.t").get());
        const auto first = top(L"g")->property(L"table.x");
        EXPECT_EQ(first->flags(), 6);
        std::wstring path = L"table";
        for (std::uint64_t level = 1; level < levels(); ++level) path += L".x";
        const int one = 1;
        EXPECT_TRUE(asPrimitive(top(L"g")->property((path + L".v").c_str())).set(&one, 0, 1));
        EXPECT_EQ(first->flags(), 2);
    });
}

TEST_F(Depth, HasNamesTextsAndLinksAtItsEnd) {
    onASmallStack([&] {
        auto inner = addGroups(top(L"g"));
        const WideString above = inner->parent()->path();
        EXPECT_TRUE(inner->rename(L"y"));
        inner->describe(L"de", L"innen");
        inner.reset();
        const std::wstring path = text(above) + L".y";
        EXPECT_EQ(text(IContainerFrontEnd::find(store(), path.c_str())->localize(L"de")), L"innen");
        const auto link = top(L"l")->create(IContainer::kLink, L"link", kNoSchema);
        ILink::to(link.get())->target(path.c_str());
        EXPECT_EQ(text(ILink::to(link.get())->follow(nullptr)->path()), path);
        EXPECT_TRUE(top(L"g")->container(L"x")->rename(L"z"));
        EXPECT_FALSE(ILink::to(link.get())->follow(nullptr));
    });
}

TEST_F(Depth, OutlivesTheClosingOfAFile) {
    onASmallStack([&] {
        const TemporaryFolder folder;
        {
            const auto file = stores::file(folder / "a.lvp", stores::tMode::kWrite);
            addGroups(IContainerFrontEnd::toplevel(file.get(), L"g"));
            file->flush();
        }
        const auto file = stores::file(folder / "a.lvp", stores::tMode::kWrite);
        const auto g = IContainerFrontEnd::find(file.get(), L"g");
        EXPECT_EQ(depth(g), levels());
        EXPECT_TRUE(g->destroy(L"x"));
        file->flush();
    });
}

// Documents end at 200,000 levels, whatever else may be deeper.
std::uint64_t levelsOfDocuments() {
    return std::min<std::uint64_t>(levels(), 199'000);
}

std::string nested(const std::string& start, const std::string& end) {
    std::string document;
    for (std::uint64_t i = 0; i < levelsOfDocuments(); ++i) document += start;
    for (std::uint64_t i = 0; i < levelsOfDocuments(); ++i) document += end;
    return document;
}

TEST_F(Depth, OfADocumentIsReadAndWritten) {
    onASmallStack([&] {
        const std::string groups = nested("<group name=\"g\">", "</group>");
        const std::string tables = nested("<table name=\"t\">", "</table>");
        read(store(), "<root version=\"1\" name=\"r\">" + groups + tables + "</root>");
        EXPECT_EQ(depth(IContainerFrontEnd::find(store(), L"g")), levelsOfDocuments());
        const std::string first = written(store());
        read(other(), first);
        EXPECT_TRUE(written(other()) == first);
        EXPECT_GT(first.size(), groups.size() + tables.size() - 30);
    });
}

TEST_F(Depth, OfADocumentIsReadIntoAContainerTwice) {
    onASmallStack([&] {
        const auto into = top(L"into");
        for (int time = 0; time < 2; ++time) {
            core::io::MemoryReader reader("<group name='whatever'>" + nested("<table name=\"t\">", "</table>") +
                                          "</group>");
            data::format::xml::IXMLFrontEnd::parse(into.get(), &reader, nullptr, nullptr, nullptr);
        }
        EXPECT_EQ(depth(into->property(L"t")), levelsOfDocuments());
    });
}

TEST_F(Depth, OfADocumentThatBreaksOffLeavesNothingOpen) {
    onASmallStack([&] {
        core::io::MemoryReader reader("<group name='top'>" + nested("<group name='x'>", "") + "</root>");
        const auto into = top(L"into");
        EXPECT_ANY_THROW(data::format::xml::IXMLFrontEnd::parse(into.get(), &reader, nullptr, nullptr, nullptr));
        EXPECT_TRUE(into->empty() || into->destroy(L"x"));
    });
}

// What would happen otherwise: a walk that calls itself for each level.
std::uint64_t recursiveDepth(IContainer& container) {
    const auto inner = container.containers()->current();
    return inner ? 1 + recursiveDepth(*inner) : 1;
}

int walkRecursively(std::uint64_t count) {
    const rlimit noCore{0, 0};
    ::setrlimit(RLIMIT_CORE, &noCore);
    std::uint64_t found = 0;
    onASmallStack([&] {
        const auto store = stores::memory();
        const auto top = IContainerFrontEnd::toplevel(store.get(), L"g");
        addGroups(top, count);
        found = recursiveDepth(*top);
    });
    return found == count ? 0 : 1;
}

TEST(DepthNotices, AWalkThatCallsItselfForEachLevel) {
    using stores::ChildProcess;
    ChildProcess shallow([](const ChildProcess::Line&) { return walkRecursively(20); });
    EXPECT_EQ(shallow.wait(), 0);
    ChildProcess deep([](const ChildProcess::Line&) { return walkRecursively(levels()); });
    EXPECT_NE(deep.wait(), 0);
}

}  // namespace
}  // namespace lumivard::platform::model
