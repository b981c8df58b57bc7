#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>

#include "tests/fault/calls/EachRequest.h"
#include "tests/support/ClientFixture.h"
#include "tests/support/Failures.h"
#include "tests/support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;
using namespace lumivard::platform::test_support;
using namespace lumivard::platform::test_support::fault;
namespace stores = lumivard::platform::stores;
using stores::tMode;
using testing::AnyOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

using tStore = std::unique_ptr<IDataStore>;

/// A file store whose opening, flushing and closing runs out of memory. `true`: once; `false`: from then on.
class FileAllocations : public testing::TestWithParam<bool> {
protected:
    FileAllocations() {
        const auto store = stores::file(_model, tMode::kWrite);
        top(*store)->create(L"first", metadata::kInt32);
    }

    /// A copy of the file, which holds "first".
    fs::path copied() const {
        fs::copy_file(_model, _folder / "copy", fs::copy_options::overwrite_existing);
        return _folder / "copy";
    }
    /// An open one, in which "second" is not flushed yet.
    tStore changed() const {
        tStore store = stores::file(copied(), tMode::kWrite);
        top(*store)->create(L"second", metadata::kInt32);
        return store;
    }

    static SharedPtr<IContainer> top(IDataStore& store) { return IContainerFrontEnd::toplevel(&store, L"top"); }
    static tNames namesIn(IDataStore& store) { return names(*top(store)->properties()); }
    tNames namesInFile() const { return namesIn(*stores::file(_folder / "copy", tMode::kRead)); }

    template <class Act>
    void leaveTheFileAsItWas(Act act) const {
        atEachRequest(
            once(), 1, [&] { return copied(); }, act,
            [&](const fs::path&, const std::exception_ptr&) { EXPECT_THAT(namesInFile(), ElementsAre(L"first")); });
    }

    template <class Act>
    void leaveNoFileOrAWholeOne(Act act) const {
        const auto remove = [&] {
            for (const char* name : {"new", "new-lock", kLeftOver}) fs::remove(_folder / name);
            return _folder / "new";
        };
        atEachRequest(once(), 1, remove, act, [&](const fs::path& file, const std::exception_ptr&) {
            EXPECT_THAT(namesIn(*stores::file(file, tMode::kWrite)), ElementsAre());
            for (const auto& entry : fs::directory_iterator(_folder.path())) {
                EXPECT_FALSE(entry.path().filename().string().starts_with(".")) << entry.path();
            }
        });
    }

    template <class Act>
    void leaveTheLastFlushOrThisOne(Act act) const {
        atEachRequest(
            once(), 1, [&] { return changed(); }, act,
            [&](tStore& store, const std::exception_ptr& thrown) {
                EXPECT_THAT(namesIn(*store), ElementsAre(L"first", L"second"));
                store.reset();
                const tNames kept = namesInFile();
                EXPECT_THAT(kept, AnyOf(ElementsAre(L"first", L"second"), ElementsAre(L"first")));
                if (!thrown) {
                    EXPECT_EQ(kept.size(), 2u);
                }
            });
    }

    template <class Act>
    void leaveTheLastFlushOrAll(Act act) const {
        atEachRequest(
            once(), 1, [&] { return changed(); }, act,
            [&](const tStore&, const std::exception_ptr&) {
                EXPECT_THAT(namesInFile(), AnyOf(ElementsAre(L"first", L"second"), ElementsAre(L"first")));
            });
    }

    template <class Read>
    void leaveRecordsReadable(Read read) const {
        struct tReading {
            tStore store;
            tNames seen;
        };
        const auto judge = [](const tReading& reading, const std::exception_ptr& thrown) {
            if (!thrown) {
                EXPECT_THAT(reading.seen, ElementsAre(L"first")) << "as nothing was thrown";
            }
            EXPECT_THAT(namesIn(*reading.store), ElementsAre(L"first"));
        };
        atEachRequest(
            once(), 1,
            [&] {
                return tReading{stores::file(copied(), tMode::kRead), {}};
            },
            [&](tReading& reading) { reading.seen = read(*reading.store); }, judge);
    }

    bool once() const { return GetParam(); }

    static void create(const fs::path& file) { stores::file(file, tMode::kWrite); }
    static void flush(const tStore& store) { store->flush(); }
    static void close(tStore& store) { store.reset(); }

    // What harms do.
    static void addTo(const fs::path& file) { top(*stores::file(file, tMode::kWrite))->create(L"x", metadata::kInt32); }
    void replaceCopy() const {
        addTo(_folder / "other");
        fs::rename(_folder / "other", _folder / "copy");
    }

    static constexpr const char* kLeftOver = ".left-over";

    const FastFolder _folder;
    const fs::path _model = _folder / "model";
};

TEST_P(FileAllocations, InOpeningLeaveTheFileAsItWas) {
    for (const tMode mode : {tMode::kWrite, tMode::kRead}) {
        leaveTheFileAsItWas([mode](const fs::path& file) { stores::file(file, mode); });
    }
}

TEST_P(FileAllocations, InMakingAFileLeaveNoneOrAWholeOne) {
    leaveNoFileOrAWholeOne(create);
}

TEST_P(FileAllocations, InAFlushLeaveTheFileWithTheLastOneOrThisOne) {
    leaveTheLastFlushOrThisOne(flush);
}

TEST_P(FileAllocations, InClosingLeaveTheFileWithTheLastFlushOrAll) {
    leaveTheLastFlushOrAll(close);
}

TEST_P(FileAllocations, InReadingRecordsForTheFirstTimeLeaveThemReadable) {
    leaveRecordsReadable(namesIn);
}

// --- Each of these judgements can fail.

TEST_P(FileAllocations, ThatLeakAreSeen) {
    Leaks leaks;
    EXPECT_THAT(failuresOf([&] { leaveTheFileAsItWas(leaks.in(create)); }),
                Contains(HasSubstr("allocations::blocks()")));
}

TEST_P(FileAllocations, ThatChangeAFileInOpeningAreSeen) {
    EXPECT_THAT(failuresOf([&] { leaveTheFileAsItWas(harming(create, addTo)); }), Contains(HasSubstr("L\"x\"")));
}

TEST_P(FileAllocations, ThatLeaveHalfAFileAreSeen) {
    const auto half = [this](const fs::path&) { _folder.file("new", "half a file"); };
    EXPECT_THAT(failuresOf([&] { leaveNoFileOrAWholeOne(harming(create, half)); }),
                Contains(HasSubstr("it is not a store file")));
    const auto untidy = [this](const fs::path&) { _folder.file(kLeftOver, ""); };
    EXPECT_THAT(failuresOf([&] { leaveNoFileOrAWholeOne(harming(create, untidy)); }), Contains(HasSubstr(kLeftOver)));
}

TEST_P(FileAllocations, ThatAFlushHidesOrThatLoseTheLastOneAreSeen) {
    EXPECT_THAT(failuresOf([&] { leaveTheLastFlushOrThisOne(hiding(flush)); }), Contains(HasSubstr("kept.size()")));
    const auto losing = [this](const tStore&) { replaceCopy(); };
    EXPECT_THAT(failuresOf([&] { leaveTheLastFlushOrThisOne(harming(flush, losing)); }), Contains(HasSubstr("kept")));
}

TEST_P(FileAllocations, ThatLoseAllInClosingAreSeen) {
    const auto losing = [this](tStore& store) {
        store.reset();
        allocations::goOn();
        replaceCopy();
    };
    EXPECT_THAT(failuresOf([&] { leaveTheLastFlushOrAll(losing); }), Contains(HasSubstr("namesInFile()")));
}

TEST_P(FileAllocations, ThatReadingHidesAreSeen) {
    const auto seesLess = [](IDataStore& store) {
        try {
            return namesIn(store);
        } catch (...) {
            return tNames();
        }
    };
    EXPECT_THAT(failuresOf([&] { leaveRecordsReadable(seesLess); }), Contains(HasSubstr("as nothing was thrown")));
}

INSTANTIATE_TEST_SUITE_P(That, FileAllocations, testing::Bool(),
                         [](const auto& which) { return which.param ? "FailOnce" : "FailForEver"; });

}  // namespace
