// Each kind of damage to a file's pages is found by its name, and a file is used only where there is none.
#include <cstring>
#include <functional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "stores/lmdb/PageFormat.h"
#include "tests/stores/Records.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores {
namespace {

namespace page = lmdb::page;

/// The bytes of a store file with a branch page over leaves, long values, and free pages.
class Pages {
public:
    static constexpr std::size_t kSize = 4096;

    explicit Pages(std::string bytes) : _bytes(std::move(bytes)) {}

    std::string& bytes() { return _bytes; }
    page::Meta newest() const { return meta(meta(0).transaction < meta(1).transaction ? 1 : 0); }
    std::size_t root() const { return newest().records.root * kSize; }

    template <class Number>
    Number get(std::size_t at) const {
        return page::number<Number>(std::as_bytes(std::span(_bytes)), at);
    }
    template <class Number>
    void put(std::size_t at, Number number) {
        std::memcpy(_bytes.data() + at, &number, sizeof number);
    }

    /// Where a node of the page at `start` lies.
    std::size_t node(std::size_t start, std::size_t index) const {
        return start + get<std::uint16_t>(start + page::kHeader + 2 * index);
    }

    /// The leaf under a node of the root.
    std::size_t leaf(std::size_t index) const { return get<std::uint32_t>(node(root(), index)) * kSize; }

    /// A node, in any leaf, whose value lies outside of it.
    std::size_t longNode() const {
        for (std::size_t each = 0;; ++each) {
            const std::size_t start = leaf(each);
            const std::size_t nodes = (get<std::uint16_t>(start + page::kLowerAt) - page::kHeader) / 2;
            for (std::size_t index = 0; index < nodes; ++index) {
                if (get<std::uint16_t>(node(start, index) + 4) == page::kBigData) return node(start, index);
            }
        }
    }

private:
    page::Meta meta(std::size_t index) const {
        return page::meta(std::as_bytes(std::span(_bytes)).subspan(index * kSize, page::kMetaEnd));
    }

    std::string _bytes;
};

class PageVerifier : public testing::Test {
protected:
    PageVerifier() {
        const auto store = file(path(), tMode::kWrite);
        for (int record = 0; record < 400; ++record) create(*store, std::string(100, static_cast<char>(record)));
        for (int record = 0; record < 3; ++record) create(*store, std::string(10000, 'l'));
        store->flush();
        for (unsigned int offset = 100; offset < 200; ++offset) store->erase(offset);
        store->flush();
    }

    std::filesystem::path path() const { return folder / "a.lvp"; }

    /// The codes that are found after a change to the file's bytes.
    std::vector<std::string> found(const std::function<void(Pages&)>& change) {
        Pages pages(bytesOf(path()));
        change(pages);
        folder.file("a.lvp", pages.bytes());
        const FileReport report = verify(path(), true);
        EXPECT_EQ(report.faultCount, report.faults.size());
        std::vector<std::string> codes;
        for (const FileFault& fault : report.faults) codes.push_back(fault.code);
        if (report.faultCount != 0 && codes.front() != "container.checksum") {
            EXPECT_THROW(file(path(), tMode::kRead, {.verify = true}), StoreError);
        }
        return codes;
    }

    TemporaryFolder folder;
};

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(PageVerifier, FindsNothingInASoundFileAndCountsIt) {
    const FileReport report = verify(path(), true);
    EXPECT_THAT(report.faults, IsEmpty());
    EXPECT_EQ(report.format, 2U);
    EXPECT_EQ(report.records, 303U);
    EXPECT_EQ(report.pageSize, 4096U);
    EXPECT_EQ(report.length, std::filesystem::file_size(path()));
    EXPECT_GT(report.freePages, 0U);
    EXPECT_GE(report.pages, 2 + report.freePages);
}

TEST_F(PageVerifier, FindsAFileThatWasCut) {
    EXPECT_THAT(found([](Pages& pages) { pages.bytes().resize(3 * Pages::kSize); }), ElementsAre("container.length"));
}

TEST_F(PageVerifier, FindsMetasThatMakeNoSense) {
    EXPECT_THAT(found([](Pages& pages) { pages.put<std::uint32_t>(Pages::kSize + 20, 7); }),
                ElementsAre("container.meta"));
}

// A number of pages that overflows when one is added to it, and one that no file could have.
TEST_F(PageVerifier, FindsANumberOfPagesThatMakesNoSense) {
    for (const std::uint64_t last : {~std::uint64_t{0}, ~std::uint64_t{0} - 1, std::uint64_t{1} << 48}) {
        const auto many = [&](Pages& pages) {
            pages.put<std::uint64_t>(pages.newest().page * Pages::kSize + page::kMetaEnd - 16, last);
        };
        EXPECT_THAT(found(many), ElementsAre("container.meta")) << last;
    }
}

TEST_F(PageVerifier, FindsPagesThatWouldLieBehindTheFile) {
    const auto many = [](Pages& pages) {
        pages.put<std::uint64_t>(pages.newest().page * Pages::kSize + page::kMetaEnd - 16, std::uint64_t{1} << 26);
    };
    EXPECT_THAT(found(many), ElementsAre("container.free"));
}

TEST_F(PageVerifier, FindsAMetaThatWouldHideTheNewestState) {
    const auto older = [](Pages& pages) {
        const page::Meta newest = pages.newest();
        pages.put<std::uint64_t>(newest.page * Pages::kSize + page::kMetaEnd - 8, newest.transaction - 2);
    };
    EXPECT_THAT(found(older), ElementsAre("container.meta"));
}

TEST_F(PageVerifier, FindsARootThatIsAnotherState) {
    const auto older = [](Pages& pages) {
        const std::size_t newest = pages.newest().page * Pages::kSize;
        const std::size_t other = Pages::kSize - newest;
        const std::size_t records = page::kHeader + 24 + page::kTree;
        pages.bytes().replace(newest + records, page::kTree, pages.bytes().substr(other + records, page::kTree));
    };
    EXPECT_THAT(found(older), ElementsAre("container.meta"));
}

TEST_F(PageVerifier, FindsAPageInThePlaceOfAnother) {
    EXPECT_THAT(found([](Pages& pages) { pages.put<std::uint64_t>(pages.leaf(1), 99); }), Contains("container.page"));
}

TEST_F(PageVerifier, FindsAPageOfAnotherKind) {
    EXPECT_THAT(found([](Pages& pages) { pages.put(pages.leaf(1) + page::kFlagsAt, page::kBranch); }),
                Contains("container.page"));
}

TEST_F(PageVerifier, FindsNodesThatLeaveTheirPage) {
    EXPECT_THAT(found([](Pages& pages) { pages.put<std::uint16_t>(pages.leaf(1) + page::kHeader, 4094); }),
                Contains("container.page"));
    EXPECT_THAT(found([](Pages& pages) { pages.put<std::uint16_t>(pages.node(pages.leaf(2), 0) + 2, 1); }),
                Contains("container.page"));
}

TEST_F(PageVerifier, FindsNodesThatOverlap) {
    const auto overlap = [](Pages& pages) {
        const std::size_t leaf = pages.leaf(1);
        pages.put(leaf + page::kHeader, static_cast<std::uint16_t>(pages.node(leaf, 1) - leaf + 8));
    };
    EXPECT_THAT(found(overlap), Contains("container.page"));
}

TEST_F(PageVerifier, FindsOddFreeSpaceAndTooManyNodes) {
    EXPECT_THAT(found([](Pages& pages) { ++pages.bytes()[pages.leaf(1) + page::kUpperAt]; }),
                Contains("container.page"));
    EXPECT_THAT(found([](Pages& pages) { pages.put<std::uint16_t>(pages.leaf(2) + page::kLowerAt, 4000); }),
                Contains("container.page"));
}

TEST_F(PageVerifier, FindsGapsBetweenNodes) {
    const auto wider = [](Pages& pages) {
        const std::size_t root = pages.root();
        pages.put(root + page::kUpperAt, pages.get<std::uint16_t>(root + page::kLowerAt));
    };
    EXPECT_THAT(found(wider), Contains("container.page")) << "a page of two nodes must not look full";
}

TEST_F(PageVerifier, FindsTransactionsThatCannotBe) {
    const auto far = [](Pages& pages) {
        for (const std::uint64_t index : {std::uint64_t{0}, std::uint64_t{1}}) {
            pages.put<std::uint64_t>(index * Pages::kSize + page::kMetaEnd - 8, ~std::uint64_t{0} - 1 + index);
        }
    };
    EXPECT_THAT(found(far), ElementsAre("container.meta"));
}

TEST_F(PageVerifier, FindsAListOfFreePagesOfNoTransaction) {
    const auto none = [](Pages& pages) {
        const std::size_t leaf = pages.newest().free.root * Pages::kSize;
        pages.put<std::uint64_t>(pages.node(leaf, 0) + 8, 0);
    };
    EXPECT_THAT(found(none), Contains("container.free"));
}

TEST_F(PageVerifier, FindsAReferenceBehindTheLastPage) {
    EXPECT_THAT(found([](Pages& pages) { pages.put<std::uint32_t>(pages.node(pages.root(), 1), 1 << 30); }),
                Contains("container.page"));
}

TEST_F(PageVerifier, FindsKeysOutOfOrder) {
    const auto swapped = [](Pages& pages) {
        const std::size_t leaf = pages.leaf(1);
        pages.put<std::uint64_t>(pages.node(leaf, 1) + 8, pages.get<std::uint64_t>(pages.node(leaf, 0) + 8));
    };
    EXPECT_THAT(found(swapped), Contains("container.order"));
}

TEST_F(PageVerifier, FindsKeysThatBelongToAnotherPage) {
    const auto misplaced = [](Pages& pages) { pages.put<std::uint64_t>(pages.node(pages.leaf(1), 0) + 8, 0); };
    EXPECT_THAT(found(misplaced), Contains("container.order"));
}

TEST_F(PageVerifier, FindsAPageThatIsUsedTwice) {
    const auto twice = [](Pages& pages) {
        const std::size_t node = pages.longNode();
        const std::size_t other = node + 16;
        pages.put<std::uint64_t>(other, pages.leaf(0) / Pages::kSize);
    };
    EXPECT_THAT(found(twice), Contains("container.page"));
    const auto child = [](Pages& pages) {
        pages.put<std::uint32_t>(pages.node(pages.root(), 1), pages.get<std::uint32_t>(pages.node(pages.root(), 0)));
    };
    EXPECT_THAT(found(child), Contains("container.shared"));
}

TEST_F(PageVerifier, FindsALongValueThatLeavesTheFile) {
    EXPECT_THAT(found([](Pages& pages) {
                    const std::size_t first = pages.get<std::uint64_t>(pages.longNode() + 16) * Pages::kSize;
                    pages.put<std::uint32_t>(first + page::kCountAt, 1 << 20);
                }),
                Contains("container.page"));
}

TEST_F(PageVerifier, FindsAWrongListOfFreePages) {
    const auto lengthened = [](Pages& pages) {
        const std::size_t leaf = pages.newest().free.root * Pages::kSize;
        pages.put<std::uint64_t>(pages.node(leaf, 0) + 16, 1000);
    };
    EXPECT_THAT(found(lengthened), Contains("container.free"));
}

TEST_F(PageVerifier, FindsAFreePageThatIsInUse) {
    const auto inUse = [](Pages& pages) {
        const std::size_t leaf = pages.newest().free.root * Pages::kSize;
        pages.put<std::uint64_t>(pages.node(leaf, 0) + 24, pages.leaf(0) / Pages::kSize);
    };
    EXPECT_THAT(found(inUse), Contains("container.free"));
}

TEST_F(PageVerifier, FindsAWrongNumberOfEntries) {
    const auto counted = [](Pages& pages) {
        const std::size_t meta = pages.newest().page * Pages::kSize;
        ++pages.bytes()[meta + page::kHeader + 24 + page::kTree + 32];
    };
    EXPECT_THAT(found(counted), ElementsAre("container.count"));
}

TEST_F(PageVerifier, FindsARecordThatIsNotAsItWasWrittenAndRefusesItAlone) {
    const auto changed = [](Pages& pages) { ++pages.bytes()[pages.node(pages.leaf(0), 0) + 20]; };
    EXPECT_THAT(found(changed), ElementsAre("container.checksum"));
    const auto store = file(path(), tMode::kRead, {.verify = true});
    EXPECT_EQ(messageOf<StoreError>([&] { store->size(0); }), "Cannot read record 0 of the store \"" + path().string() +
                                                                  "\": it is damaged: its checksum is another one.");
    EXPECT_EQ(store->size(1), 100U);
}

TEST_F(PageVerifier, FindsALongRecordThatIsNotAsItWasWritten) {
    const auto changed = [](Pages& pages) {
        ++pages.bytes()[pages.get<std::uint64_t>(pages.longNode() + 16) * Pages::kSize + 9000];
    };
    EXPECT_THAT(found(changed), ElementsAre("container.checksum"));
}

TEST_F(PageVerifier, LooksAtChecksumsOnDemandAlone) {
    found([](Pages& pages) { ++pages.bytes()[pages.node(pages.leaf(0), 0) + 20]; });
    EXPECT_EQ(verify(path(), false).faultCount, 0U);
}

TEST_F(PageVerifier, FindsAHeaderThatIsNotAsItWasWritten) {
    const auto everyHeader = [&](Pages& pages) {
        for (std::size_t at = pages.bytes().find("LVPSTORE"); at != std::string::npos;
             at = pages.bytes().find("LVPSTORE", at + 1)) {
            ++pages.bytes()[at + 24];
        }
    };
    EXPECT_THAT(found(everyHeader), ElementsAre("container.header"));
    EXPECT_THROW(file(path(), tMode::kRead), StoreError);
}

TEST_F(PageVerifier, RefusesFilesThatAreNone) {
    EXPECT_THROW(verify(folder / "missing.lvp", false), StoreError);
    EXPECT_THAT(messageOf<StoreError>([&] { verify(folder.file("text", "not a store"), false); }),
                testing::HasSubstr("Cannot examine the store"));
}

}  // namespace
}  // namespace lumivard::platform::stores
