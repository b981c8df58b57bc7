// A tree in a database that several processes change at the same time, against a plain model of it.
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/stores/Postgres.h"
#include "tests/postgres/MisusedStores.h"
#include "tests/postgres/Participant.h"
#include "tests/postgres/Server.h"
#include "tests/stores/ChildProcess.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::model {
namespace {

using stores::ChildProcess;
using stores::Server;
using stores::tMode;
using test_support::effort;
using test_support::seed;
using tLock = std::unique_ptr<IDataStore::ILock>;
using tStore = std::unique_ptr<IDataStore>;

constexpr unsigned int kProcesses = SharedModel::kProcesses;
constexpr unsigned int kVictim = 3;       // the process that is killed
constexpr unsigned int kExposed = 12345;  // what it says when it may be killed

void expectNone(const std::string& differences) {
    EXPECT_TRUE(differences.empty()) << differences;
}

/// A store in the database, which goes at the end.
class NewStore {
public:
    NewStore() {
        static int number = 0;
        _name = "model " + std::to_string(::getpid()) + " " + std::to_string(++number);
        stores::runInPostgres(location(), stores::postgresCreation(location()));
    }
    ~NewStore() {
        try {
            stores::runInPostgres(location(), stores::postgresRemoval(location()));
        } catch (const std::exception& error) {
            ADD_FAILURE() << error.what();
        }
    }
    NewStore(const NewStore&) = delete;
    NewStore& operator=(const NewStore&) = delete;

    /// The server's parameters as a location has them. A busy machine may let somebody wait long for a guard.
    std::string location(const std::string& more = {}) const {
        std::istringstream parameters(std::getenv("LVP_POSTGRES"));
        std::string location = "postgresql://?deadline=60000";
        for (std::string parameter; parameters >> parameter;) location += "&" + parameter;
        std::string name = _name;
        for (std::size_t at; (at = name.find(' ')) != std::string::npos;) name.replace(at, 1, "%20");
        return location + "&store=" + name + more;
    }

    tStore open(const std::string& more = {}) const { return stores::postgres(location(more), tMode::kWrite); }

    /// Over an engine that can be told more than a location can.
    stores::PostgresEngine::Settings settings() const {
        auto settings = Server::settings(_name);
        settings.deadline = std::chrono::seconds(60);
        return settings;
    }

private:
    std::string _name;
};

/// What four processes do to one tree.
class TreeProcesses : public testing::Test {
protected:
    using tOpen = std::function<tStore(unsigned int process)>;

    void SetUp() override {
        if (!Server::isThere()) GTEST_SKIP() << "no server was named by LVP_POSTGRES: see scripts/test-postgres.sh";
        store = std::make_unique<NewStore>();
        // No process uses what another one has opened: all of them are made while this one has nothing open.
        ChildProcess maker([this](const ChildProcess::Line&) {
            const tStore made = store->open();
            for (const wchar_t* const top : kTops) {
                data::structure::IContainerFrontEnd::toplevel(made.get(), top);
            }
            OperationLog::make(*made);
            made->flush();
            return 0;
        });
        ASSERT_EQ(maker.wait(), 0);
    }

    /// How the processes open the store: one that keeps no guard, and of which the others hear little; one that keeps
    /// few records; two as everybody does.
    tStore openUsually(unsigned int process) const {
        if (process == 1) return store->open("&cache=65536");
        if (process != 0) return store->open();
        auto settings = store->settings();
        settings.history = 16;
        auto engine = std::make_unique<stores::PostgresEngine>(std::move(settings), tMode::kWrite);
        return std::make_unique<stores::Core>("the store", std::move(engine), tMode::kWrite);
    }

    /// Lets them all work until they have done so many operations together. Gives the differences that they found.
    std::string work(std::uint64_t operations, const tOpen& open) {
        const std::uint64_t first = seed();
        std::uint64_t begun = 0;
        const auto start = [&](unsigned int process) {
            const std::uint64_t number = first + begun++;
            return std::make_unique<ChildProcess>([&, process, number](const ChildProcess::Line& line) {
                Participant::tPlan plan{process, number, operations};
                if (process == kVictim) plan.expose = [&line] { line.tell(kExposed); };
                plan.isOver = [this] { return std::filesystem::exists(folder / "over"); };
                plan.fail = [&](const std::string& difference) {
                    std::ofstream(fileOf(process), std::ios::binary) << difference;
                    std::ofstream(folder / "over") << '\n';
                    ::_exit(1);
                };
                Participant([&] { return open(process); }, plan).run();
                return 0;
            });
        };
        std::array<std::unique_ptr<ChildProcess>, kProcesses> processes;
        for (unsigned int process = 0; process < kProcesses; ++process) processes[process] = start(process);
        while (processes[kVictim]->hear() == kExposed) {
            processes[kVictim]->kill();
            ++killed;
            processes[kVictim] = start(kVictim);
        }
        std::ostringstream differences;
        for (unsigned int process = 0; process < kProcesses; ++process) {
            const int status = processes[process]->wait();
            if (status == 1) differences << std::ifstream(fileOf(process), std::ios::binary).rdbuf() << '\n';
            if (status != 0 && status != 1)
                differences << "process " << process << " has ended with " << status << '\n';
        }
        return differences.str();
    }

    /// Repeats the whole log and compares the tree with what comes of it.
    std::string compareAll() {
        const tStore opened = store->open();
        const std::unique_ptr<RealTree> tree = RealTree::kept(*opened);
        TreeClient real(*tree);
        SharedModel model;
        const tLock guard(opened->lock());
        OperationLog log(*opened);
        std::array<std::size_t, kProcesses> done{};
        for (const tDeed& deed : log.news()) {
            model.repeat(deed);
            done.at(deed.process) += deed.operations.size();
        }
        std::cout << log.operations() << " operations:";
        for (const std::size_t each : done) std::cout << ' ' << each;
        std::cout << "; killed " << killed << " times" << std::endl;
        return differenceBetween(real, model.client(0));
    }

    /// What the checker says of the store without the log, but for notes. Texts that are none and names that are there
    /// twice are what some operations make.
    std::string findings() {
        {
            const tStore opened = store->open();
            const tLock guard(opened->lock());
            OperationLog(*opened).remove();
        }
        const tStore opened = store->open();
        data::check::Options options;
        options.keep = SIZE_MAX;
        options.without = {"record.text-character", "record.text-end", "record.text-length", "set.duplicate-name"};
        std::string found;
        for (const data::check::Finding& finding : data::check::examine(*opened, options).findings) {
            if (finding.severity != data::check::tSeverity::kNote) found += std::string(finding.code) + "\n";
        }
        return found;
    }

    std::filesystem::path fileOf(unsigned int process) const { return folder / std::to_string(process); }

    const TemporaryFolder folder;
    std::unique_ptr<NewStore> store;
    unsigned int killed = 0;
};

TEST_F(TreeProcesses, ChangeATreeOfStructsOneAfterTheOther) {
    const std::uint64_t operations = effort("LVP_PROCESS_OPERATIONS", test_support::kSanitized ? 1500 : 4000);
    expectNone(work(operations, [this](unsigned int process) { return openUsually(process); }));
    expectNone(compareAll());
    EXPECT_EQ(findings(), "");
    EXPECT_GT(killed, 0U);
}

using data::structure::IContainer;
using data::structure::IContainerFrontEnd;

/// Makes a container with a property, another container and a table in it.
void makeContent(IDataStore& store) {
    const auto made = IContainerFrontEnd::toplevel(&store, L"A")->create(IContainer::kGroup, L"x", nullptr);
    made->create(IContainer::kGroup, L"y", nullptr);
    const int number = 7;
    made->create(L"p", metadata::kInt32)->set(&number, 0, 1);
    made->create(L"t", nullptr)->create(L"q", metadata::kInt32, units::kNoUnit);
    store.flush();
}

TEST_F(TreeProcesses, LeaveNeitherCountsNorAnUnfinishedGuardWhenTheyAreKilled) {
    ChildProcess victim([this](const ChildProcess::Line& line) {
        const tStore opened = store->open();
        makeContent(*opened);
        const auto x = IContainerFrontEnd::find(opened.get(), L"A.x");
        const auto y = x->container(L"y");
        const auto p = x->property(L"p");
        const tLock guard(opened->lock());
        x->create(IContainer::kGroup, L"unfinished", nullptr);
        y->describe(L"de", L"nie");
        line.tell(1);
        return static_cast<int>(line.hear());
    });
    ASSERT_EQ(victim.hear(), 1U);
    const ChildProcess living([this](const ChildProcess::Line& line) {
        const tStore opened = store->open();  // while the other one has the guard
        auto x = IContainerFrontEnd::find(opened.get(), L"A.x");
        const auto top = x->parent();
        line.tell(x->has(L"unfinished") ? 1 : 0);
        line.tell(top->destroy(L"x") ? 1 : 0);
        x.reset();
        line.tell(top->destroy(L"x") ? 1 : 0);
        return 0;
    });
    victim.kill();
    EXPECT_EQ(living.hear(), 0U) << "what was written under the guard has gone with it";
    EXPECT_EQ(living.hear(), 0U) << "its own object is in the way";
    EXPECT_EQ(living.hear(), 1U) << "those of the other one are not";
}

TEST_F(TreeProcesses, ShowNothingOfWhatAnotherOneHasDestroyed) {
    const tStore mine = store->open();
    const tStore theirs = store->open();
    makeContent(*theirs);
    const auto x = IContainerFrontEnd::find(mine.get(), L"A.x");
    const auto p = x->property(L"p");
    metadata::IPrimitive* const number = metadata::IPrimitive::to(p.get());
    const auto t = x->property(L"t");
    metadata::ITable* const table = metadata::ITable::to(t.get());
    EXPECT_TRUE(IContainerFrontEnd::toplevel(theirs.get(), L"A")->destroy(L"x"));
    {
        const tLock guard(mine->lock());
        EXPECT_FALSE(IContainerFrontEnd::find(mine.get(), L"A.x"));
        EXPECT_FALSE(x->container(L"y"));
        EXPECT_FALSE(x->property(L"p"));
        EXPECT_FALSE(x->containers()->current());
        EXPECT_FALSE(x->properties()->current());
        EXPECT_FALSE(x->rename(L"z"));
        int value = 8;
        EXPECT_FALSE(number->get(&value, 0, 1));
        EXPECT_FALSE(number->set(&value, 0, 1));
        EXPECT_FALSE(table->lookup(L"q"));
        EXPECT_FALSE(table->at(0));
        x->describe(L"de", L"hier");
    }
    EXPECT_FALSE(IContainerFrontEnd::toplevel(theirs.get(), L"A")->has(L"x"));
}

// The library remembers what large sets hold, as long as the store says that nothing has changed.
TEST_F(TreeProcesses, FindInALargeSetWhatAnotherOneHasDoneToIt) {
    constexpr int kMany = 200;
    const tStore mine = store->open();
    const tStore theirs = store->open();
    {
        const tLock guard(theirs->lock());
        const auto top = IContainerFrontEnd::find(theirs.get(), L"A");
        for (int i = 0; i < kMany; ++i) top->create(IContainer::kGroup, std::to_wstring(i).c_str(), nullptr);
    }
    const auto has = [](IDataStore& opened, const wchar_t* name) {
        const tLock guard(opened.lock());
        return IContainerFrontEnd::find(&opened, L"A")->has(name);
    };
    EXPECT_TRUE(has(*mine, L"7"));
    EXPECT_TRUE(has(*mine, L"8"));
    {
        const tLock guard(theirs->lock());
        const auto top = IContainerFrontEnd::find(theirs.get(), L"A");
        EXPECT_TRUE(top->destroy(L"7"));
        EXPECT_TRUE(top->container(L"8")->rename(L"eight"));
        EXPECT_TRUE(top->create(IContainer::kGroup, L"new", nullptr));
    }
    EXPECT_FALSE(has(*mine, L"7"));
    EXPECT_FALSE(has(*mine, L"8"));
    EXPECT_TRUE(has(*mine, L"eight"));
    EXPECT_TRUE(has(*mine, L"new"));
    EXPECT_EQ(findings(), "");
}

/// What is found where one of the four opens the store in a wrong way. All of them end soon after that.
class TreeProcessesNotice : public TreeProcesses {
protected:
    using tOpenBadly = std::function<tStore()>;

    std::string workWith(const tOpenBadly& openBadly) {
        constexpr std::uint64_t kNoticed = 50'000;  // where it has to be noticed at the latest
        return work(kNoticed,
                    [&](unsigned int process) { return process == kVictim ? openBadly() : openUsually(process); });
    }
};

TEST_F(TreeProcessesNotice, AProcessWithoutTheGuard) {
    EXPECT_NE(workWith([this] { return std::make_unique<GuardlessStore>(store->open()); }), "");
}

TEST_F(TreeProcessesNotice, AProcessWhoseGuardIsNoTransaction) {
    EXPECT_NE(workWith([this] { return std::make_unique<HastyStore>(store->open()); }), "");
}

TEST_F(TreeProcessesNotice, AProcessThatStoresItsCounts) {
    EXPECT_NE(workWith([this] { return std::make_unique<OwningStore>(store->open()); }), "");
}

TEST_F(TreeProcessesNotice, AProcessThatDoesNotHearWhatOthersHaveChanged) {
    EXPECT_NE(workWith([this] {
                  auto engine = std::make_unique<stores::PostgresEngine>(store->settings(), tMode::kWrite);
                  return std::make_unique<stores::Core>("the store", std::make_unique<DeafEngine>(std::move(engine)),
                                                        tMode::kWrite);
              }),
              "");
}

}  // namespace
}  // namespace lumivard::platform::model
