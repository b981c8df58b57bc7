#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <stdexcept>

#include "tests/fault/calls/EachRequest.h"
#include "tests/support/ClientFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace {

namespace fs = std::filesystem;
using namespace lumivard::platform::test_support;
using namespace lumivard::platform::test_support::fault;
namespace stores = lumivard::platform::stores;
using stores::tMode;
using testing::AnyOf;
using testing::ElementsAre;

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

    bool once() const { return GetParam(); }

    const FastFolder _folder;
    const fs::path _model = _folder / "model";
};

TEST_P(FileAllocations, InOpeningLeaveTheFileAsItWas) {
    for (const tMode mode : {tMode::kWrite, tMode::kRead}) {
        atEachRequest(
            once(), 1, [&] { return copied(); }, [&](const fs::path& file) { stores::file(file, mode); },
            [&](const fs::path&, const std::exception_ptr&) { EXPECT_THAT(namesInFile(), ElementsAre(L"first")); });
    }
}

TEST_P(FileAllocations, InMakingAFileLeaveNoneOrAWholeOne) {
    const auto remove = [&] {
        for (const char* name : {"new", "new-lock"}) fs::remove(_folder / name);
        return _folder / "new";
    };
    atEachRequest(
        once(), 1, remove, [](const fs::path& file) { stores::file(file, tMode::kWrite); },
        [&](const fs::path& file, const std::exception_ptr&) {
            EXPECT_THAT(namesIn(*stores::file(file, tMode::kWrite)), ElementsAre());
            for (const auto& entry : fs::directory_iterator(_folder.path())) {
                EXPECT_FALSE(entry.path().filename().string().starts_with(".")) << entry.path();
            }
        });
}

TEST_P(FileAllocations, InAFlushLeaveTheFileWithTheLastOneOrThisOne) {
    atEachRequest(
        once(), 1, [&] { return changed(); }, [](const tStore& store) { store->flush(); },
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

TEST_P(FileAllocations, InClosingLeaveTheFileWithTheLastFlushOrAll) {
    atEachRequest(
        once(), 1, [&] { return changed(); }, [](tStore& store) { store.reset(); },
        [&](const tStore&, const std::exception_ptr&) {
            EXPECT_THAT(namesInFile(), AnyOf(ElementsAre(L"first", L"second"), ElementsAre(L"first")));
        });
}

TEST_P(FileAllocations, InReadingRecordsForTheFirstTimeLeaveThemReadable) {
    const tNames whole{L"first"};
    atEachRequest(
        once(), 1, [&] { return stores::file(copied(), tMode::kRead); },
        [&](const tStore& store) {
            if (namesIn(*store) != whole) throw std::logic_error("something was not seen");
        },
        [](const tStore& store, const std::exception_ptr&) { EXPECT_THAT(namesIn(*store), ElementsAre(L"first")); });
}

INSTANTIATE_TEST_SUITE_P(That, FileAllocations, testing::Bool(),
                         [](const auto& which) { return which.param ? "FailOnce" : "FailForEver"; });

}  // namespace
