// Long work that is interrupted.
#include "tools/base/Watch.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/stores.h"
#include "tests/support/TemporaryFolder.h"
#include "tools/base/ChangedStore.h"
#include "tools/base/ExitStatus.h"
#include "tools/base/WatchedStore.h"

namespace {

using namespace lumivard::platform;
using namespace lvp::tool;

class WatchEnds : public testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(On, WatchEnds, testing::Values(SIGINT, SIGTERM, SIGHUP));

TEST_P(WatchEnds, TheWorkAtItsNextStepWithAFailureThatSaysSo) {
    Watch watch("import", "bytes");
    watch.reached(1);
    EXPECT_FALSE(Watch::interrupted());
    std::raise(GetParam());
    EXPECT_TRUE(Watch::interrupted());
    try {
        watch.advance();
        FAIL() << "the work goes on";
    } catch (const Interrupted& interrupted) {
        EXPECT_EQ(interrupted.work, "import");
    }
}

TEST_P(WatchEnds, TheProcessWhenTheUserInsists) {
    const auto insist = [signal = GetParam()] {
        Watch watch("import", "bytes");
        std::raise(signal);
        std::raise(signal);
    };
    EXPECT_EXIT(insist(), testing::KilledBySignal(GetParam()), "");
}

TEST_P(WatchEnds, NothingThatIsToGoOnWhateverHappens) {
    const auto before = std::signal(GetParam(), SIG_IGN);  // as nohup does it
    {
        Watch watch("import", "bytes");
        std::raise(GetParam());
        EXPECT_NO_THROW(watch.advance());
    }
    EXPECT_EQ(std::signal(GetParam(), before), SIG_IGN);
}

TEST(Watch, LeavesSignalsAsTheyWere) {
    const auto before = std::signal(SIGINT, SIG_DFL);
    { Watch watch("import", "bytes"); }
    EXPECT_EQ(std::signal(SIGINT, before), SIG_DFL);
}

TEST(Watch, ForgetsAnEndThatWasAskedOfEarlierWork) {
    {
        Watch watch("import", "bytes");
        std::raise(SIGINT);
    }
    Watch watch("export", "bytes");
    EXPECT_NO_THROW(watch.advance());
}

TEST(Watch, OfAPartOfWorkEndsItWhenTheWholeWasInterrupted) {
    Watch whole("view", "looks");
    std::raise(SIGINT);
    Watch part("opening", "pages");
    EXPECT_THROW(part.advance(), Interrupted);
}

TEST(Watch, OfAPartOfWorkLeavesTheWholeToBeInterrupted) {
    Watch whole("view", "looks");
    { Watch part("opening", "pages"); }
    std::raise(SIGINT);
    EXPECT_THROW(whole.advance(), Interrupted);
}

TEST(Watch, HearsTheProgressOfALibrary) {
    Watch watch("compact", "steps");
    EXPECT_TRUE(watch.listener()(3, 10));
    EXPECT_EQ(watch.done(), 3u);
    std::raise(SIGINT);
    EXPECT_THROW(watch.listener()(4, 10), Interrupted);
}

// --- A store

class WatchedFile : public testing::Test {
protected:
    std::string file() const { return (_folder / "store.lvp").string(); }
    bool holds(const wchar_t* path) const {
        const auto store = stores::file(file(), stores::tMode::kRead);
        return static_cast<bool>(data::structure::IContainerFrontEnd::find(store.get(), path));
    }

private:
    TemporaryFolder _folder;
};

TEST_F(WatchedFile, IsAsItWasAfterWorkThatWasInterrupted) {
    {
        ChangedStore store(file(), true);
        data::structure::IContainerFrontEnd::toplevel(&*store, L"old");
        store.keep();
    }
    {
        ChangedStore store(file(), false);
        Watch watch("cp", "steps");
        WatchedStore watched(*store, watch);
        data::structure::IContainerFrontEnd::toplevel(&watched, L"new");
        watched.flush();
        std::raise(SIGINT);
        EXPECT_THROW(data::structure::IContainerFrontEnd::toplevel(&watched, L"more"), Interrupted);
    }
    EXPECT_TRUE(holds(L"old"));
    EXPECT_FALSE(holds(L"new"));
}

TEST_F(WatchedFile, IsNotCalledDamagedWhenItsExaminationIsInterrupted) {
    ChangedStore store(file(), true);
    data::structure::IContainerFrontEnd::toplevel(&*store, L"top");
    Watch watch("check", "steps");
    WatchedStore watched(*store, watch);
    std::raise(SIGINT);
    EXPECT_THROW(data::check::examine(watched), Interrupted);
}

TEST_F(WatchedFile, IsNotReadIntoByADocumentThatIsInterrupted) {
    ChangedStore store(file(), true);
    Watch watch("import", "bytes");
    WatchedStore watched(*store, watch);
    core::io::MemoryReader reader(std::string("<root name='r'><group name='g'/></root>"));
    std::raise(SIGINT);
    try {
        data::format::xml::IXMLFrontEnd::parse(&watched, &reader, nullptr, nullptr, nullptr);
    } catch (const Interrupted&) {
        // as well as when it is told as a document that breaks off
    }
    EXPECT_THROW(watch.advance(), Interrupted);
    EXPECT_EQ(store->extent(), 0u);
}

TEST_F(WatchedFile, HasWhatWasKept) {
    {
        ChangedStore store(file(), true);
        Watch watch("cp", "steps");
        WatchedStore watched(*store, watch);
        data::structure::IContainerFrontEnd::toplevel(&watched, L"new");
        EXPECT_GT(watch.done(), 0u) << "what is done counts";
        store.keep();
    }
    EXPECT_TRUE(holds(L"new"));
}

TEST_F(WatchedFile, OfSomebodyElseStaysThoughItWasNotThereBefore) {
    // What another process makes between the question and the opening.
    {
        ChangedStore other(file(), true);
        data::structure::IContainerFrontEnd::toplevel(&*other, L"old");
        other.keep();
    }
    { ChangedStore store(file(), true); }
    EXPECT_TRUE(holds(L"old"));
}

TEST_F(WatchedFile, IsNotThereWhenItWasMadeForNothing) {
    {
        ChangedStore store(file(), true);
        data::structure::IContainerFrontEnd::toplevel(&*store, L"new");
        EXPECT_TRUE(std::filesystem::exists(file()));
    }
    EXPECT_FALSE(std::filesystem::exists(file()));
    EXPECT_FALSE(std::filesystem::exists(file() + "-lock"));
}

}  // namespace
