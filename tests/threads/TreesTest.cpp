// Several threads on one store, and documents on several threads: what comes out is what one thread would have made.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "lumivard/platform/stores.h"
#include "tests/end_to_end/Documents.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/threads/ThreadWork.h"

namespace lumivard::platform::model {
namespace {

using test_support::effort;
using test_support::read;
using test_support::written;

unsigned int steps() {
    return static_cast<unsigned int>(effort("LVP_THREAD_STEPS", test_support::usually(4000)));
}

/// What the work comes to when one thread does it all, one share after the other.
std::string sequential(std::uint64_t seed, unsigned int steps) {
    const auto store = stores::memory();
    const auto schemas = stores::memory();
    ThreadWork work(*store, *schemas, seed);
    for (unsigned int number = 0; number < kThreads; ++number) work.run(number, steps);
    return work.result();
}

std::string together(IDataStore& store, IDataStore& schemas, std::uint64_t seed, unsigned int steps) {
    ThreadWork work(store, schemas, seed);
    onThreads([&](unsigned int number) { work.run(number, steps); });
    return work.result();
}

TEST(Threads, WorkOnOneStoreInMemory) {
    const std::uint64_t seed = test_support::seed();
    const unsigned int each = steps();
    const auto store = stores::memory();
    const auto schemas = stores::memory();
    EXPECT_TRUE(together(*store, *schemas, seed, each) == sequential(seed, each));
}

TEST(Threads, WorkOnOneStoreInAFile) {
    const std::uint64_t seed = test_support::seed();
    const unsigned int each = steps() / 4;
    const TemporaryFolder folder;
    std::string result;
    std::string before;
    {
        const auto store = stores::file(folder / "a.lvp", stores::tMode::kWrite);
        const auto schemas = stores::file(folder / "b.lvp", stores::tMode::kWrite);
        result = together(*store, *schemas, seed, each);
        before = written(store.get());
    }
    EXPECT_TRUE(result == sequential(seed, each));
    EXPECT_TRUE(written(stores::file(folder / "a.lvp", stores::tMode::kRead).get()) == before);
}

TEST(ThreadsNotice, AThreadThatDoesSomethingElse) {
    const std::uint64_t seed = test_support::seed();
    const auto store = stores::memory();
    const auto schemas = stores::memory();
    ThreadWork work(*store, *schemas, seed);
    onThreads([&](unsigned int number) { work.run(number, number == 3 ? 300 : 200); });
    EXPECT_FALSE(work.result() == sequential(seed, 200));
}

TEST(Threads, MakeOneContainerWhenAllComeFirst) {
    for (int round = 0; round < 20; ++round) {
        const auto store = stores::memory();
        onThreads([&](unsigned int) { data::structure::IContainerFrontEnd::toplevel(store.get(), L"shared"); });
        EXPECT_EQ(written(store.get()),
                  "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<root version=\"1\" name=\"root\"><group name=\"shared\"/></root>");
    }
}

TEST(Threads, DropCopiesOfOnePointer) {
    const auto store = stores::memory();
    auto top = data::structure::IContainerFrontEnd::toplevel(store.get(), L"top");
    onThreads([&, shared = top](unsigned int) {
        for (int i = 0; i < 1000; ++i) {
            const auto copy = shared;
            EXPECT_TRUE(copy);
        }
    });
    EXPECT_EQ(top.counter()->countUse(), 1);
}

constexpr const char* kSchemas =
    "<root name='schemas' version='1'><table name='Pose'><double name='position' dim='3'/><int64 name='time' dim='1'/>"
    "</table><table name='Part'><int32 name='id'>0</int32><string name='label'/><table name='size'><double name='width'"
    "/><double name='depth'/></table><struct name='pose' type='Pose' dim='1'/></table><table name='Tagged'>"
    "<string name='tag'/></table></root>";

/// A document whose names and numbers differ from those of the others.
std::string documentOf(unsigned int number) {
    std::string document = "<root version=\"" + std::to_string(number) + "\" name=\"r\">";
    for (unsigned int i = 0; i < 60; ++i) {
        const std::string id = std::to_string(1000 * number + i);
        const std::string kind = (number + i) % 2 ? "node" : "table";
        document += "<" + kind + " name=\"p" + id + "\" class=\"" + (i % 3 ? "Part" : "Part;Tagged") +
                    "\"><name locale=\"de\">Teil " + id + "</name><int32 name=\"id\">" + id +
                    "</int32><struct name=\"pose\" type=\"Pose\">" + id + " 2 3 4</struct></" + kind + ">";
    }
    return document + "</root>";
}

TEST(Threads, ReadAndWriteDocumentsWithSchemasOfOneStore) {
    const auto schemas = stores::memory();
    const auto locator = data::metadata::ISchemaLocator::make(schemas.get());
    read(schemas.get(), kSchemas, locator.get());
    for (const wchar_t* uri : {L"Part", L"Tagged", L"Pose"}) ASSERT_TRUE(locator->resolve(uri));
    std::vector<std::string> alone;
    const auto pass = [&](unsigned int number) {
        const auto store = stores::memory();
        read(store.get(), documentOf(number), locator.get());
        return written(store.get(), locator.get());
    };
    for (unsigned int number = 0; number < kThreads; ++number) alone.push_back(pass(number));
    EXPECT_NE(alone[0], alone[1]);
    onThreads([&](unsigned int number) {
        for (int round = 0; round < 5; ++round) EXPECT_EQ(pass(number), alone[number]);
    });
    EXPECT_NE(alone[0].find("pose"), std::string::npos);
}

TEST(Threads, FindNewSchemasForTheirDocumentsUnderTheGuardOfTheStoreOfSchemas) {
    const auto schemas = stores::memory();
    read(schemas.get(), kSchemas, data::metadata::ISchemaLocator::make(schemas.get()).get());
    const auto locator = data::metadata::ISchemaLocator::make(schemas.get());
    std::vector<std::string> results(kThreads);
    onThreads([&](unsigned int number) {
        const auto store = stores::memory();
        const std::unique_ptr<IDataStore::ILock> guard(schemas->lock());
        read(store.get(), documentOf(0), locator.get());
        results[number] = written(store.get(), locator.get());
    });
    for (const std::string& result : results) EXPECT_EQ(result, results[0]);
    EXPECT_NE(results[0].find("Part;Tagged"), std::string::npos);
}

}  // namespace
}  // namespace lumivard::platform::model
