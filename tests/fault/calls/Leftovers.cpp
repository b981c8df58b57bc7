#include "tests/fault/calls/Leftovers.h"

#include <algorithm>
#include <functional>

#include "lumivard/platform/data/check/Check.h"
#include "tests/check/Describe.h"
#include "tests/support/StoredRecords.h"

namespace lumivard::platform::test_support::fault {

namespace check = data::check;

namespace {

/// All that the checker sees of a store, in one number.
std::size_t fingerprint(IDataStore& store, const std::vector<unsigned int>& offsets) {
    std::string all;
    for (const unsigned int offset : offsets) {
        const std::string record = stored::bytes(&store, offset);
        all += std::to_string(offset) + ':' + std::to_string(record.size()) + ':' + record;
    }
    return std::hash<std::string>()(all);
}

/// What there is of damage in a report.
std::string damageOf(check::Report report) {
    std::erase_if(report.findings, [](const auto& finding) { return finding.severity < check::tSeverity::kDamage; });
    return describe(report);
}

std::string judge(IDataStore& store, const Ground& ground) {
    const check::Options reclaiming{.reclaim = true};
    const auto report = check::examine(store, reclaiming);
    if (!report.sound()) return "the checker finds damage: " + damageOf(report);
    const auto copy = ground.copy(store);
    if (!check::apply(*copy, check::plan(*copy, reclaiming)))
        return "a repair finds other records than were planned for";
    const auto second = check::plan(*copy, reclaiming);
    if (!second.before.clean()) return "a repair leaves something: " + describe(second.before);
    return second.steps.empty() ? std::string() : "a second repair has something to do";
}

}  // namespace

std::string wrongLeftovers(IDataStore& store, const Ground& ground) {
    // One block of memory whatever its length, since blocks are counted from failure to failure.
    static std::vector<std::size_t> sound(1);
    const std::size_t now = fingerprint(store, ground.offsets(store));
    const auto place = std::lower_bound(sound.begin(), sound.end(), now);
    if (place != sound.end() && *place == now) return {};
    std::string wrong = judge(store, ground);
    if (wrong.empty()) sound.insert(place, now);
    return wrong;
}

}  // namespace lumivard::platform::test_support::fault
