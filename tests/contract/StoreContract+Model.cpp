#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>

#include "lumivard/platform/store_contract/StoreContract.h"

// The examination's last question: whether a store does through a long series of mixed operations what a map of byte
// strings does.

namespace lumivard::platform::store_contract {
namespace {

/// A store and a map, to which the same is done.
class Pair {
public:
    Pair(ISubject& subject, std::uint32_t seed) : _subject(subject), _random(seed) {}

    /// Does one operation to both, chosen at random, and looks at the record that it was about.
    void step() {
        switch (_records.empty() ? 0 : _random() % 16) {
            case 0:
            case 1:
            case 2:
                return _create();
            case 3:
            case 4:
            case 5:
                return _append();
            case 6:
            case 7:
                return _update(true);
            case 8:
                return _update(false);
            case 9:
                return _erase();
            case 10:
                return _setVersion();
            case 11:
                return _random() % 8 == 0 ? _reopen() : _look();
            default:
                return _look();
        }
    }

    /// Compares everything.
    void compare() {
        EXPECT_EQ(_store().version(), _version);
        EXPECT_EQ(_store().extent() == 0, !_created);
        for (const auto& [offset, bytes] : _records) _compare(offset, bytes);
        for (const unsigned int offset : _gone) EXPECT_EQ(_store().size(offset), 0U) << "offset " << offset;
    }

private:
    core::storage::datastore::IDataStore& _store() { return _subject.store(); }

    std::string _bytes() {
        std::string bytes(_random() % 20 == 0 ? _random() % 6000 : _random() % 60, '\0');
        for (char& byte : bytes) byte = static_cast<char>(_random() >> 24);
        return bytes;
    }

    std::map<unsigned int, std::string>::iterator _any() {
        return std::next(_records.begin(), static_cast<std::ptrdiff_t>(_random() % _records.size()));
    }

    void _compare(unsigned int offset, const std::string& bytes) {
        ASSERT_EQ(_store().size(offset), bytes.size()) << "offset " << offset;
        std::string found(bytes.size(), '\0');
        _store().read(offset, found.data(), 0xFFFFFFFF);
        ASSERT_TRUE(found == bytes) << "offset " << offset;
    }

    void _create() {
        const std::string bytes = _bytes();
        const unsigned int offset = _store().create(bytes.data(), static_cast<unsigned int>(bytes.size()));
        ASSERT_TRUE(_records.emplace(offset, bytes).second) << "offset " << offset << " is taken";
        _gone.erase(offset);
        _created = true;
        _compare(offset, bytes);
    }

    void _append() {
        const auto record = _any();
        const std::string bytes = _bytes();
        _store().append(record->first, bytes.data(), static_cast<unsigned int>(bytes.size()));
        record->second += bytes;
        _compare(record->first, record->second);
    }

    void _update(bool changed) {
        const auto record = _any();
        record->second = _bytes();
        _write(record->first, changed);
        if (!changed) _counted.insert(record->first);
        _compare(record->first, record->second);
    }

    void _write(unsigned int offset, bool changed) {
        const std::string& bytes = _records.at(offset);
        _store().update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), changed);
    }

    void _erase() {
        const auto record = _any();
        _store().erase(record->first);
        EXPECT_EQ(_store().size(record->first), 0U);
        _gone.insert(record->first);
        _counted.erase(record->first);
        _records.erase(record);
    }

    void _setVersion() {
        _version = static_cast<unsigned int>(_random());
        _store().version(_version);
    }

    // What bookkeeping alone has changed need not be durable: it is written as content before.
    void _reopen() {
        for (const unsigned int offset : _counted) _write(offset, true);
        _counted.clear();
        _store().flush();
        _subject.reopen();
    }

    void _look() {
        const auto record = _any();
        _compare(record->first, record->second);
    }

    ISubject& _subject;
    std::mt19937 _random;
    std::map<unsigned int, std::string> _records;
    std::set<unsigned int> _gone;
    std::set<unsigned int> _counted;  // offsets of the records that bookkeeping has touched since the last flush
    unsigned int _version = 0;
    bool _created = false;
};

}  // namespace

TEST_P(StoreContract, BehavesLikeAMapOfByteStrings) {
    for (std::uint32_t seed = 1; seed <= 5; ++seed) {
        const std::unique_ptr<ISubject> subject = another();
        Pair pair(*subject, seed);
        for (int step = 0; step < 1500; ++step) {
            pair.step();
            if (HasFailure()) FAIL() << "in step " << step << " of the series with seed " << seed;
        }
        pair.compare();
        ASSERT_FALSE(HasFailure()) << "at the end of the series with seed " << seed;
    }
}

}  // namespace lumivard::platform::store_contract
