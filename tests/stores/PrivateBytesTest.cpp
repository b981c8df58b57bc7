#include "stores/core/PrivateBytes.h"

#include <string>

#include <gtest/gtest.h>

namespace lumivard::platform::stores {
namespace {

/// A record of which bytes are noted in private.
class PrivateBytesTest : public testing::Test {
protected:
    void put(const std::string& contents) {
        heap.assign(record, contents.data(), static_cast<unsigned int>(contents.size()));
    }
    void note(unsigned int position, const std::string& text) {
        const auto size = static_cast<unsigned int>(text.size());
        bytes.note(7, record.view(), position, text.data(), size);
        heap.overwrite(record, position, text.data(), size);
    }
    std::string contents() const { return {reinterpret_cast<const char*>(record.view().data()), record.size()}; }
    std::string stored() { return bytes.stored(7, record.view()).value_or("the same"); }

    RecordHeap heap;
    RecordBytes record;
    PrivateBytes bytes;
};

TEST_F(PrivateBytesTest, AreLeftOutOfWhatIsStored) {
    put("abcdef");
    EXPECT_EQ(stored(), "the same");
    note(2, "X");
    EXPECT_EQ(contents(), "abXdef");
    EXPECT_EQ(stored(), "abcdef");
    EXPECT_FALSE(bytes.stored(8, record.view())) << "of another record nothing is known";
}

TEST_F(PrivateBytesTest, AreNoneWhenTheyHaveComeBackToWhatIsStored) {
    put("abcdef");
    note(2, "X");
    note(2, "Y");
    note(2, "c");
    EXPECT_EQ(stored(), "the same");
}

TEST_F(PrivateBytesTest, MayBeSeveralRuns) {
    put("abcdef");
    note(1, "X");
    note(4, "Y");
    EXPECT_EQ(contents(), "aXcdYf");
    EXPECT_EQ(stored(), "abcdef");
    note(0, "ABCDEF");
    EXPECT_EQ(stored(), "abcdef");
}

TEST_F(PrivateBytesTest, StandBesideChangesOfContent) {
    put("abcdef");
    note(2, "X");
    put("12X456789");
    EXPECT_EQ(stored(), "12c456789");
    put("1");
    EXPECT_EQ(stored(), "the same") << "it is too short for them";
}

TEST_F(PrivateBytesTest, AreContentWhereAChangeOfContentHasMadeThemAnother) {
    put("abcdef");
    note(1, "BCD");
    put("aBxDef");
    EXPECT_EQ(stored(), "abxdef");
    note(4, "E");
    EXPECT_EQ(contents(), "aBxDEf");
    EXPECT_EQ(stored(), "abxdef");
    note(1, "b");
    note(3, "de");
    EXPECT_EQ(stored(), "the same");
}

TEST_F(PrivateBytesTest, ComeBackIntoARecordThatOthersHaveChanged) {
    put("abcdef");
    note(2, "X");
    put("12345678");
    bytes.restore(7, heap, record);
    EXPECT_EQ(contents(), "12X45678");
    EXPECT_EQ(stored(), "12345678");
}

TEST_F(PrivateBytesTest, AreGoneWithTheRecordOrWhatTheyStoodIn) {
    put("abcdef");
    note(4, "X");
    put("123");
    bytes.restore(7, heap, record);
    EXPECT_EQ(contents(), "123");
    put("abcdef");
    bytes.restore(7, heap, record);
    EXPECT_EQ(contents(), "abcdef");
    note(4, "X");
    bytes.forget(7);
    EXPECT_EQ(stored(), "the same");
}

}  // namespace
}  // namespace lumivard::platform::stores
