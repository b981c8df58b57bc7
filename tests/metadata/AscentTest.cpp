// The guard of walks along parents.
#include "metadata/Ascent.h"

#include <gtest/gtest.h>

namespace {

using lumivard::platform::data::Metadata::Ascent;

/// How many steps of a walk are taken that goes `straight` offsets up and then around a circle of `round` for ever.
unsigned int steps(unsigned int straight, unsigned int round) {
    Ascent ascent;
    unsigned int count = 0;
    for (unsigned int offset = 0; ascent.step(offset); offset = offset + 1 < straight + round ? offset + 1 : straight) {
        if (++count > 10 * (straight + round)) break;
    }
    return count;
}

TEST(Ascent, LetsAChainWithoutACirclePass) {
    Ascent ascent;
    for (unsigned int offset = 0; offset < 100000; ++offset) ASSERT_TRUE(ascent.step(offset)) << offset;
}

TEST(Ascent, TakesEveryOffsetForWhatItIs) {
    Ascent ascent;
    EXPECT_TRUE(ascent.step(0));
    EXPECT_TRUE(ascent.step(0xFFFFFFFFu));
    EXPECT_TRUE(ascent.step(1));
}

TEST(Ascent, EndsAWalkThatComesRoundAfterAllOfItWasSeen) {
    for (unsigned int straight = 0; straight < 40; ++straight) {
        for (unsigned int round = 1; round < 40; ++round) {
            const unsigned int count = steps(straight, round);
            EXPECT_GE(count, straight + round) << straight << " and " << round;
            EXPECT_LE(count, 4 * (straight + round)) << straight << " and " << round;
        }
    }
}

}  // namespace
