#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>

#include "tests/model/StoreOperation.h"

namespace lumivard::platform::model {

using tRandom = std::mt19937_64;

/// A number from 0 to `count` - 1.
inline unsigned int below(tRandom& random, std::uint64_t count) {
    return static_cast<unsigned int>(random() % count);
}

/// What a store holds.
struct StoreContents {
    std::map<unsigned int, std::string> records;
    unsigned long long extent = 0;
    unsigned int version = 0;

    /// The bytes of a record; null where there is none.
    const std::string* find(unsigned int offset) const;

    /// The first offset at which a store holds something else, the extent, or the version, in words; none when it
    /// holds the same. Looks at all records, and at as many dead offsets.
    std::optional<std::string> difference(IDataStore& store) const;
};

/// A store in a map: each operation of `IDataStore` in a line or two, with what a flush keeps.
class StoreModel {
public:
    /// Where a model does otherwise than stores do, so that a test can show that such a thing is noticed.
    struct tRules {
        bool countsAreFlushed = false;  ///< a flush keeps bookkeeping of records whose content has not changed
        bool erasedComeBack = false;    ///< `create` hands out an erased offset again, now and then
    };

    StoreModel() = default;
    explicit StoreModel(const tRules& rules) : _rules(rules) {}

    StoreOutcome perform(const StoreOperation& operation);

    /// A call that suits the present state: mostly of records that are there, now and then of others.
    StoreOperation any(tRandom& random) const;

    const StoreContents& now() const { return _now; }
    const StoreContents& flushed() const { return _flushed; }

    /// How often a flush or a closing had something to keep: readers move on then.
    unsigned int flushes() const { return _flushes; }

    /// The store was closed: it has kept everything. Or its process ended: it has kept the last flush.
    void close();
    void crash();

private:
    std::string* find(unsigned int offset);
    StoreOutcome change(const StoreOperation& operation, std::string& record);
    unsigned int create(const std::string& bytes);
    unsigned int anyOffset(tRandom& random) const;
    void flush();

    tRules _rules;
    StoreContents _now;
    StoreContents _flushed;
    std::set<unsigned int> _changed;
    bool _versionChanged = false;
    unsigned int _erased = IDataStore::BADOFF;
    unsigned int _flushes = 0;
};

}  // namespace lumivard::platform::model
