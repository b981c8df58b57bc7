#include "stores/lmdb/FileCreation.h"

#include "stores/lmdb/Environment.h"
#include "stores/lmdb/FileHandle.h"
#include "stores/lmdb/HeaderFormat.h"
#include "stores/lmdb/LockFile.h"
#include "stores/lmdb/NewFile.h"

namespace lumivard::platform::stores {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMapSize = 1 << 20;  // for the header alone
constexpr mode_t kFileMode = 0666;

void layOut(const fs::path& path) {
    const auto environment = lmdb::openEnvironment(path, MDB_NOLOCK, kMapSize);  // nobody else knows the file
    auto transaction = lmdb::begin(environment, 0);
    putHeader(transaction, makeRecords(transaction), {});
    lmdb::check(lmdb::commit(std::move(transaction)));
}

}  // namespace

// Keys that are numbers come with the database. Were this transaction undone, LMDB would lose that without a word; so
// it belongs to a file that nobody else has seen.
MDB_dbi makeRecords(const lmdb::Transaction& transaction) {
    MDB_dbi records = 0;
    lmdb::check(mdb_dbi_open(transaction.get(), nullptr, MDB_INTEGERKEY, &records));
    return records;
}

void putHeader(const lmdb::Transaction& transaction, MDB_dbi records, const Engine::Header& header) {
    const auto contents = header::encode({header, mdb_txn_id(transaction.get()), header::kFormat});
    const lmdb::Cursor cursor = lmdb::openCursor(transaction, records);
    lmdb::check(lmdb::put(cursor, header::kKey, contents, header::kFormat, MDB_APPEND));
}

void createStoreFile(const fs::path& path, std::optional<long> fileSystem) {
    LockFile::requireRoomForName(path);
    NewFile file(path.parent_path(), kFileMode);
    refuseNetwork(file.descriptor(), fileSystem);
    layOut(file.path());
    file.makeDurable();
    file.rename(path);
    NewFile::makeNamesDurable(
        path.parent_path());  // of whoever was faster, too: that one may be gone before it does so
}

}  // namespace lumivard::platform::stores
