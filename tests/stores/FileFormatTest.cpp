// The bytes of a store file, as anything else that reads such files would find them.
#include <array>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "lumivard/platform/stores.h"
#include "stores/lmdb/Environment.h"
#include "stores/lmdb/HeaderFormat.h"
#include "stores/lmdb/StoredValue.h"
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

std::string bytesFrom(const std::string& hexadecimal) {
    std::string bytes;
    for (std::size_t at = 0; at < hexadecimal.size(); at += 2) {
        bytes += static_cast<char>(std::stoi(hexadecimal.substr(at, 2), nullptr, 16));
    }
    return bytes;
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

/// The checksum that stands behind a record, bit by bit as the polynomial is defined.
std::string checksumOf(std::uint64_t key, const std::string& contents) {
    std::uint32_t crc = 0xFFFFFFFF;
    const auto add = [&](unsigned char byte) {
        crc ^= byte;
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ ((crc & 1) != 0 ? 0x82F63B78 : 0);
    };
    for (int byte = 0; byte < 8; ++byte) add(static_cast<unsigned char>(key >> (8 * byte)));
    for (const char byte : contents) add(static_cast<unsigned char>(byte));
    crc = ~crc;
    return hex(std::as_bytes(std::span(&crc, 1)));
}

TEST(FileFormat, ARecordIsTheValueAtItsOffsetAndAChecksum) {
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
    EXPECT_EQ(raw.value(0), "616263" + checksumOf(0, "abc"));
    EXPECT_EQ(raw.value(1), checksumOf(1, ""));
    EXPECT_EQ(raw.value(2), "none");
    EXPECT_EQ(raw.value(3), "ff" + checksumOf(3, "\xFF"));
    EXPECT_EQ(raw.entries(), 4U);
}

TEST(FileFormat, TheHeaderStandsBehindTheLastPossibleRecord) {
    TemporaryFolder folder;
    {
        const auto store = file(folder / "a.lvp", tMode::kWrite);
        create(*store, "abc");
        store->version(0xA1B2C3D4);
    }
    const std::string contents =
        "4c565053544f5245"   // LVPSTORE
        "04030201"           // the order of bytes
        "02000000"           // format
        "04000000"           // bytes of a wide character
        "d4c3b2a1"           // the store's version
        "0100000000000000"   // the next offset
        "0200000000000000";  // the transaction
    EXPECT_EQ(RawFile(folder / "a.lvp").value(0x100000000), contents + checksumOf(0x100000000, bytesFrom(contents)));
}

TEST(FileFormat, ANewStoreHasAHeaderAndNothingElse) {
    TemporaryFolder folder;
    file(folder / "a.lvp", tMode::kWrite).reset();
    RawFile raw(folder / "a.lvp");
    EXPECT_EQ(raw.entries(), 1U);
    const std::string contents =
        "4c565053544f5245"
        "04030201"
        "02000000"
        "04000000"
        "00000000"
        "0000000000000000"
        "0100000000000000";
    EXPECT_EQ(raw.value(0x100000000), contents + checksumOf(0x100000000, bytesFrom(contents)));
}

TEST(FileFormat, ADecodedHeaderIsWhatWasEncoded) {
    for (const std::uint32_t format : {1U, 2U}) {
        const auto contents = header::encode({{0xFFFFFFFF, 0xFFFFFFFE}, 7, format});
        std::vector<std::byte> value(contents.size() + storedValue::trailer(format));
        storedValue::put(value.data(), header::kKey, contents, format);
        const header::Stored stored = header::decode(value, value.size());
        EXPECT_EQ(stored.header.extent, 0xFFFFFFFFU);
        EXPECT_EQ(stored.header.version, 0xFFFFFFFEU);
        EXPECT_EQ(stored.format, format);
        EXPECT_EQ(stored.transaction, format == 1 ? 0U : 7U);
    }
}

}  // namespace
}  // namespace lumivard::platform::stores
