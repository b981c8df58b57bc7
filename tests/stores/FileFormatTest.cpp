// The bytes of a store file, as anything else that reads such files would find them.
#include <array>
#include <cstdint>
#include <cstring>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "stores/lmdb/Environment.h"
#include "stores/lmdb/HeaderFormat.h"
#include "tests/stores/Records.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores {
namespace {

std::string hex(std::span<const std::byte> bytes) {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const std::byte byte : bytes) {
        text += kDigits[std::to_integer<int>(byte >> 4)];
        text += kDigits[std::to_integer<int>(byte & std::byte{15})];
    }
    return text;
}

/// A file read by LMDB alone.
class RawFile {
public:
    explicit RawFile(const std::filesystem::path& path)
        : _environment(lmdb::openEnvironment(path, MDB_RDONLY | MDB_NOLOCK, 1 << 20)),
          _transaction(lmdb::begin(_environment, MDB_RDONLY)) {
        lmdb::check(mdb_dbi_open(_transaction.get(), nullptr, 0, &_database));
    }

    std::string value(std::uint64_t key) {
        MDB_val keyBytes{sizeof key, &key};
        MDB_val bytes{};
        if (mdb_get(_transaction.get(), _database, &keyBytes, &bytes) != MDB_SUCCESS) return "none";
        return hex({static_cast<const std::byte*>(bytes.mv_data), bytes.mv_size});
    }

    unsigned int flags() {
        unsigned int flags = 0;
        lmdb::check(mdb_dbi_flags(_transaction.get(), _database, &flags));
        return flags;
    }

    std::size_t entries() {
        MDB_stat status{};
        lmdb::check(mdb_stat(_transaction.get(), _database, &status));
        return status.ms_entries;
    }

private:
    lmdb::Environment _environment;
    lmdb::Transaction _transaction;
    MDB_dbi _database = 0;
};

TEST(FileFormat, ARecordIsTheValueAtItsOffset) {
    TemporaryFolder folder;
    {
        const auto store = file(folder / "a.lvp", tMode::kWrite);
        create(*store, "abc");
        create(*store, "");
        store->erase(create(*store, "gone"));
        create(*store, std::string(1, '\xFF'));
    }
    RawFile raw(folder / "a.lvp");
    EXPECT_EQ(raw.flags(), static_cast<unsigned int>(MDB_INTEGERKEY));
    EXPECT_EQ(raw.value(0), "616263");
    EXPECT_EQ(raw.value(1), "");
    EXPECT_EQ(raw.value(2), "none");
    EXPECT_EQ(raw.value(3), "ff");
    EXPECT_EQ(raw.entries(), 4U);
}

TEST(FileFormat, TheHeaderStandsBehindTheLastPossibleRecord) {
    TemporaryFolder folder;
    {
        const auto store = file(folder / "a.lvp", tMode::kWrite);
        create(*store, "abc");
        store->version(0xA1B2C3D4);
    }
    EXPECT_EQ(RawFile(folder / "a.lvp").value(0x100000000),
              "4c565053544f5245"    // LVPSTORE
              "04030201"            // the order of bytes
              "01000000"            // format
              "04000000"            // bytes of a wide character
              "d4c3b2a1"            // the store's version
              "0100000000000000");  // the next offset
}

TEST(FileFormat, ANewStoreHasAHeaderAndNothingElse) {
    TemporaryFolder folder;
    file(folder / "a.lvp", tMode::kWrite).reset();
    RawFile raw(folder / "a.lvp");
    EXPECT_EQ(raw.entries(), 1U);
    EXPECT_EQ(raw.value(0x100000000),
              "4c565053544f5245"
              "04030201"
              "01000000"
              "04000000"
              "00000000"
              "0000000000000000");
}

TEST(FileFormat, ADecodedHeaderIsWhatWasEncoded) {
    const auto header = header::decode(header::encode({0xFFFFFFFF, 0xFFFFFFFF}));
    EXPECT_EQ(header.extent, 0xFFFFFFFFU);
    EXPECT_EQ(header.version, 0xFFFFFFFFU);
}

}  // namespace
}  // namespace lumivard::platform::stores
