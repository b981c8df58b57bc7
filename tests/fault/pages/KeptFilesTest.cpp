// Files that earlier versions wrote, one for each format, with the document that they hold.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <span>

#include "stores/core/Checksum.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/HeaderFormat.h"
#include "tests/fault/pages/SampleFile.h"
#include "tests/stores/Records.h"
#include "tests/support/Failures.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;
using test_support::failuresOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

constexpr std::uint32_t kSum = 799232493;

class KeptFiles : public testing::TestWithParam<unsigned int> {
protected:
    KeptFiles() { fs::copy_file(fs::path(LVP_SOURCE_DIR) / "tests/data/stores" / (name() + ".lvp"), path()); }

    static std::string name() { return "format-" + std::to_string(GetParam()); }
    fs::path path() const { return folder / "kept.lvp"; }

    void expectWhatWasWritten() const {
        const Contents contents = contentsOf(*file(path(), tMode::kRead));
        EXPECT_EQ(contents.extent, 6U);
        EXPECT_EQ(contents.version, 1U);
        std::uint32_t sum = 0;
        for (const auto& [offset, record] : contents.records) sum = crc32c(std::as_bytes(std::span(record)), sum);
        EXPECT_EQ(sum, kSum) << "of the six records one after the other";
    }

    /// Changes the number of the format in every header that lies in the file, and nothing else.
    void stamp(std::uint32_t format) const {
        std::string bytes = bytesOf(path());
        const std::string magic(header::kMagic.begin(), header::kMagic.end());
        for (std::size_t at = bytes.find(magic); at != std::string::npos; at = bytes.find(magic, at + 1)) {
            std::memcpy(bytes.data() + at + header::kFormatAt, &format, sizeof(format));
        }
        writeFile(path(), bytes);
    }

    TemporaryFolder folder;
};

TEST_P(KeptFiles, AreSoundAndOfTheirFormat) {
    const FileReport report = verify(path(), true);
    EXPECT_EQ(report.faultCount, 0U);
    EXPECT_EQ(report.format, GetParam());
    EXPECT_EQ(report.records, 6U);
}

TEST_P(KeptFiles, HoldWhatWasWritten) {
    expectWhatWasWritten();
}

TEST_P(KeptFiles, AreSeenToHoldSomethingElse) {
    const auto changed = [this](unsigned int offset) {
        const auto store = file(path(), tMode::kWrite);
        std::string record = recordOf(*store, offset);
        record.back() ^= 1;
        store->update(offset, record.data(), static_cast<unsigned int>(record.size()), true);
    };
    for (unsigned int offset = 0; offset < 6; ++offset) {
        changed(offset);
        EXPECT_THAT(failuresOf([this] { expectWhatWasWritten(); }), ElementsAre(HasSubstr("of the six records")));
        changed(offset);  // back
    }
    expectWhatWasWritten();
    file(path(), tMode::kWrite)->version(2);
    EXPECT_THAT(failuresOf([this] { expectWhatWasWritten(); }), ElementsAre(HasSubstr("contents.version")));
}

TEST_P(KeptFiles, AreRefusedByNameWhereTheirFormatIsNewer) {
    stamp(3);
    for (const tMode mode : {tMode::kRead, tMode::kWrite}) {
        EXPECT_THAT(messageOf<StoreError>([&] { file(path(), mode); }),
                    HasSubstr("its format 3 is newer than format 2, the last that this version can read"));
    }
}

TEST_P(KeptFiles, WouldNotBeRefusedByNameWereTheirFormatTakenForAKnownOne) {
    stamp(3);
    const std::string bytes = bytesOf(path());
    const std::string value = bytes.substr(bytes.find(std::string(header::kMagic.begin(), header::kMagic.end())), 100);
    const auto refusal = [&](std::uint32_t newest) {
        return messageOf<EngineError>([&] { header::decode(std::as_bytes(std::span(value)), value.size(), newest); });
    };
    EXPECT_THAT(refusal(header::kFormat), HasSubstr("is newer than"));
    EXPECT_THAT(refusal(3), Not(HasSubstr("is newer than")));
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
