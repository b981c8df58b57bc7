// A disk on which one call fails, or all from some moment on: tried with each call in a store's life.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <iostream>
#include <memory>
#include <string>

#include "lumivard/platform/stores.h"
#include "tests/fault/disk/FaultyTap.h"
#include "tests/fault/disk/Finding.h"
#include "tests/stores/ChildProcess.h"
#include "tests/stores/Records.h"
#include "tests/support/Campaign.h"
#include "tests/support/Failures.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores::disk {
namespace {

namespace fs = std::filesystem;
using tCall = Call::tKind;
using tAnswer = Answer::tKind;
using tSpan = FaultyTap::tSpan;
using testing::Contains;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::StartsWith;

constexpr std::uint64_t kFirstSeed = 7;

/// A store's life up to the first error: it comes into being, is flushed, closed, opened, grows, is compacted, and
/// closed with changes, of which nobody is told whether they were written.
class Life {
public:
    Life(const fs::path& path, const FaultyTap& tap, std::uint64_t seed) : _path(path), _tap(tap), _model(seed) {}

    void run() {
        try {
            session(4, tEnd::kFlushed);
            session(4, tEnd::kFlushed);
            _attempt = kCompact;
            compact(_path);
            _attempt = kOpen;
            session(1, tEnd::kChanged);
        } catch (const StoreError& error) {
            _error = error.what();
        }
    }

    std::function<void(unsigned int)> onFlush = [](unsigned int) {};  ///< told the number of each that returned

    /// Gives up the store.
    void close() { _store.reset(); }

    IDataStore* store() { return _store.get(); }
    const Workload& model() const { return _model; }
    unsigned int acknowledged() const { return _acknowledged; }

    /// What the first error said; empty when there was none.
    const std::string& error() const { return _error; }

    /// What was under way at the end.
    const char* attempt() const { return _attempt; }
    bool flushing() const { return _attempt == kFlush; }

    /// The first fault came while the store was closed, which tells nobody.
    bool failedInClosing() const { return _failedInClosing; }

private:
    enum class tEnd { kFlushed, kChanged };
    static constexpr const char* kOpen = "open";
    static constexpr const char* kFlush = "flush";
    static constexpr const char* kCompact = "compact";

    void session(int flushes, tEnd end) {
        _store = file(_path, tMode::kWrite);
        for (int i = 0; i < flushes; ++i) {
            _model.next(_store.get());
            _attempt = kFlush;
            _store->flush();
            _attempt = kOpen;
            _acknowledged = _model.batches();
            onFlush(_acknowledged);
        }
        if (end == tEnd::kChanged) _model.next(_store.get());
        const std::uint64_t before = _tap.hits();
        _store.reset();
        _failedInClosing = before == 0 && _tap.hits() != 0;
    }

    const fs::path _path;
    const FaultyTap& _tap;
    Workload _model;
    std::unique_ptr<IDataStore> _store;
    unsigned int _acknowledged = 0;
    const char* _attempt = kOpen;
    bool _failedInClosing = false;
    std::string _error;
};

using tKinds = FaultyTap::tKinds;

const tKinds& calls() {
    static const tKinds kinds = {tCall::kOpen, tCall::kRead,   tCall::kWrite, tCall::kTruncate, tCall::kAllocate,
                                 tCall::kSync, tCall::kRename, tCall::kLink,  tCall::kUnlink};
    return kinds;
}

const tKinds& callsThatTakeSpace() {
    static const tKinds kinds = {tCall::kOpen,     tCall::kWrite, tCall::kTruncate,
                                 tCall::kAllocate, tCall::kSync,  tCall::kRename};
    return kinds;
}

const tKinds& reads() {
    static const tKinds kinds = {tCall::kRead};
    return kinds;
}

const tKinds& writes() {
    static const tKinds kinds = {tCall::kWrite};
    return kinds;
}

const tKinds& writesAndSyncs() {
    static const tKinds kinds = {tCall::kWrite, tCall::kSync};
    return kinds;
}

const tKinds& locks() {
    static const tKinds kinds = {tCall::kLock};
    return kinds;
}

/// A way in which a disk fails.
struct Fault {
    const char* name;
    Answer answer;
    tSpan span;
    const tKinds& (*kinds)();
    const char* reason;  ///< what the error says of it, as a regular expression
};

std::ostream& operator<<(std::ostream& out, const Fault& fault) {
    return out << fault.name;
}

constexpr char kBroken[] = "Input/output error";
constexpr char kFull[] = "No space left on device";
constexpr char kBrokenOrFull[] = "Input/output error|No space left on device";
constexpr char kTooShort[] = "it is not a store file, or it is damaged|Input/output error";
// Once: who does not get the lock file for itself, since another is at it, tries again. For ever: nobody sets it up.
constexpr char kNotLocked[] = "Input/output error|Invalid argument";
constexpr char kNeverLocked[] = "Input/output error|Invalid argument|it is not a store file, or it is damaged";

class FailingDisk : public testing::TestWithParam<Fault> {
protected:
    std::uint64_t callsUndisturbed() const {
        folder.clear();
        FaultyTap tap(UINT64_MAX, {}, tSpan::kOnce, GetParam().kinds());
        Life life(path(), tap, seed);
        {
            const Watch watch(folder.path(), tap);
            life.run();
        }
        EXPECT_EQ(life.error(), "");
        EXPECT_EQ(lookAt(path(), tMode::kRead, life.model(), life.acknowledged()).found, tFound::kNext);
        return tap.calls();
    }

    void tryAt(std::uint64_t call);

    fs::path path() const { return folder / "a.lvp"; }

    FastFolder folder;
    std::uint64_t seed = kFirstSeed;
    Tally tally;
    unsigned int quiet = 0;  // faults of which nobody was told
};

void expectTold(const Life& life, const fs::path& path, const char* reason) {
    EXPECT_THAT(life.error(), ContainsRegex(reason));
    EXPECT_THAT(life.error(),
                StartsWith(std::string("Cannot ") + life.attempt() + " the store \"" + path.string() + "\": "));
}

// Every change and flush says what the flush said that failed; what is in memory can be read.
void expectRefusing(IDataStore& store, const Workload& model, const std::string& error) {
    EXPECT_EQ(fingerprint(store), model.after(model.batches()));
    EXPECT_EQ(messageOf<StoreError>([&] { store.flush(); }), error);
    EXPECT_EQ(messageOf<StoreError>([&] { create(store, "x"); }), error);
    EXPECT_EQ(messageOf<StoreError>([&] { update(store, 0, "x"); }), error);
    EXPECT_EQ(messageOf<StoreError>([&] { append(store, 0, "x"); }), error);
    EXPECT_EQ(messageOf<StoreError>([&] { store.erase(0); }), error);
    EXPECT_EQ(messageOf<StoreError>([&] { store.version(1); }), error);
    EXPECT_EQ(messageOf<StoreError>([&] { store.flush(); }), error);
    EXPECT_EQ(fingerprint(store), model.after(model.batches()));
}

/// A short read can be gone on with, a lock that cannot be eased stays, a file that cannot be removed is left behind.
bool harmless(tCall call, const Fault& fault) {
    if (call == tCall::kRead) return fault.answer.kind == tAnswer::kShorten;
    return call == tCall::kLock || call == tCall::kUnlink;
}

void FailingDisk::tryAt(std::uint64_t call) {
    const Fault& fault = GetParam();
    folder.clear();
    FaultyTap tap(call, fault.answer, fault.span, fault.kinds());
    Life life(path(), tap, seed);
    {
        const Watch watch(folder.path(), tap);
        life.run();
        if (life.flushing()) expectRefusing(*life.store(), life.model(), life.error());
        life.close();
    }
    ASSERT_GT(tap.hits(), 0U);
    if (life.error().empty()) {
        ++quiet;
        EXPECT_TRUE(life.failedInClosing() || harmless(tap.hit(), fault)) << "the call failed and nobody was told";
    } else {
        expectTold(life, path(), fault.reason);
    }
    const Finding finding = lookAt(path(), tMode::kWrite, life.model(), life.acknowledged());
    tally.add(finding.found);
    const bool absent = finding.found == tFound::kAbsent && life.acknowledged() == 0;
    ASSERT_TRUE(absent || finding.found == tFound::kLast || finding.found == tFound::kNext)
        << finding.found << ' ' << finding.message;
}

TEST_P(FailingDisk, IsAnErrorAndKeepsTheLastFlush) {
    const std::uint64_t lives = test_support::effort("LVP_FAULTY_LIVES", 1);
    const std::uint64_t step = test_support::kSanitized ? 3 : 1;
    std::uint64_t all = 0;
    std::uint64_t tried = 0;
    for (; seed < kFirstSeed + lives; ++seed) {
        const std::uint64_t calls = callsUndisturbed();
        all += (calls + step - 1) / step;
        for (std::uint64_t call = 0; call < calls; call += step, ++tried) {
            SCOPED_TRACE("life " + std::to_string(seed) + ", call " + std::to_string(call));
            tryAt(call);
            if (HasFatalFailure()) return;
        }
    }
    std::cout << "tried " << tried << " calls, without an error " << quiet << "; " << tally << std::endl;
    EXPECT_GT(tried, 0U);
    EXPECT_EQ(tried, all);
    EXPECT_EQ(tally.all(), tried);
}

/// An examination of the file and its compaction, on a file that is whole.
TEST_P(FailingDisk, KeepsTheFileThatIsExaminedOrCompacted) {
    // Who reads less than was asked for has a file before him that was cut short.
    const bool sound = GetParam().kinds != reads;
    const std::function<void()> works[] = {[&] { EXPECT_TRUE(verify(path(), true).faultCount == 0 || !sound); },
                                           [&] { compact(path()); }};
    const Fault& fault = GetParam();
    Workload model(seed);
    {
        const auto store = file(path(), tMode::kWrite);
        for (int i = 0; i < 4; ++i) model.next(store.get());
    }
    for (const auto& work : works) {
        for (std::uint64_t call = 0;; ++call) {
            SCOPED_TRACE("call " + std::to_string(call));
            FaultyTap tap(call, fault.answer, fault.span, fault.kinds());
            std::string error;
            {
                const Watch watch(folder.path(), tap);
                error = messageOf<StoreError>(work);
            }
            if (tap.hits() == 0) break;
            if (error != "nothing was thrown") {
                EXPECT_THAT(error, ContainsRegex(fault.reason));
            } else {
                EXPECT_TRUE(harmless(tap.hit(), fault)) << "the call failed and nobody was told";
            }
            ASSERT_EQ(lookAt(path(), tMode::kWrite, model, model.batches()).found, tFound::kLast);
        }
    }
}

const Fault kFaults[] = {
    {"BrokenOnce", {tAnswer::kFail, EIO}, tSpan::kOnce, calls, kBroken},
    {"BrokenForEver", {tAnswer::kFail, EIO}, tSpan::kForEver, calls, kBroken},
    {"DoneAndBrokenOnce", {tAnswer::kReport, EIO}, tSpan::kOnce, writesAndSyncs, kBroken},
    {"DoneAndBrokenForEver", {tAnswer::kReport, EIO}, tSpan::kForEver, writesAndSyncs, kBroken},
    {"FullOnce", {tAnswer::kFail, ENOSPC}, tSpan::kOnce, callsThatTakeSpace, kFull},
    {"FullForEver", {tAnswer::kFail, ENOSPC}, tSpan::kForEver, callsThatTakeSpace, kFull},
    {"ShortWriteOnce", {tAnswer::kShorten, 0}, tSpan::kOnce, writes, kBrokenOrFull},
    {"ShortWriteForEver", {tAnswer::kShorten, 0}, tSpan::kForEver, writes, kBrokenOrFull},
    {"ShortReadOnce", {tAnswer::kShorten, 0}, tSpan::kOnce, reads, kTooShort},
    {"ShortReadForEver", {tAnswer::kShorten, 0}, tSpan::kForEver, reads, kTooShort},
    {"LockBrokenOnce", {tAnswer::kFail, EIO}, tSpan::kOnce, locks, kNotLocked},
    {"LockBrokenForEver", {tAnswer::kFail, EIO}, tSpan::kForEver, locks, kNeverLocked},
};

INSTANTIATE_TEST_SUITE_P(Faults, FailingDisk, testing::ValuesIn(kFaults),
                         [](const auto& fault) { return fault.param.name; });

// A lock file without blocks of its own would end the process that writes in its mapping when the disk is full.
TEST(LockFile, HasItsSpaceWhenItIsMapped) {
    const FastFolder folder;
    const auto store = file(folder / "a.lvp", tMode::kWrite);
    struct stat status = {};
    ASSERT_EQ(::stat((folder / "a.lvp-lock").c_str(), &status), 0);
    EXPECT_GE(status.st_blocks * 512, status.st_size);
}

// What is in memory alone has no flush that fails, and takes everything.
TEST(FailedFlush, AfterWhichChangesAreTakenIsCaught) {
    const auto store = memory();
    Workload model(kFirstSeed);
    model.next(store.get());
    const auto failures = test_support::failuresOf([&] { expectRefusing(*store, model, "Cannot flush"); });
    for (const char* change : {"create(", "update(", "append(", "erase(", "version(", "flush("}) {
        EXPECT_THAT(failures, Contains(HasSubstr(change)));
    }
}

// --- A disk that tells nobody

/// Says of one write, or of all, that it was done, and does nothing.
class HidingDisk : public testing::Test {
protected:
    /// Gives how many of a life's writes there are, and notes what is found when one after the other is not done.
    std::uint64_t hideEach() {
        for (std::uint64_t call = 0;; ++call) {
            folder.clear();
            Workload model(kFirstSeed);
            bool hidden = false;
            const unsigned int acknowledged = live(call, hidden);
            if (!hidden) return call;
            while (model.batches() <= acknowledged) model.next();
            tally.add(lookFromAfar(folder / "a.lvp", tMode::kRead, model, acknowledged).found);
        }
    }

    FastFolder folder;
    Tally tally;

private:
    // In a process of its own, which may die of what it finds in its file. Gives the number of the last flush.
    unsigned int live(std::uint64_t call, bool& hidden) const {
        constexpr unsigned int kHidden = 0x40000000;
        ChildProcess child([&](const ChildProcess::Line& line) {
            static_cast<void>(std::freopen("/dev/null", "w", stderr));
            FaultyTap tap(call, {tAnswer::kPretend, 0}, tSpan::kOnce, writes());
            Life life(folder / "a.lvp", tap, kFirstSeed);
            life.onFlush = [&](unsigned int number) { line.tell(number | (tap.hits() != 0 ? kHidden : 0)); };
            const Watch watch(folder.path(), tap);
            life.run();
            line.tell(life.acknowledged() | (tap.hits() != 0 ? kHidden : 0));
            return 0;
        });
        unsigned int last = 0;
        for (unsigned int said = child.hear(); said != ChildProcess::kGone; said = child.hear()) last = said;
        hidden = child.wait() != 0 || (last & kHidden) != 0;
        return last & ~kHidden;
    }
};

TEST_F(HidingDisk, IsCaught) {
    const std::uint64_t hidden = hideEach();
    std::cout << tally << std::endl;
    EXPECT_EQ(tally.all(), hidden);
    EXPECT_GT(tally.broken(), 0U);
}

}  // namespace
}  // namespace lumivard::platform::stores::disk
