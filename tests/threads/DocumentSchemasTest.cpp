#include <atomic>
#include <thread>

#include "tests/xml/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;

constexpr const char* kSchemaDocument =
    "<root name='schemas'><table name='Pose'><double name='position' dim='3'/><int64 name='time' dim='1'/></table>"
    "<table name='Part'><int32 name='id'>0</int32><string name='label'/><table name='size'><double name='width'/>"
    "<double name='depth'/></table><struct name='pose' type='Pose' dim='1'/></table>"
    "<table name='Tagged'><string name='tag'/></table></root>";

/// A document whose names and numbers differ from those of the other threads.
std::string documentWithSchemas(int thread) {
    const std::string number = std::to_string(thread);
    std::string document = "<root version=\"" + number + "\" name=\"r" + number + "\">";
    for (int i = 0; i < 50; ++i) {
        const std::string id = std::to_string(1000 * thread + i);
        const std::string kind = (thread + i) % 2 ? "node" : "table";
        document += "<" + kind + " name=\"p" + id + "\" class=\"" + (i % 3 ? "Part" : "Part;Tagged") + "\">" +
                    "<int32 name=\"id\">" + id + "</int32><table name=\"size\"><double name=\"depth\">" + id +
                    "</double></table>" + "<struct name=\"pose\" type=\"Pose\">" + id + " 2 3 " + number +
                    "</struct></" + kind + ">";
    }
    return document + "</root>";
}

TEST(SchemaThreads, ReadAndWriteDifferentDocumentsThroughOneLocator) {
    constexpr int kThreads = 4;
    const auto schemas = lumivard::platform::stores::memory();
    const auto locator = ISchemaLocator::make(schemas.get());
    ASSERT_EQ(readInto(schemas.get(), kSchemaDocument, locator.get()), kNone);
    for (const wchar_t* uri : {L"Part", L"Tagged", L"Pose"}) ASSERT_TRUE(locator->resolve(uri)) << uri;
    std::atomic<int> faults{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread, &faults, &locator] {
            const std::string document = documentWithSchemas(thread);
            for (int round = 0; round < 3; ++round) {
                const auto store = lumivard::platform::stores::memory();
                faults += readInto(store.get(), document, locator.get()) != kNone;
                faults += writtenFrom(store.get(), 0, locator.get()) != document;
                const unsigned int first = stored::children(store.get(), 0).at(0);
                faults += itemsOf(store.get(), first) != tItems{"id", "(label)", "size", "pose", "(tag)"};
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(faults, 0);
}

}  // namespace
