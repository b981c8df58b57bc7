#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"
#include "tests/support/TemporaryFolder.h"

// The worked example of docs/format.md against the records of a store.

namespace {

using namespace lumivard::platform;

// The hexadecimal digits of the records in the page's example, in order.
std::vector<std::string> recordsOfThePage() {
    const std::string page = bytesOf(LVP_SOURCE_DIR "/docs/format.md");
    std::vector<std::string> records;
    std::string::size_type at = page.find("    offset 0, the root:");
    EXPECT_NE(at, std::string::npos);
    while (at < page.size()) {
        const auto end = page.find('\n', at);
        const std::string line = page.substr(at, end - at);
        at = end == std::string::npos ? page.size() : end + 1;
        if (line.find("offset ") != std::string::npos) {
            records.emplace_back();
            continue;
        }
        for (const char c : line) {
            if (c != ' ') records.back() += c;
        }
    }
    return records;
}

std::string hex(core::storage::datastore::IDataStore* store, unsigned int offset) {
    constexpr char kDigits[] = "0123456789abcdef";
    std::string bytes(store->size(offset), '\0');
    store->read(offset, bytes.data(), 0xFFFFFFFFu);
    std::string text;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0x0F];
    }
    return text;
}

TEST(FormatPage, ShowsTheBytesThatAreStored) {
    const auto store = stores::memory();
    data::structure::IContainerFrontEnd::toplevel(store.get(), L"ab");
    const std::vector<std::string> page = recordsOfThePage();
    ASSERT_EQ(page.size(), 3u);
    for (unsigned int offset = 0; offset < 3; ++offset) EXPECT_EQ(hex(store.get(), offset), page[offset]);
}

}  // namespace
