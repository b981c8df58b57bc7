// Whatever field of whatever record is wrong, the checker finds it, where it is and as what it is; and it would show if
// it did not.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "lumivard/platform/data/check/Check.h"
#include "tests/check/Describe.h"
#include "tests/check/FieldFaults.h"
#include "tests/check/SoundStores.h"
#include "tests/check/Walks.h"
#include "tests/support/Campaign.h"
#include "tests/support/Sanitized.h"

namespace {

using namespace lumivard::platform::test_support;
namespace check = lumivard::platform::data::check;

/// Whether a report has a finding of a sign, with `off` added to the offset of each finding.
bool shows(const check::Report& report, const tSign& sign, unsigned int off) {
    return std::any_of(report.findings.begin(), report.findings.end(), [&](const check::Finding& finding) {
        return (sign.codes.empty() || sign.codes.contains(finding.code)) && sign.places.contains(finding.offset + off);
    });
}

/// Plants faults in a filled store, one after the other, and returns what was not found first, with what was found in
/// its place; empty when all was.
std::string firstMissed(std::uint64_t faults, std::uint64_t seed, const check::Options& options, unsigned int off = 0) {
    const auto store = sound::filled();
    std::mt19937_64 random(seed);
    FieldFaults all(*store, random);
    for (std::uint64_t i = 0; i < faults; ++i) {
        const tFault fault = all.draw();
        const tSign sign = all.signOf(fault);
        FieldFaults::plant(*store, fault);
        const auto report = check::examine(*store, options);
        if (!shows(report, sign, off)) return fault.words + ", and found was:\n" + describe(report);
        FieldFaults::undo(*store, fault);
    }
    EXPECT_TRUE(check::examine(*store, options).clean());
    return {};
}

TEST(PlantedFaults, AreAllFound) {
    EXPECT_EQ(firstMissed(effort("LVP_PLANTED", 3000), seed(), {}), "");
}

TEST(PlantedFaults, AreMissedWhereAnotherRecordIsNamed) {
    EXPECT_NE(firstMissed(100, 1, {}, 1), "");
}

/// Takes one rule out of the checker.
class WithoutARule : public testing::TestWithParam<const char*> {};

TEST_P(WithoutARule, SomeFaultsAreMissed) {
    EXPECT_NE(firstMissed(5000, 1, {.without = {GetParam()}}), "");
}

// Those as which alone a wrong field can show.
INSTANTIATE_TEST_SUITE_P(Out, WithoutARule,
                         testing::Values("graph.cycle", "graph.listed-twice", "graph.parent-differs",
                                         "live.stale-count", "live.unattached", "record.container-type",
                                         "record.default-pairs", "record.flags", "record.kind", "record.list-size",
                                         "record.locale-pairs", "record.reserved", "record.rest",
                                         "record.section-past-end", "record.short", "record.text-character",
                                         "record.text-end", "record.text-rest", "record.unit", "record.value-kind",
                                         "record.value-size", "reference.children", "reference.defaults",
                                         "reference.entry", "reference.locale", "reference.shared"),
                         [](const auto& rule) {
                             std::string name(rule.param);
                             std::replace_if(
                                 name.begin(), name.end(), [](char c) { return c == '.' || c == '-'; }, '_');
                             return name;
                         });

TEST(CleanVerdict, MeansThatEverythingCanBeReadAndFound) {
    const auto store = sound::filled();
    std::set<std::wstring> lost;
    const std::size_t all = walks::askEverything(*store, lost);
    std::mt19937_64 random(seed());
    std::uint64_t sound = 0;
    for (std::uint64_t i = effort("LVP_VERDICTS", lumivard::platform::test_support::usually(600)); i > 0; --i) {
        // Any byte of any record, so that much of it is right by chance.
        const auto damaged = sound::copyOf(*store);
        const auto offset = static_cast<unsigned int>(random() % damaged->extent());
        std::string bytes(damaged->size(offset), '\0');
        if (bytes.empty()) continue;
        damaged->read(offset, bytes.data(), 0xFFFFFFFFu);
        bytes[random() % bytes.size()] = static_cast<char>(random() % 8);
        damaged->update(offset, bytes.data(), static_cast<unsigned int>(bytes.size()), true);
        const auto report = check::examine(*damaged);
        if (!report.clean()) continue;
        ++sound;
        EXPECT_EQ(walks::askEverything(*damaged, lost), all) << offset;
        EXPECT_TRUE(lost.empty()) << offset;
    }
    // Of the few tries under a sanitizer none may have been clean.
    if (!lumivard::platform::test_support::kSanitized) {
        EXPECT_GT(sound, 0u);
    }
}

}  // namespace
