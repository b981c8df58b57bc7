#include <gmock/gmock.h>

#include <string>

#include "tests/end_to_end/ToolFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::HasSubstr;

class StatVerb : public Tool {
protected:
    void SetUp() override {
        store = imported(
            "<root name='r' version='7'><name locale='x'>top</name><group name='g'><int32 name='few'>1 2</int32><int32 "
            "name='many'>1 2 3 4</int32><double name='none'/></group></root>");
    }
    std::string store;
};

TEST_F(StatVerb, TellsRecordsByKindAndTheLargestValues) {
    const tRun stat = run("stat " + store);
    EXPECT_EQ(stat.status, 0);
    EXPECT_EQ(stat.err, "");
    EXPECT_THAT(stat.out, HasSubstr("version 7 of the data"));
    EXPECT_THAT(stat.out, HasSubstr("records: 8 of "));
    EXPECT_THAT(stat.out, HasSubstr("  roots: 1 of 32 bytes\n  primitives: 3 of "));
    EXPECT_THAT(stat.out, HasSubstr("  lists: 2 of 24 bytes\n  containers: 1 of "));
    EXPECT_THAT(stat.out, HasSubstr("  localized names: 1 of "));
    EXPECT_THAT(stat.out, HasSubstr("unattached: 0 records of 0 bytes\nopen: 0 objects counted on 0 records\n"));
    EXPECT_THAT(stat.out, HasSubstr("largest values:\n  16  int32  g.many\n  8  int32  g.few\n  0  double  g.none\n"));
}

TEST_F(StatVerb, TellsTheSameAsJson) {
    const std::string json = run("stat --json " + store).out;
    EXPECT_THAT(json, HasSubstr("\"version\":7"));
    EXPECT_THAT(json, HasSubstr("\"records\":8,"));
    EXPECT_THAT(json, HasSubstr("{\"kind\":\"roots\",\"records\":1,\"bytes\":32}"));
    EXPECT_THAT(json, HasSubstr("\"largest\":[{\"path\":\"g.many\",\"kind\":\"int32\",\"bytes\":16}"));
}

TEST_F(StatVerb, TellsWhatCompactWouldGiveBack) {
    for (int i = 0; i < 3; ++i) {
        const std::string name = " g.c" + std::to_string(i);
        ASSERT_EQ(run("cp " + store + " g.many" + name).status, 0);
        ASSERT_EQ(run("rm " + store + name).status, 0);
    }
    const std::string stat = run("stat " + store).out;
    EXPECT_EQ(stat.find("give back about 0 bytes"), std::string::npos) << stat;
    ASSERT_EQ(run("compact " + store).status, 0);
    EXPECT_THAT(run("stat " + store).out, HasSubstr("give back about 0 bytes"));
}

TEST_F(StatVerb, NamesWhatItCannotOpen) {
    const tRun none = run("stat " + path("none.lvp"));
    EXPECT_EQ(none.status, 3);
    EXPECT_THAT(none.err, HasSubstr("none.lvp"));
}

}  // namespace
