#include "tests/check/RepairFault.h"

#include <algorithm>

#include "tests/check/Describe.h"

namespace lumivard::platform::test_support {

namespace {

/// How many records a repair erases.
std::size_t erased(const data::check::Repair& plan) {
    return static_cast<std::size_t>(
        std::count_if(plan.steps.begin(), plan.steps.end(), [](const auto& step) { return step.erases; }));
}

/// A repair at which nothing is left that a repair would do something about.
bool isDone(const data::check::Report& report) {
    return std::all_of(report.findings.begin(), report.findings.end(), [](const data::check::Finding& finding) {
        return finding.repair.empty() || finding.code == std::string("live.unattached");
    });
}

}  // namespace

std::string faultOfRepair(core::storage::datastore::IDataStore& store, const data::check::Options& options) {
    const tReach before(store);
    const auto plan = data::check::plan(store, options);
    if (!data::check::apply(store, plan)) return "the plan does not fit";
    const auto left = data::check::examine(store, options);
    if (describe(left) != describe(plan.after)) return "the plan foretells something else";
    if (!isDone(left)) return "left to be done:\n" + describe(left);
    const bool wasSound = plan.before.sound();
    if (!wasSound && erased(plan) != 0) return "what damage may have cut off is erased";
    const auto second = data::check::plan(store, options);
    const std::size_t rest = options.reclaim && !wasSound ? erased(second) : 0;
    if (second.steps.size() != rest) return "a second repair has something to do";
    return missing(before, store);
}

std::string lost(const std::map<unsigned int, walks::tItem>& before,
                 const std::map<unsigned int, walks::tItem>& after) {
    for (const auto& [offset, item] : before) {
        const auto found = after.find(offset);
        if (found == after.end()) return "record " + std::to_string(offset) + " is not reached any more";
        const auto [was, is] =
            std::mismatch(item.told.begin(), item.told.end(), found->second.told.begin(), found->second.told.end());
        if (was != item.told.end())
            return "record " + std::to_string(offset) + " has another " + std::string(was->first);
        const std::wstring& name = found->second.name;
        if (name != item.name && name.rfind(item.name + L'~', 0) != 0) {
            return "record " + std::to_string(offset) + " has another name";
        }
    }
    return {};
}

std::string outOfReach(const std::set<unsigned int>& before, const std::set<unsigned int>& after) {
    for (const unsigned int offset : before) {
        if (!after.contains(offset)) return "no cursor gets to record " + std::to_string(offset) + " any more";
    }
    return {};
}

std::string missing(const tReach& before, core::storage::datastore::IDataStore& store) {
    const tReach after(store);
    const std::string far = outOfReach(before.near, after.near);
    return far.empty() ? lost(before.all, after.all) : far;
}

}  // namespace lumivard::platform::test_support
