// What this library writes is never taken for damaged, however the file came to its shape.
#include <gtest/gtest.h>

#include "tests/fault/pages/SampleFile.h"
#include "tests/support/Campaign.h"

namespace lumivard::platform::stores {
namespace {

void expectSound(const std::filesystem::path& path) {
    const FileReport report = verify(path, true);
    ASSERT_EQ(report.faultCount, 0U) << report.faults.front().code << ": " << report.faults.front().text;
}

// One file through many flushes: it grows, loses most of its records, and grows again.
void live(std::uint64_t seed, int flushes) {
    FastFolder folder;
    const auto path = folder / "a.lvp";
    Changes changes(seed);
    auto store = file(path, tMode::kWrite);
    for (int flush = 0; flush < flushes; ++flush) {
        changes.make(*store, 1 + static_cast<int>(changes.below(60)));
        if (changes.below(20) == 0) changes.thinOut(*store);
        store->flush();
        if (changes.below(8) != 0) continue;
        store.reset();
        ASSERT_NO_FATAL_FAILURE(expectSound(path)) << "after flush " << flush;
        store = file(path, tMode::kWrite, {.verify = true});
    }
}

TEST(SoundFiles, AreFoundSoundAfterAnyFlushes) {
    const std::uint64_t first = test_support::seed();
    const std::uint64_t files = test_support::effort("LVP_SOUND_FILES", 10);
    for (std::uint64_t each = 0; each < files; ++each) {
        ASSERT_NO_FATAL_FAILURE(live(first + each, 60)) << "seed " << first + each;
    }
}

}  // namespace
}  // namespace lumivard::platform::stores
