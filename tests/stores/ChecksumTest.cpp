#include "stores/core/Checksum.h"

#include <array>
#include <string>

#include <gtest/gtest.h>

namespace lumivard::platform::stores {
namespace {

std::span<const std::byte> bytesIn(const std::string& text) {
    return std::as_bytes(std::span(text));
}

using tFunction = std::uint32_t (*)(std::span<const std::byte>, std::uint32_t) noexcept;

class Checksum : public testing::TestWithParam<tFunction> {};

TEST_P(Checksum, IsThatOfTheStandardsExamples) {
    std::string rising;
    for (char byte = 0; byte < 32; ++byte) rising += byte;
    EXPECT_EQ(GetParam()(bytesIn(std::string(32, '\0')), 0), 0x8A9136AAU);
    EXPECT_EQ(GetParam()(bytesIn(std::string(32, '\xFF')), 0), 0x62A8AB43U);
    EXPECT_EQ(GetParam()(bytesIn(rising), 0), 0x46DD794EU);
    EXPECT_EQ(GetParam()(bytesIn(std::string(rising.rbegin(), rising.rend())), 0), 0x113FDB5CU);
    EXPECT_EQ(GetParam()(bytesIn("123456789"), 0), 0xE3069283U);
    EXPECT_EQ(GetParam()({}, 0), 0U);
}

TEST_P(Checksum, GoesOnFromThatOfWhatComesBefore) {
    std::string text;
    for (int at = 0; at < 100; ++at) text += static_cast<char>(at * 37);
    for (std::size_t cut = 0; cut <= text.size(); ++cut) {
        const std::uint32_t first = GetParam()(bytesIn(text.substr(0, cut)), 0);
        EXPECT_EQ(GetParam()(bytesIn(text.substr(cut)), first), crc32cByTables(bytesIn(text)));
    }
}

INSTANTIATE_TEST_SUITE_P(Ways, Checksum, testing::Values(&crc32c, &crc32cByTables),
                         [](const auto& way) { return way.index == 0 ? "AsTheProcessorCan" : "ByTables"; });

}  // namespace
}  // namespace lumivard::platform::stores
