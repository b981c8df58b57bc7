#include <gmock/gmock.h>

#include <string>

#include "tests/end_to_end/ToolFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using testing::HasSubstr;

using DumpVerb = Tool;

TEST_F(DumpVerb, NamesEachFieldOfARecord) {
    ASSERT_EQ(run("mk " + path("a.lvp") + " ab group").status, 0);
    const tRun root = run("dump " + path("a.lvp") + " 0");
    EXPECT_EQ(root.status, 0);
    EXPECT_EQ(root.out,
              "offset 0, root, 44 bytes:\n"
              "0       kind                00                                root\n"
              "1       parent              ffffffff                          none\n"
              "5       refs                00000000                          0\n"
              "9       locale              ffffffff                          none\n"
              "13      flags               00                                0x0\n"
              "14      children            02000000                          2\n"
              "18      name length         14000000                          20\n"
              "22      zeros               0000                              \n"
              "24      name                720000006f0000006f00000074000000  \"root\"\n"
              "40                          00000000\n");
    EXPECT_EQ(run("dump --json " + path("a.lvp") + " 2").out,
              "{\"store\":\"" + path("a.lvp") +
                  "\",\"offset\":2,\"kind\":\"list\",\"bytes\":\"0300000001000000\",\"fields\":[{\"name\":\"kind\","
                  "\"position\":0,\"size\":1,\"meaning\":\"list\"},{\"name\":\"zeros\",\"position\":1,\"size\":3,"
                  "\"meaning\":\"\"},{\"name\":\"entry\",\"position\":4,\"size\":4,\"meaning\":\"1\"}]}\n");
}

TEST_F(DumpVerb, NamesAnOffsetWithoutARecord) {
    ASSERT_EQ(run("mk " + path("a.lvp") + " ab group").status, 0);
    const tRun none = run("dump " + path("a.lvp") + " 77");
    EXPECT_EQ(none.status, 3);
    EXPECT_EQ(none.err, "lvp-data: the store " + path("a.lvp") + " has no record at the offset 77\n");
    EXPECT_EQ(run("dump " + path("a.lvp") + " x").status, 2);
    EXPECT_EQ(run("dump " + path("a.lvp") + " 4294967296").status, 2);
}

}  // namespace
