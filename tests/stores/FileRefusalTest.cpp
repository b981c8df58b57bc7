// Files that are no store, or not one that can be used here, are refused by a sentence and left as they are.
#include <array>
#include <cstring>
#include <filesystem>
#include <functional>
#include <span>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "lumivard/platform/stores.h"
#include "stores/engine/EngineError.h"
#include "stores/lmdb/Environment.h"
#include "stores/lmdb/HeaderFormat.h"
#include "stores/lmdb/LmdbEngine.h"
#include "stores/lmdb/NetworkFileSystem.h"
#include "stores/lmdb/StoredValue.h"
#include "tests/stores/ChildProcess.h"
#include "tests/stores/Records.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::stores {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

/// What stands in the file behind contents that belong to a key.
std::string trailerOf(std::uint64_t key, const std::string& contents) {
    const std::uint32_t sum = storedValue::checksum(key, std::as_bytes(std::span(contents)));
    return std::string(reinterpret_cast<const char*>(&sum), sizeof sum);
}

class FileRefusal : public testing::Test {
protected:
    fs::path path() const { return folder / "a.lvp"; }

    /// Both modes refuse the file with this reason, and neither changes it.
    void expectRefused(const std::string& reason) {
        const std::string before = bytesOf(path());
        for (const tMode mode : {tMode::kRead, tMode::kWrite}) {
            EXPECT_EQ(messageOf<StoreError>([&] { file(path(), mode); }), sentence(reason));
        }
        EXPECT_TRUE(bytesOf(path()) == before);
    }

    std::string sentence(const std::string& reason) const {
        return "Cannot open the store \"" + path().string() + "\": " + reason + ".";
    }

    /// Runs `change` in a transaction on the database of the file, past all rules.
    void tamper(const std::function<void(MDB_txn*, MDB_dbi)>& change, unsigned int flags = 0) {
        const auto environment = lmdb::openEnvironment(path(), MDB_NOLOCK, 1 << 20);
        auto transaction = lmdb::begin(environment, 0);
        MDB_dbi database = 0;
        lmdb::check(mdb_dbi_open(transaction.get(), nullptr, flags, &database));
        change(transaction.get(), database);
        lmdb::check(lmdb::commit(std::move(transaction)));
    }

    /// Puts a value at the header's key, made from the sound one by `change`.
    void tamperHeader(const std::function<void(std::string&)>& change) {
        file(path(), tMode::kWrite).reset();
        const auto sound = header::encode({{}, 2, header::kFormat});
        std::string value(reinterpret_cast<const char*>(sound.data()), sound.size());
        change(value);
        value += trailerOf(header::kKey, value);
        tamper([&](MDB_txn* transaction, MDB_dbi database) {
            std::uint64_t key = header::kKey;
            MDB_val keyBytes{sizeof key, &key};
            MDB_val bytes{value.size(), value.data()};
            lmdb::check(mdb_put(transaction, database, &keyBytes, &bytes, 0));
        });
    }

    TemporaryFolder folder;
};

void setNumber(std::string& value, std::size_t at, std::uint32_t number) {
    std::memcpy(value.data() + at, &number, sizeof number);
}

// --- Names

TEST_F(FileRefusal, AMissingFileIsRefusedForReadingAndNotCreated) {
    EXPECT_EQ(messageOf<StoreError>([&] { file(path(), tMode::kRead); }), sentence("there is no such file"));
    EXPECT_EQ(folder.entries(), 0);
}

TEST_F(FileRefusal, AMissingFolderIsRefused) {
    const fs::path name = folder / "missing/a.lvp";
    for (const tMode mode : {tMode::kRead, tMode::kWrite}) {
        EXPECT_THAT(messageOf<StoreError>([&] { file(name, mode); }),
                    HasSubstr("its folder cannot be entered: No such file or directory"));
    }
}

TEST_F(FileRefusal, AFolderIsRefused) {
    fs::create_directory(path());
    for (const tMode mode : {tMode::kRead, tMode::kWrite}) {
        EXPECT_EQ(messageOf<StoreError>([&] { file(path(), mode); }), sentence("it is not a regular file"));
    }
}

TEST_F(FileRefusal, APipeIsRefusedWithoutWaitingForItsOtherEnd) {
    ASSERT_EQ(::mkfifo(path().c_str(), 0600), 0);
    for (const tMode mode : {tMode::kRead, tMode::kWrite}) {
        EXPECT_EQ(messageOf<StoreError>([&] { file(path(), mode); }), sentence("it is not a regular file"));
    }
}

TEST_F(FileRefusal, ALinkThatLeadsNowhereIsRefused) {
    fs::create_symlink("missing.lvp", path());
    for (const tMode mode : {tMode::kRead, tMode::kWrite}) {
        EXPECT_EQ(messageOf<StoreError>([&] { file(path(), mode); }),
                  sentence("it is a symbolic link that leads nowhere"));
    }
    EXPECT_EQ(folder.entries(), 1);
}

TEST_F(FileRefusal, AFileWithASecondNameIsRefused) {
    file(path(), tMode::kWrite).reset();
    fs::create_hard_link(path(), folder / "b.lvp");
    EXPECT_THAT(messageOf<StoreError>([&] { file(path(), tMode::kRead); }), HasSubstr("several names (hard links)"));
    fs::remove(folder / "b.lvp");
    EXPECT_NO_THROW(file(path(), tMode::kRead));
}

TEST_F(FileRefusal, ANameWithoutFileIsRefused) {
    EXPECT_THAT(messageOf<StoreError>([&] { file(folder / "missing/", tMode::kWrite); }),
                HasSubstr("that is not the name of a file"));
}

TEST_F(FileRefusal, ControlCharactersOfANameAreShownEscaped) {
    EXPECT_THAT(messageOf<StoreError>([&] { file(folder / "red\x1B[31m\n\x7F", tMode::kRead); }),
                HasSubstr("red\\x1B[31m\\x0A\\x7F\""));
}

TEST_F(FileRefusal, OfAVeryLongNameTheEndIsShown) {
    const std::string name = std::string(100, 'x') + std::string(98, 'y') + "é.lvp";
    const std::string message = messageOf<StoreError>([&] { file(folder / name, tMode::kRead); });
    EXPECT_THAT(message, HasSubstr("the store \"..." + std::string(96, 'x')));
    EXPECT_THAT(message, HasSubstr(std::string(98, 'y') + "é.lvp\""));
}

TEST_F(FileRefusal, ANameWithoutRoomForThatOfTheLockFileIsRefusedBeforeThereIsAFile) {
    EXPECT_THAT(messageOf<StoreError>([&] { file(folder / std::string(251, 'x'), tMode::kWrite); }),
                HasSubstr("its name has more than 250 bytes"));
    EXPECT_EQ(folder.entries(), 0);
    EXPECT_NO_THROW(file(folder / std::string(250, 'x'), tMode::kWrite));
}

TEST_F(FileRefusal, ANameIsNeverCutInsideACharacter) {
    std::string name = "a";
    for (int i = 0; i < 110; ++i) name += "é";
    const std::string message = messageOf<StoreError>([&] { file(folder / name, tMode::kRead); });
    EXPECT_THAT(message, HasSubstr("the store \"...é"));
}

// --- Contents

TEST_F(FileRefusal, AnEmptyFileIsRefused) {
    folder.file("a.lvp", "");
    expectRefused("the file is empty, which no store file is");
}

TEST_F(FileRefusal, AStoreFileCutToNothingIsRefused) {
    create(*file(path(), tMode::kWrite), "a");
    fs::resize_file(path(), 0);
    expectRefused("the file is empty, which no store file is");
}

TEST_F(FileRefusal, AStoreFileCutToItsFirstPageIsRefused) {
    create(*file(path(), tMode::kWrite), "a");
    fs::resize_file(path(), 4096);
    expectRefused("it is not a store file, or it is damaged: it ends before its description of itself");
}

TEST_F(FileRefusal, AFileThatClaimsMorePagesThanCanBeIsRefused) {
    constexpr std::size_t kPage = 4096;
    constexpr std::size_t kLastPageAt = 136;  // in each of the two meta pages
    create(*file(path(), tMode::kWrite), "a");
    std::string bytes = bytesOf(path());
    const auto expectRefusedWith = [&](std::uint64_t claimed, const std::string& reason) {
        for (const std::size_t page : {std::size_t{0}, kPage}) {
            std::memcpy(bytes.data() + page + kLastPageAt, &claimed, sizeof claimed);
        }
        folder.file("a.lvp", bytes);
        expectRefused("it is not a store file, or it is damaged: " + reason);
    };
    expectRefusedWith(1ULL << 26, "67108859 pages are neither in use nor free");
    expectRefusedWith(1ULL << 34, "its description of itself makes no sense");  // there is no room to map it
    expectRefusedWith(1ULL << 63, "its description of itself makes no sense");
}

TEST_F(FileRefusal, OtherFilesAreRefusedWhateverTheirLength) {
    for (const std::size_t length : {1UL, 100UL, 4096UL, 100000UL}) {
        folder.file("a.lvp", std::string(length, '#'));
        expectRefused("it is not a store file, or it is damaged");
        folder.file("a.lvp", std::string(length, '\0'));
        expectRefused("it is not a store file, or it is damaged");
    }
    EXPECT_EQ(folder.entries(), 1) << "nothing is left beside a file of somebody else's";
}

TEST_F(FileRefusal, ADatabaseOfAnotherProgramIsRefused) {
    tamper([](MDB_txn* transaction, MDB_dbi database) {
        std::string key = "key";
        MDB_val bytes{key.size(), key.data()};
        lmdb::check(mdb_put(transaction, database, &bytes, &bytes, 0));
    });
    expectRefused("it is a database of another program");
}

TEST_F(FileRefusal, ADatabaseWithNumbersForKeysButNoHeaderIsRefused) {
    tamper(
        [](MDB_txn* transaction, MDB_dbi database) {
            std::uint64_t key = 0;
            MDB_val bytes{sizeof key, &key};
            lmdb::check(mdb_put(transaction, database, &bytes, &bytes, 0));
        },
        MDB_INTEGERKEY);
    expectRefused("it is a database of another program");
}

TEST_F(FileRefusal, ADatabaseThatLostItsOrderOfKeysIsRefused) {
    tamper([](MDB_txn* transaction, MDB_dbi database) {
        std::uint64_t key = header::kKey;
        auto value = header::encode({{}, 1, header::kFormat});
        MDB_val keyBytes{sizeof key, &key};
        MDB_val bytes{value.size(), value.data()};
        lmdb::check(mdb_put(transaction, database, &keyBytes, &bytes, 0));
    });
    expectRefused("it is a database of another program");
}

TEST_F(FileRefusal, AHeaderWithoutTheMagicIsRefused) {
    tamperHeader([](std::string& value) { value[0] = 'X'; });
    expectRefused("it is a database of another program");
}

TEST_F(FileRefusal, AHeaderTooShortForItsMagicIsRefused) {
    for (const std::size_t length : {0UL, 7UL, 11UL}) {
        fs::remove(path());
        tamperHeader([&](std::string& value) { value.resize(length); });
        expectRefused("it is a database of another program");
    }
}

TEST_F(FileRefusal, AnotherByteOrderIsRefusedByName) {
    tamperHeader([](std::string& value) { setNumber(value, header::kByteOrderAt, 0x04030201); });
    expectRefused("it was written on a machine with another byte order");
}

TEST_F(FileRefusal, ANewerFormatIsRefusedByNameWhateverFollows) {
    tamperHeader([](std::string& value) {
        setNumber(value, header::kFormatAt, 3);
        value.resize(100, '\xFF');
    });
    expectRefused("its format 3 is newer than format 2, the last that this version can read");
}

TEST_F(FileRefusal, AnotherWidthOfWideCharactersIsRefused) {
    tamperHeader([](std::string& value) { setNumber(value, header::kWideAt, 2); });
    expectRefused("it was written on a machine with another width of wide characters");
}

TEST_F(FileRefusal, ADamagedHeaderIsRefused) {
    const std::array<std::function<void(std::string&)>, 4> damages = {
        [](std::string& value) { setNumber(value, header::kFormatAt, 0); },
        [](std::string& value) { value.resize(39); },
        [](std::string& value) { value.push_back('\0'); },
        [](std::string& value) { setNumber(value, header::kExtentAt + 4, 1); },
    };
    for (const auto& damage : damages) {
        fs::remove(path());
        tamperHeader(damage);
        expectRefused("its header is damaged");
    }
}

TEST_F(FileRefusal, AStoreInThePlaceOfTheLockFileIsLeftAlone) {
    create(*file(folder / "a.lvp-lock", tMode::kWrite), "mine");
    const std::string before = bytesOf(folder / "a.lvp-lock");
    EXPECT_EQ(messageOf<StoreError>([&] { file(path(), tMode::kWrite); }),
              sentence("its lock file would be \"a.lvp-lock\", which is a store"));
    EXPECT_TRUE(bytesOf(folder / "a.lvp-lock") == before);
}

// --- Places

TEST(NetworkFileSystem, IsKnownByTheNumbersOfTheSystem) {
    EXPECT_STREQ(networkFileSystem(0x6969), "NFS");
    EXPECT_STREQ(networkFileSystem(0x517B), "SMB");
    EXPECT_STREQ(networkFileSystem(static_cast<long>(0xFF534D42)), "CIFS");
    EXPECT_STREQ(networkFileSystem(static_cast<int>(0xFE534D42)), "SMB2");
    EXPECT_EQ(networkFileSystem(0xEF53), nullptr);      // ext4
    EXPECT_EQ(networkFileSystem(0x01021994), nullptr);  // tmpfs
}

TEST_F(FileRefusal, ANetworkFileSystemIsRefusedAndNothingIsCreatedThere) {
    LmdbEngine::Settings settings;
    settings.fileSystem = 0x6969;
    const std::string reason =
        "it lies on a network file system (NFS), where locks and mapped files cannot be relied upon";
    EXPECT_EQ(messageOf<EngineError>([&] { LmdbEngine(path(), tMode::kWrite, settings); }), reason);
    EXPECT_EQ(folder.entries(), 0);
    file(path(), tMode::kWrite).reset();
    EXPECT_EQ(messageOf<EngineError>([&] { LmdbEngine(path(), tMode::kWrite, settings); }), reason);
    EXPECT_EQ(messageOf<EngineError>([&] { LmdbEngine(path(), tMode::kRead, settings); }), reason);
}

/// The message of opening the file with the rights of anybody, as a child process tells it by its exit status.
bool refusedForOthers(const fs::path& path, tMode mode, const std::string& expected) {
    constexpr uid_t kNobody = 65534;
    ChildProcess child([&](const ChildProcess::Line&) {
        if (::geteuid() == 0 && ::setuid(kNobody) != 0) return 2;
        return messageOf<StoreError>([&] { file(path, mode); }) == expected ? 0 : 1;
    });
    return child.wait() == 0;
}

TEST_F(FileRefusal, AFolderThatMayNotBeWrittenIsRefused) {
    fs::permissions(folder / "", static_cast<fs::perms>(0555));
    EXPECT_TRUE(refusedForOthers(path(), tMode::kWrite, sentence("it could not be created: Permission denied")));
    fs::permissions(folder / "", fs::perms::owner_all);
}

TEST_F(FileRefusal, AFileThatMayNotBeWrittenIsRefusedForWriting) {
    file(path(), tMode::kWrite).reset();
    fs::permissions(folder / "", static_cast<fs::perms>(0555));
    fs::permissions(path(), static_cast<fs::perms>(0444));
    EXPECT_TRUE(refusedForOthers(path(), tMode::kWrite, sentence("Permission denied")));
    fs::permissions(folder / "", fs::perms::owner_all);
}

// --- Records whose number was changed

// Nothing but the store's header is measured at such an opening.
TEST_F(FileRefusal, ARecordWhoseNumberWasChangedIsRefusedWhenItIsAskedFor) {
    constexpr std::uint64_t kRecords = 300;
    const auto name = [](std::uint64_t offset) { return "record " + std::to_string(offset) + "."; };
    {
        const auto store = file(path(), tMode::kWrite);
        for (unsigned int offset = 0; offset < kRecords; ++offset) create(*store, name(offset));
        for (unsigned int offset = 0; offset < kRecords; offset += 3) store->erase(offset);
    }
    const std::string sound = bytesOf(path());
    for (const std::uint64_t offset : {1ul, 2ul, 4ul, 77ul, 148ul, 149ul, 298ul, 299ul}) {
        const std::string stored(reinterpret_cast<const char*>(&offset), sizeof offset);
        for (unsigned int bit = 0; bit < 64; ++bit) {
            std::string bytes = sound;
            for (std::size_t at = bytes.find(stored + name(offset)); at != std::string::npos;
                 at = bytes.find(stored + name(offset))) {
                bytes[at + bit / 8] = static_cast<char>(bytes[at + bit / 8] ^ 1 << bit % 8);
            }
            folder.file("a.lvp", bytes);
            const auto ask = [&] { file(path(), tMode::kRead)->size(static_cast<unsigned int>(offset)); };
            EXPECT_THAT(messageOf<StoreError>(ask), HasSubstr("it is damaged")) << offset << ", bit " << bit;
        }
    }
}

}  // namespace
}  // namespace lumivard::platform::stores
