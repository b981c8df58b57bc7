// A file that was damaged, or made to do harm, gives an error; never a crash, a hang or other data.
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <optional>

#include <gtest/gtest.h>

#include "tests/fault/pages/Damage.h"
#include "tests/fault/pages/SampleFile.h"
#include "tests/support/Campaign.h"

namespace lumivard::platform::stores {
namespace {

using test_support::effort;
using test_support::seed;

const FileOptions kNotTrusted{.verify = true};

class DamagedFiles : public testing::Test {
protected:
    std::filesystem::path path() const { return folder / "a.lvp"; }

    FastFolder folder;
    const std::uint64_t first = seed();
    const std::string sound = sampleBytes(folder / "sound.lvp", first);
};

TEST_F(DamagedFiles, EndInAnErrorOrAreUsableAndSound) {
    const std::uint64_t files = effort("LVP_DAMAGED_FILES", 10000);
    std::uint64_t opened = 0;
    for (std::uint64_t each = 0; each < files; ++each) {
        SCOPED_TRACE(first + each);
        std::string bytes = sound;
        Damage(first + each).strike(bytes);
        writeFile(path(), bytes);
        if (!exercise(path(), kNotTrusted)) continue;
        ++opened;
        ASSERT_EQ(verify(path(), false).faultCount, 0U) << "what was sound when it was opened must be so after writing";
    }
    std::cout << files << " damaged files: " << opened << " opened, " << files - opened << " refused" << std::endl;
    EXPECT_GT(opened, 0U);
    EXPECT_LT(opened, files);
}

/// Whether a piece of work ends its process otherwise than by returning.
bool endsTheProcess(const std::function<void()>& work) {
    const pid_t child = ::fork();
    if (child == 0) {
        if (!::freopen("/dev/null", "w", stderr)) ::_exit(1);
        const rlimit noCore{0, 0};
        ::setrlimit(RLIMIT_CORE, &noCore);
        ::alarm(20);  // a child that hangs has ended too
        work();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return !WIFEXITED(status) || WEXITSTATUS(status) != 0;
}

TEST_F(DamagedFiles, EndTheProcessWhereNobodyMeasuresThem) {
    int ended = 0;
    for (std::uint64_t each = 0; each < 2000 && ended == 0; ++each) {
        std::string bytes = sound;
        Damage(first + each).strike(bytes);
        writeFile(path(), bytes);
        ended += endsTheProcess([&] { exercise(path(), {}); });
    }
    EXPECT_GT(ended, 0) << "the damages above must be ones that matter";
}

/// What a damaged file turns out to hold: nothing where it is refused, or one of its records is.
std::optional<Contents> found(const std::filesystem::path& path) {
    try {
        return contentsOf(*file(path, tMode::kRead, kNotTrusted));
    } catch (const StoreError&) {
        return std::nullopt;
    }
}

/// How many of the files with one changed bit hold other contents without a word.
std::uint64_t silentlyDifferent(const std::filesystem::path& path, const std::string& sound, std::uint64_t first,
                                std::uint64_t flips) {
    writeFile(path, sound);
    const Contents expected = found(path).value();
    std::uint64_t refused = 0;
    std::uint64_t different = 0;
    for (std::uint64_t each = 0; each < flips; ++each) {
        std::string bytes = sound;
        Damage(first + each).flip(bytes);
        writeFile(path, bytes);
        const auto contents = found(path);
        refused += !contents;
        if (!contents || *contents == expected) continue;
        ++different;
        std::cout << "silently different: seed " << first + each << std::endl;
    }
    std::cout << flips << " flips: " << refused << " refused, " << different << " silently different" << std::endl;
    EXPECT_GT(refused, 0U);
    return different;
}

TEST_F(DamagedFiles, AreNeverSilentlyDifferent) {
    const std::uint64_t flips = effort("LVP_FLIPS", 7000);
    EXPECT_EQ(silentlyDifferent(path(), sound, first, flips / 2), 0U);
    compact(folder / "sound.lvp");  // hardly a page is free then, and most flips hit something
    EXPECT_EQ(silentlyDifferent(path(), bytesOf(folder / "sound.lvp"), first, flips / 2), 0U);
}

TEST_F(DamagedFiles, AreSilentlyDifferentWithoutChecksums) {
    const std::filesystem::path old = std::filesystem::path(LVP_SOURCE_DIR) / "tests/data/stores/format-1.lvp";
    EXPECT_GT(silentlyDifferent(path(), bytesOf(old), first, 2000), 0U)
        << "the first format has no checksums, and the test must notice";
}

TEST_F(DamagedFiles, AreReportedWithoutEnd) {
    for (std::uint64_t each = 0; each < 300; ++each) {
        SCOPED_TRACE(first + each);
        std::string bytes = sound;
        Damage damage(first + each);
        for (int strikes = 0; strikes < 10; ++strikes) damage.strike(bytes);
        writeFile(path(), bytes);
        try {
            const FileReport report = verify(path(), true);
            EXPECT_LE(report.faults.size(), 1000U);
            EXPECT_LE(report.faults.size(), report.faultCount);
        } catch (const StoreError&) {
            // no store file at all any more
        }
    }
}

}  // namespace
}  // namespace lumivard::platform::stores
