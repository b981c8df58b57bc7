// What the fuzzer of records kept, once more, where each record ends right before memory that nobody may touch; and the
// same where one of the protections is taken out, which has to show.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "tests/fuzz/Confined.h"
#include "tests/fuzz/KeptFiles.h"
#include "tests/fuzz/PlantedFaults.h"
#include "tests/fuzz/Targets.h"

namespace {

using namespace lumivard::platform::fuzz;

Outcome replayWith(tFault fault) {
    constexpr std::size_t kMemory = 256U << 20;
    constexpr unsigned int kSeconds = 600;
    const auto replay = [fault] {
        plantedFault = fault;
        for (const auto& file : kept("records")) {
            const std::vector<std::uint8_t> bytes = inputIn(file);
            fuzzRecords(bytes.data(), bytes.size());
        }
        return std::string();
    };
    return confined(replay, kMemory, kSeconds);
}

TEST(MeasuredRecords, AreNeverReadBehindTheirEndOrWithoutEnd) {
    ASSERT_GE(kept("records").size(), 10U) << "the corpus is not there";
    const Outcome outcome = replayWith(tFault::kNone);
    EXPECT_EQ(outcome.end, Outcome::kEnded);
    EXPECT_EQ(outcome.words, "");
}

struct tCase {
    const char* name;
    tFault fault;
    Outcome::tEnd end;
};

void PrintTo(const tCase& which, std::ostream* out) {
    *out << which.name;
}

class UnmeasuredRecords : public testing::TestWithParam<tCase> {};

TEST_P(UnmeasuredRecords, EndTheProcess) {
    EXPECT_EQ(replayWith(GetParam().fault).end, GetParam().end);
}

INSTANTIATE_TEST_SUITE_P(By, UnmeasuredRecords,
                         testing::Values(tCase{"Byte", tFault::kByte, Outcome::kDied},
                                         tCase{"Word", tFault::kWord, Outcome::kDied},
                                         tCase{"Section", tFault::kSection, Outcome::kDied},
                                         tCase{"FixedPart", tFault::kFixedPart, Outcome::kDied},
                                         tCase{"Name", tFault::kName, Outcome::kDied},
                                         tCase{"List", tFault::kList, Outcome::kOverMemory},
                                         tCase{"Overwrite", tFault::kOverwrite, Outcome::kDied},
                                         tCase{"Values", tFault::kValues, Outcome::kDied},
                                         tCase{"Circle", tFault::kCircle, Outcome::kOverMemory},
                                         tCase{"Copies", tFault::kCopies, Outcome::kOverMemory}),
                         [](const auto& which) { return std::string(which.param.name); });

}  // namespace
