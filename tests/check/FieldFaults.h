#pragma once

#include <random>
#include <set>
#include <string>
#include <vector>

#include "lumivard/platform/core/storage/datastore/IDataStore.h"

namespace lumivard::platform::test_support {

using core::storage::datastore::IDataStore;

/// A change to one field of one record, after which the store is not as the library would leave it.
struct tFault {
    unsigned int offset;
    std::string before;
    std::string after;
    std::string words;
};

/// Draws faults for a store in which nothing is wrong. It has its own description of the records' fields, written down
/// a second time on purpose.
class FieldFaults {
public:
    /// Looks at the store once; it may change and change back meanwhile.
    FieldFaults(IDataStore& store, std::mt19937_64& random);

    /// A fault of any field of any record. What would be right by chance is never drawn.
    tFault draw();

    static void plant(IDataStore& store, const tFault& fault);
    static void undo(IDataStore& store, const tFault& fault);

private:
    /// What values a field may have.
    enum class tRole { kOne, kFlags, kContainerType, kUnit, kValueKind, kDefaultUnit, kText };

    struct tField {
        std::string name;
        std::size_t position;
        std::size_t width;
        tRole role;
        std::size_t end;  ///< of the section that it stands in
    };

    std::vector<tField> fieldsOf(unsigned int offset, const std::string& bytes) const;
    void addText(std::vector<tField>& fields, const std::string& bytes, std::size_t begin, std::size_t end) const;
    unsigned int value(unsigned int offset, unsigned int before);
    bool isLegal(const std::string& bytes, const tField& field, unsigned int before, unsigned int after) const;
    tFault wholeRecord(unsigned int offset, const std::string& bytes);
    std::size_t below(std::size_t count) { return static_cast<std::size_t>(_random() % count); }

    IDataStore& _store;
    std::mt19937_64& _random;
    std::vector<unsigned int> _records;
    std::set<unsigned int> _defaults;
};

}  // namespace lumivard::platform::test_support
