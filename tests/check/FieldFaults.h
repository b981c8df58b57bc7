#pragma once

#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::test_support {

using core::storage::datastore::IDataStore;

/// What a field means: what values it may have, and what a wrong one shows as.
enum class tField {
    kKind,
    kParent,
    kRefs,
    kLocale,
    kFlags,
    kChildren,
    kContainerType,
    kDefaults,
    kUnit,
    kValueKind,
    kZeros,
    kLength,
    kText,
    kEntry,
    kDefaultUnit,
    kDefaultKind,
    kWholeRecord  ///< no field: the record is longer or shorter
};

/// A change to one field of one record, after which the store is not as the library would leave it.
struct tFault {
    unsigned int offset;
    std::string before;
    std::string after;
    std::string words;
    tField field;
    unsigned int was = 0;  ///< what stood in the field
    unsigned int is = 0;   ///< what stands there
};

/// What a fault has to be found as: by one of these codes, or by any where there are none, in one of these records.
struct tSign {
    std::set<std::string> codes;
    std::set<unsigned int> places;
};

/// Draws faults for a store in which nothing is wrong. It has its own description of the records' fields, written down
/// a second time on purpose.
class FieldFaults {
public:
    /// Looks at the store once; it may change and change back meanwhile.
    FieldFaults(IDataStore& store, std::mt19937_64& random);

    /// A fault of any field of any record. What would be right by chance is never drawn.
    tFault draw();

    /// What such a fault shows as, where it is the only one. The store is as it was without it.
    tSign signOf(const tFault& fault);

    static void plant(IDataStore& store, const tFault& fault);
    static void undo(IDataStore& store, const tFault& fault);

private:
    struct tPlace {
        const char* name;
        std::size_t position;
        std::size_t width;
        tField field;
        std::size_t end;  ///< of the section that it stands in
    };

    std::vector<tPlace> fieldsOf(unsigned int offset, const std::string& bytes) const;
    void addText(std::vector<tPlace>& fields, const std::string& bytes, std::size_t begin, std::size_t end) const;
    unsigned int value(unsigned int offset, unsigned int before);
    bool isLegal(const std::string& bytes, const tPlace& place, unsigned int before, unsigned int after) const;
    tFault wholeRecord(unsigned int offset, const std::string& bytes);
    tSign signOfReference(const tFault& fault);
    tSign signOfWholeRecord(const tFault& fault);
    std::vector<unsigned int> namedIn(unsigned int offset, const std::string& bytes) const;
    std::set<unsigned int> neighbours(const tFault& fault);
    void addOwners(tSign& sign, unsigned int record);
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(_random() % count); }

    IDataStore& _store;
    std::mt19937_64& _random;
    std::vector<unsigned int> _records;
    std::set<unsigned int> _defaults;
    std::multimap<unsigned int, unsigned int> _owners;  ///< what names a record as its own; noted when it is asked for
};

/// Plants up to `most` such faults in a sound store; tells them in words.
std::string plantFields(IDataStore& store, std::mt19937_64& random, unsigned int most);

}  // namespace lumivard::platform::test_support
