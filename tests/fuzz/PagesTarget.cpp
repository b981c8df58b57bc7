#include <cstring>
#include <string>

#include "tests/fault/pages/SampleFile.h"
#include "tests/fuzz/Targets.h"

// Store files whose pages are hostile. A file is long, and most of a random one is refused by its first bytes; so the
// bytes say, as a rule, what is changed in a file that is sound.

namespace lumivard::platform::fuzz {
namespace {

/// A small file with all kinds of pages, the same in every run.
const std::string& soundFile(const TemporaryFolder& folder) {
    static const std::string bytes = [&] {
        const auto store = stores::file(folder / "sound.lvp", stores::tMode::kWrite);
        stores::Changes changes(1);
        for (int flush = 0; flush < 5; ++flush) {
            changes.make(*store, 30);
            store->flush();
        }
        return bytesOf(folder / "sound.lvp");
    }();
    return bytes;
}

/// Changes a file as the bytes say: a position of three bytes, a count of one to eight, and so many new bytes.
std::string changed(std::string file, const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kHead = 4;
    while (size > kHead) {
        const std::size_t at = (data[0] | std::size_t{data[1]} << 8 | std::size_t{data[2]} << 16) % file.size();
        const std::size_t count = std::min({std::size_t{data[3]} % 8 + 1, size - kHead, file.size() - at});
        std::memcpy(file.data() + at, data + kHead, count);
        data += kHead + count;
        size -= kHead + count;
    }
    return file;
}

}  // namespace

int fuzzPages(const std::uint8_t* data, std::size_t size) {
    static const FastFolder folder;
    if (size == 0) return 0;
    const bool whole = data[0] == 'w';
    const auto path = folder / "hostile.lvp";
    stores::writeFile(path,
                      whole ? std::string(data + 1, data + size) : changed(soundFile(folder), data + 1, size - 1));
    stores::FileReport report;
    try {
        report = stores::verify(path, false);
    } catch (const stores::StoreError&) {
        return 0;
    }
    require(stores::exercise(path, {.verify = true}) == (report.faultCount == 0), "what is sound can be opened");
    if (report.faultCount != 0) return 0;
    require(stores::verify(path, false).faultCount == 0, "what was sound is so after it was written");
    return 0;
}

}  // namespace lumivard::platform::fuzz
