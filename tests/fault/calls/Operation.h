#pragma once

#include <string>
#include <vector>

#include "tests/fault/calls/World.h"

namespace lumivard::platform::test_support::fault {

/// One public operation, as a client calls it on the objects of a world.
struct tOperation {
    using tRun = std::wstring (*)(World&);

    /// What an operation does with what a store throws. As a rule that comes out as it is, and a second try is a sound
    /// one: it leaves everything as if nothing had failed.
    enum tManner {
        kPasses,
        kSilent,  ///< nothing comes out: a destructor, after which things are as before or as after
        kTold     ///< it may go to a reporter, whose text `run` returns; what was read until then stays
    };

    const char* member;      ///< the member, as its header declares it
    const char* name;        ///< of the case, for the test's name
    const wchar_t* touches;  ///< all that it may change in the stores (see `untouched`); null for one that only reads
    tRun run;                ///< calls it once; gives what it answered
    void (*prepare)(World&) = nullptr;
    tRun again = nullptr;  ///< the second try, where that is more than to run once more
    tManner manner = kPasses;
};

/// All of them.
const std::vector<tOperation>& operations();

// Those of one group of interfaces each.
std::vector<tOperation> containerOperations();
std::vector<tOperation> editingOperations();
std::vector<tOperation> copyOperations();
std::vector<tOperation> propertyOperations();
std::vector<tOperation> primitiveOperations();
std::vector<tOperation> tableOperations();
std::vector<tOperation> schemaOperations();
std::vector<tOperation> documentOperations();
std::vector<tOperation> checkOperations();
std::vector<tOperation> easyOperations();
std::vector<tOperation> endOfLifeOperations();

/// Puts a cursor behind what it gives.
template <class Filter>
void toTheEnd(Filter& filter) {
    while (filter.next()) {
    }
}

/// What an operation answered, in words.
inline std::wstring said(bool answer) {
    return answer ? L"yes" : L"no";
}
template <class Item>
std::wstring said(const SharedPtr<Item>& item) {
    return said(bool(item));
}
inline std::wstring said(unsigned int number) {
    return std::to_wstring(number);
}

}  // namespace lumivard::platform::test_support::fault
