// A second process that has the file open for reading while the first one goes on writing.
#include <gtest/gtest.h>

#include <memory>

#include "lumivard/platform/stores.h"
#include "tests/model/StoreRun.h"
#include "tests/stores/ChildProcess.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::model {
namespace {

using stores::ChildProcess;
using stores::tMode;

// What the writer has the reader do. A number beside kLookAt and kCount is the seed of what they do.
enum tCommand : unsigned int { kOpen, kTakeGuard, kGiveGuard, kLookAt, kCount, kChange, kClose, kEnd };

constexpr unsigned int kRefused = 7;
constexpr unsigned int kDone = 8;

/// A number that stands for the state and for some of the records of a store, or of what it should hold.
template <class Bytes>
unsigned int digest(unsigned long long extent, unsigned int version, unsigned int seed, Bytes bytesOf) {
    tRandom random(seed);
    std::uint64_t sum = extent * 31 + version;
    for (int i = 0; i < 50; ++i) {
        const std::string bytes = bytesOf(below(random, extent + 3));
        for (const char byte : bytes) sum = sum * 0x100000001B3 + static_cast<unsigned char>(byte);
        sum = sum * 0x100000001B3 + bytes.size();
    }
    return static_cast<unsigned int>(sum >> 16);
}

StoreOperation call(StoreOperation::tCode code) {
    StoreOperation operation;
    operation.code = code;
    return operation;
}

StoreOperation counting(unsigned int seed, unsigned long long extent) {
    tRandom random(seed);
    StoreOperation operation = call(StoreOperation::kCount);
    operation.offset = below(random, extent + 1);
    operation.bytes = std::string(below(random, 40), static_cast<char>(seed));
    return operation;
}

/// The reader's side.
class Reader {
public:
    Reader(std::filesystem::path path, const ChildProcess::Line& line) : _path(std::move(path)), _line(line) {}

    int run() {
        for (unsigned int command = _line.hear(); command != kEnd; command = _line.hear()) {
            _line.tell(obey(command, _line.hear()));
        }
        return 0;
    }

private:
    unsigned int obey(unsigned int command, unsigned int seed) {
        switch (command) {
            case kOpen:
                _store = stores::file(_path, tMode::kRead);
                break;
            case kTakeGuard:
                _guard.reset(_store->lock());
                break;
            case kGiveGuard:
                _guard.reset();
                break;
            case kLookAt:
                return digest(_store->extent(), _store->version(), seed,
                              [this](unsigned int offset) { return contents(*_store, offset); });
            case kCount:
                return perform(*_store, counting(seed, _store->extent())).refused ? kRefused : kDone;
            case kChange:
                return perform(*_store, call(StoreOperation::kCreate)).refused ? kRefused : kDone;
            default:
                _store.reset();
        }
        return kDone;
    }

    std::filesystem::path _path;
    const ChildProcess::Line& _line;
    std::unique_ptr<IDataStore> _store;
    std::unique_ptr<IDataStore::ILock> _guard;
};

/// A writer and its model here, a reader there, and what the reader has to see.
class WriterAndReader : public testing::Test {
protected:
    /// Writes `count` times with a reader beside, which looks in between. False when it saw something else.
    bool go(std::uint64_t count) {
        _store = stores::file(path(), tMode::kWrite);
        order(kOpen);
        while (_run.done() < count && _run.difference().empty()) {
            if (!lookUnderOneGuard()) return false;
            if (below(_run.random(), 50) == 0) reopen();
        }
        order(kClose);
        _reader.tell(kEnd);
        EXPECT_EQ(_reader.wait(), 0);
        EXPECT_TRUE(_run.difference().empty()) << _run.difference();
        return true;
    }

    /// Whether the view that is expected is wrong, and shows what was not flushed.
    bool _wrong = false;

private:
    std::filesystem::path path() const { return _folder / "a.lvp"; }

    unsigned int order(tCommand command, unsigned int seed = 0) {
        _reader.tell(command);
        _reader.tell(seed);
        return _reader.hear();
    }

    bool lookUnderOneGuard() {
        order(kTakeGuard);
        if (_seen != _run.model().flushes()) {
            _view = _wrong ? _run.model().now() : _run.model().flushed();
            _seen = _run.model().flushes();
        }
        for (unsigned int looks = below(_run.random(), 4); looks-- != 0;) {
            write();
            if (!look()) return false;
        }
        order(kGiveGuard);
        write();
        return true;
    }

    void write() {
        _run.go(*_store, below(_run.random(), 200));
        if (below(_run.random(), 4) != 0) return;
        _store->flush();
        _run.model().perform(call(StoreOperation::kFlush));
    }

    bool look() {
        const auto seed = static_cast<unsigned int>(_run.random()());
        if (below(_run.random(), 8) == 0 && order(kChange) != kRefused) return false;
        if (below(_run.random(), 2) == 0) count(seed);
        return order(kLookAt, seed) == digest(_view.extent, _view.version, seed, [this](unsigned int offset) {
                   const std::string* const bytes = _view.find(offset);
                   return bytes ? *bytes : std::string();
               });
    }

    // A reader counts its objects in its own view, and passes over records that are not there.
    void count(unsigned int seed) {
        const StoreOperation operation = counting(seed, _view.extent);
        EXPECT_EQ(order(kCount, seed), kDone);
        if (_view.find(operation.offset)) _view.records[operation.offset] = operation.bytes;
    }

    void reopen() {
        _store.reset();
        _run.model().close();
        _store = stores::file(path(), tMode::kWrite);
        _run.compare(*_store);
        if (below(_run.random(), 2) != 0) return;
        order(kClose);
        order(kOpen);
        _seen = kNever;
    }

    static constexpr unsigned int kNever = 0xFFFFFFFF;

    TemporaryFolder _folder;
    ChildProcess _reader{[this](const ChildProcess::Line& line) { return Reader(path(), line).run(); }};
    StoreRun _run{test_support::seed()};
    std::unique_ptr<IDataStore> _store;
    StoreContents _view;
    unsigned int _seen = kNever;
};

TEST_F(WriterAndReader, TheReaderSeesTheLastFlushAsItWasWhenItTookTheGuard) {
    EXPECT_TRUE(go(test_support::effort("LVP_OPERATIONS", test_support::usually(1'000'000)) / 10));
}

TEST_F(WriterAndReader, AViewThatShowsWhatWasNotFlushedIsNoticed) {
    _wrong = true;
    EXPECT_FALSE(go(1'000'000));
}

}  // namespace
}  // namespace lumivard::platform::model
