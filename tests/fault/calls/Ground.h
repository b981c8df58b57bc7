#pragma once

#include <array>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "tests/support/ClientFixture.h"
#include "tests/support/TemporaryFolder.h"

namespace lumivard::platform::test_support::fault {

/// What a store is for: the one that most operations work on, one that is copied to and that links are followed in, one
/// of schemas, and one without any record.
enum tPlace : unsigned int { kMain, kOther, kSchemas, kEmpty, kPlaces };

/// The kinds of stores that operations are tried on.
enum class tKind { kMemory, kFile, kOdd };

/// A kind in the name of a test.
inline const char* nameOf(tKind kind) {
    return kind == tKind::kMemory ? "Memory" : kind == tKind::kFile ? "File" : "Odd";
}

/// Gives new stores with always the same content: made once through the public interfaces, then copied record by record
/// or, for files, as a file.
class Ground {
public:
    explicit Ground(tKind kind);

    tKind kind() const { return _kind; }

    /// Where its files are.
    const std::filesystem::path& folder() const { return _folder.path(); }

    /// A new store with the content of a place. `failing` is the one that is to fail: the others are never files.
    /// Of files there is one at a time for each place.
    std::unique_ptr<IDataStore> make(tPlace place, bool failing) const;

    /// The file of the store that was made last for a place, where that is in one.
    std::filesystem::path file(tPlace place) const { return _folder / ("file-" + std::to_string(place)); }

    /// Opens the file of the store that was made last for a place, for reading. The store itself is gone by then.
    std::unique_ptr<IDataStore> reopen(tPlace place) const;

    /// A new store, never a file, with the records of one of this kind at the same offsets.
    std::unique_ptr<IDataStore> copy(IDataStore& store) const;

    /// All offsets that a store of this kind has handed out.
    std::vector<unsigned int> offsets(IDataStore& store) const;

private:
    std::unique_ptr<IDataStore> blank() const;
    void writeFiles();
    std::filesystem::path model(tPlace place) const { return _folder / ("model-" + std::to_string(place)); }

    tKind _kind;
    FastFolder _folder;
    std::array<std::vector<std::string>, kPlaces> _records;
    std::array<unsigned int, kPlaces> _versions{};
};

/// The schemas that the content names.
inline constexpr const wchar_t* kPose = L"schemas.Pose";
inline constexpr const wchar_t* kDoor = L"schemas.Door";

}  // namespace lumivard::platform::test_support::fault
