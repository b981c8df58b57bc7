#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"
#include "lumivard/platform/core/storage/datastore/IRecordAccess.h"

/// The exam for stores, and stores that behave badly on purpose.
namespace lumivard::platform::store_contract {

/// One store under examination, with whatever it needs to live (a folder, a server) and to be taken down at the end.
class ISubject {
public:
    virtual ~ISubject() = default;

    /// The open store, owned by the subject; always the same object until `reopen`.
    virtual core::storage::datastore::IDataStore& store() = 0;

    /// Closes the store in an orderly way and opens it again, as another process would; nobody holds a guard. False
    /// from a store that has no life beyond its closing: it is left open, and the sentences about durability are
    /// skipped for it. Throws where it cannot be opened again, which fails the test.
    virtual bool reopen() { return false; }

    /// Whether counts of open objects (`IRecordAccess::write` with `changed` false) are stored along with content.
    /// False for a store that several processes change at a time, where they belong to the process: the sentence about
    /// that is skipped.
    virtual bool keepsBookkeeping() const { return true; }
};

/// A kind of store, as a row of the examination.
struct Row {
    std::string name;                                 ///< letters and digits
    std::function<std::unique_ptr<ISubject>()> make;  ///< a new, empty store each time; several may live at once
};

/// Writes the name, for the messages of failed tests.
std::ostream& operator<<(std::ostream& out, const Row& row);

/// The name of a row, for the names of tests.
std::string nameOf(const testing::TestParamInfo<Row>& row);

/// What everything above relies upon in an `IDataStore`, sentence by sentence. To examine a store, link
/// `lvp_data::store_contract` to a GoogleTest program of your own and add a row in the namespace of this class:
///
///     INSTANTIATE_TEST_SUITE_P(Mine, StoreContract, testing::Values(Row{"MyStore", makeSubject}), nameOf);
///
/// Each test has a store of its own from `make`. The store has to be open for changes, and all that is in memory or on
/// disk has to go with the subject. The examination takes guards on up to nine threads and needs some 2 MB in a store.
/// A store that deadlocks hangs in the test whose name was printed last.
///
/// What it cannot ask: what an operation leaves that fails for a reason of the store's own, such as a full disk. The
/// member functions below are for its sentences; a program may add others of its own by `TEST_P(StoreContract, ...)`.
class StoreContract : public testing::TestWithParam<Row> {
protected:
    StoreContract() : _subject(GetParam().make()) {}

    /// The store that is examined.
    core::storage::datastore::IDataStore& store() { return _subject->store(); }

    /// What it lives in.
    ISubject& subject() { return *_subject; }

    /// Another, independent store of the same kind.
    static std::unique_ptr<ISubject> another() { return GetParam().make(); }

    /// `IDataStore::create` of a string's bytes.
    unsigned int create(const std::string& bytes);

    /// `IDataStore::update` by a string's bytes.
    void update(unsigned int offset, const std::string& bytes, bool changed = true);

    /// `IDataStore::append` of a string's bytes.
    void append(unsigned int offset, const std::string& bytes);

    /// A record's whole contents, by `size` and `read`.
    std::string contents(unsigned int offset);

    /// What `access()`, which must not be null, shows of a record.
    std::string shown(unsigned int offset);

    /// `IRecordAccess::write` of a string's bytes.
    void write(unsigned int offset, unsigned int position, const std::string& bytes, bool changed = true);

    /// What a view shows.
    static std::string bytesOf(const core::storage::datastore::IRecordAccess::tView& view);

    /// Bytes that differ from place to place and from seed to seed, zeros among them.
    static std::string pattern(std::size_t size, unsigned int seed = 1);

    /// An offset that was handed out and names no record any more.
    static unsigned int erasedOffset(core::storage::datastore::IDataStore& store);

    static constexpr unsigned int kBadOffset = core::storage::datastore::IDataStore::BADOFF;  ///< no record
    static constexpr unsigned int kWhole = 0xFFFFFFFF;  ///< as the size that `read` is asked for: all bytes

    /// Makes what was written durable, closes the store and opens it again; false where it has no such thing.
    bool flushAndReopen();

    /// Tries each change of a record on an offset that names none, and expects each to throw.
    void failEachChange(unsigned int offset);

private:
    std::unique_ptr<ISubject> _subject;
};

/// Goes on with the store opened again, or skips the test.
#define LVP_SKIP_UNLESS_REOPENED() \
    if (!flushAndReopen()) GTEST_SKIP() << "this store does not outlive its closing"

/// Goes on with a store that keeps counts of open objects, or skips the test.
#define LVP_SKIP_UNLESS_BOOKKEEPING_IS_KEPT() \
    if (!subject().keepsBookkeeping()) GTEST_SKIP() << "this store leaves counts of open objects to each process"

/// Goes on with a store that offers access to its records, or skips the test.
#define LVP_SKIP_WITHOUT_ACCESS() \
    if (!store().access()) GTEST_SKIP() << "this store knows whole records only"

}  // namespace lumivard::platform::store_contract
