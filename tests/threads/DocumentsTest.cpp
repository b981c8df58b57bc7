#include <atomic>
#include <thread>

#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// A document whose elements, names and numbers differ from those of the other threads.
std::string documentOf(int thread) {
    const std::string number = std::to_string(thread);
    std::string document = "<root version=\"" + number + "\" name=\"r" + number + "\">";
    for (int i = 0; i < 100; ++i) {
        const std::string name = number + "_" + std::to_string(i);
        document +=
            (thread % 2 ? "<group name=\"" : "<table name=\"") + name + "\"><name locale=\"de\">N" + name + "</name>";
        document += (thread % 2 ? "<string name=\"s\">" + name + "</string>" : std::string());
        document += "<int32 name=\"i\">" + number + " " + std::to_string(i) + " 7</int32>";
        document += thread % 2 ? "</group>" : "</table>";
    }
    return document + "</root>";
}

TEST(Threads, ReadAndWriteDifferentDocumentsInDifferentStores) {
    constexpr int kThreads = 4;
    std::atomic<int> faults{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread, &faults] {
            const std::string document = documentOf(thread);
            for (int round = 0; round < 5; ++round) {
                const auto store = lumivard::platform::stores::memory();
                faults += readInto(store.get(), document) != kNone;
                faults += writtenFrom(store.get()) != document;
            }
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(faults, 0);
}

TEST(Threads, ReportFaultsOfTheirOwnDocuments) {
    constexpr int kThreads = 4;
    std::atomic<int> faults{0};
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread, &faults] {
            std::string name = "x";
            name.append(static_cast<std::size_t>(50 * thread), 'y');
            const tMessages expected(200, name + " : unknown element, skipping");
            std::string document = "<group name='g'>";
            for (std::size_t i = 0; i < expected.size(); ++i) document += "<" + name + "/>";
            const auto store = lumivard::platform::stores::memory();
            faults += readInto(store.get(), document + "</group>") != expected;
        });
    }
    for (auto& thread : threads) thread.join();
    EXPECT_EQ(faults, 0);
}

}  // namespace
