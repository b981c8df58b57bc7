// Files that earlier versions wrote, one for each format, with the document that they hold.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "stores/core/Checksum.h"
#include "tests/fault/pages/SampleFile.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kSum = 799232493;

class KeptFiles : public testing::TestWithParam<unsigned int> {
protected:
    KeptFiles() { fs::copy_file(fs::path(LVP_SOURCE_DIR) / "tests/data/stores" / (name() + ".lvp"), path()); }

    static std::string name() { return "format-" + std::to_string(GetParam()); }
    fs::path path() const { return folder / "kept.lvp"; }

    TemporaryFolder folder;
};

TEST_P(KeptFiles, AreSoundAndOfTheirFormat) {
    const FileReport report = verify(path(), true);
    EXPECT_EQ(report.faultCount, 0U);
    EXPECT_EQ(report.format, GetParam());
    EXPECT_EQ(report.records, 6U);
}

TEST_P(KeptFiles, HoldWhatWasWritten) {
    const Contents contents = contentsOf(*file(path(), tMode::kRead));
    EXPECT_EQ(contents.extent, 6U);
    EXPECT_EQ(contents.version, 1U);
    std::uint32_t sum = 0;
    for (const auto& [offset, record] : contents.records) sum = crc32c(std::as_bytes(std::span(record)), sum);
    EXPECT_EQ(sum, kSum) << "of the six records one after the other";
}

TEST_P(KeptFiles, KeepTheirFormatWhenTheyAreWritten) {
    {
        const auto store = file(path(), tMode::kWrite);
        EXPECT_EQ(store->create("new", 3), 6U);
        store->flush();
    }
    EXPECT_EQ(verify(path(), true).format, GetParam());
    const auto store = file(path(), tMode::kRead);
    EXPECT_EQ(recordOf(*store, 6), "new");
    EXPECT_EQ(contentsOf(*store).records.size(), 7U);
}

TEST_P(KeptFiles, GetTheNewestFormatWhenTheyAreCompacted) {
    const Contents before = contentsOf(*file(path(), tMode::kRead));
    compact(path());
    EXPECT_EQ(verify(path(), true).format, 2U);
    EXPECT_TRUE(contentsOf(*file(path(), tMode::kRead)) == before);
}

INSTANTIATE_TEST_SUITE_P(Formats, KeptFiles, testing::Values(1, 2),
                         [](const auto& format) { return "Format" + std::to_string(format.param); });

}  // namespace
}  // namespace lumivard::platform::stores
