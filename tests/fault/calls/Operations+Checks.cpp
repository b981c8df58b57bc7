#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/data/check/Dump.h"

#include "tests/check/Describe.h"
#include "tests/fault/calls/Operation.h"
#include "tests/fault/calls/Picture.h"
#include "tests/support/StoredRecords.h"

// The checker. What the store throws when it is asked for a record is one of its findings.

namespace lumivard::platform::test_support::fault {

namespace {

namespace check = data::check;

const check::Options kReclaiming{.reclaim = true};
constexpr unsigned int kRoot = 0;

/// The one of a few records: all of them are asked for several times.
IDataStore& checked(World& w) {
    return *w.stores[kOther];
}

std::wstring said(const check::Report& report) {
    const std::string words = test_support::describe(report);
    return {words.begin(), words.end()};
}

void plan(World& w) {
    w.repair = check::plan(checked(w), kReclaiming);
}

/// Closes everything, and makes a repair of what dead processes have left.
void planForTheDead(World& w) {
    w.close();
    for (int i = 0; i < 2; ++i) stored::makeList(&checked(w));
    for (const unsigned int offset : {kRoot, stored::children(&checked(w), kRoot).front()}) {
        stored::putWord(&checked(w), offset, stored::kRefs, 2);
    }
    plan(w);
}

std::wstring apply(World& w) {
    return fault::said(check::apply(checked(w), w.repair));
}

/// What was erased before the failure is no longer as it was when the first plan was made.
std::wstring applyAnew(World& w) {
    plan(w);
    return apply(w);
}

}  // namespace

std::vector<tOperation> checkOperations() {
    return {
        {"check::examine(IDataStore& store, const Options& options = {})", "Examine", nullptr,
         [](World& w) { return said(check::examine(checked(w))); }, nullptr, nullptr, tOperation::kTold},
        {"check::dump(IDataStore& store, unsigned int offset)", "Dump", nullptr,
         [](World& w) {
             const check::Dump dump = check::dump(checked(w), 0);
             std::wstring all = numeral(dump.bytes.size());
             for (const check::Field& field : dump.parts)
                 all += numeral(field.position) + numeral(field.meaning.size());
             return all;
         },
         nullptr, nullptr, tOperation::kTold},
        {"check::plan(IDataStore& store, const Options& options = {})", "Plan", nullptr,
         [](World& w) {
             const check::Repair repair = check::plan(checked(w), kReclaiming);
             return said(repair.before) + said(repair.after) + numeral(repair.steps.size());
         },
         nullptr, nullptr, tOperation::kTold},
        {"check::apply(IDataStore& store, const Repair& repair)", "Apply", nullptr, &apply, &planForTheDead,
         &applyAnew},
    };
}

}  // namespace lumivard::platform::test_support::fault
