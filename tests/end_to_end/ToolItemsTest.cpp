#include <gtest/gtest.h>

#include <string>

#include "tests/end_to_end/ToolFixture.h"

// Copying and moving with the tool.

namespace {

using namespace lumivard::platform::test_support;

constexpr const char* kDocument =
    "<root name='r'><group name='a'><node name='n'><int8 name='x'>5</int8></node>"
    "<table name='t'><int8 name='y'>6</int8></table></group><group name='b'/></root>";

class ToolItems : public Tool {
protected:
    /// Two stores: the first with content, the second with an empty group "c".
    void SetUp() override {
        first = imported(kDocument, "first.lvp");
        second = imported("<root name='r'><group name='c'/></root>", "second.lvp");
    }

    std::string shown(const std::string& store, const std::string& path) const {
        return run("tree " + store + " " + path).out;
    }

    /// The command says no with these words, and neither store changes.
    void expectRefusal(const std::string& command, const std::string& words) const {
        const std::string before = run("tree " + first).out + run("tree " + second).out;
        const tRun refused = run(command);
        EXPECT_EQ(refused.status, 3) << command;
        EXPECT_EQ(refused.err, "lvp-data: " + words + "\n");
        EXPECT_EQ(run("tree " + first).out + run("tree " + second).out, before) << command;
    }

    std::string first;
    std::string second;
};

TEST_F(ToolItems, CopyAContainerUnderANewName) {
    EXPECT_EQ(run("cp " + first + " a.n b.m").status, 0);
    EXPECT_EQ(shown(first, "b"), "b  [group]\n└─ m  [node]\n   └─ x = 5  [int8]\n");
    EXPECT_EQ(shown(first, "a.n"), "n  [node]\n└─ x = 5  [int8]\n");
}

TEST_F(ToolItems, CopyAValueAndATable) {
    EXPECT_EQ(run("cp " + first + " a.n.x b.x").status, 0);
    EXPECT_EQ(run("cp " + first + " a.t b.t").status, 0);
    EXPECT_EQ(run("cp " + first + " a.t.y b.y").status, 0);
    EXPECT_EQ(shown(first, "b"),
              "b  [group]\n├─ x = 5  [int8]\n├─ t  [table]\n│  └─ y = 6  [int8]\n└─ y = 6  [int8]\n");
}

TEST_F(ToolItems, CopyAContainerIntoItself) {
    EXPECT_EQ(run("cp " + first + " b b.b").status, 0);
    EXPECT_EQ(shown(first, "b"), "b  [group]\n└─ b  [group]\n");
}

TEST_F(ToolItems, CopyAWholeStoreIntoANewOne) {
    EXPECT_EQ(run("rm -r " + first + " a.t").status, 0);
    const std::string copy = path("copy.lvp");
    EXPECT_EQ(run("cp " + first + " --to " + copy).status, 0);
    EXPECT_EQ(run("tree " + copy).out, run("tree " + first).out);
    EXPECT_EQ(run("stat " + copy).status, 0);
    EXPECT_EQ(run("check " + copy).status, 0);
    expectRefusal("cp " + first + " --to " + second,
                  "the store " + second + " is not empty: a whole store is copied into an empty one");
    expectRefusal("cp " + first + " --to " + first, "the store " + first + " cannot be copied onto itself");
    EXPECT_EQ(run("cp " + first).status, 2);
    EXPECT_EQ(run("cp " + first + " a").status, 2);
}

TEST_F(ToolItems, CopyToAnotherStore) {
    EXPECT_EQ(run("cp " + first + " a c.a2 --to " + second).status, 0);
    EXPECT_EQ(run("cp " + first + " a.t c.t --to " + second).status, 0);
    EXPECT_EQ(run("cp " + first + " a.t.y c.z --to " + second).status, 0);
    EXPECT_EQ(shown(second, "c"),
              "c  [group]\n├─ a2  [group]\n│  ├─ n  [node]\n│  │  └─ x = 5  [int8]\n│  └─ t  [table]\n│     └─ y = 6  "
              "[int8]\n├─ t  [table]\n│  └─ y = 6  [int8]\n└─ z = 6  [int8]\n");
}

TEST_F(ToolItems, MoveWithinAStore) {
    EXPECT_EQ(run("mv " + first + " a.n b.m").status, 0);
    EXPECT_EQ(run("mv " + first + " a.t.y b.y").status, 0);
    EXPECT_EQ(
        run("tree " + first).out,
        "r  [root]\n├─ a  [group]\n│  └─ t  [table]\n└─ b  [group]\n   ├─ m  [node]\n   │  └─ x = 5  [int8]\n   └─ y "
        "= 6  [int8]\n");
}

TEST_F(ToolItems, MoveToAnotherNameInTheSamePlace) {
    EXPECT_EQ(run("mv " + first + " a.n a.nn").status, 0);
    EXPECT_EQ(shown(first, "a.nn"), "nn  [node]\n└─ x = 5  [int8]\n");
    EXPECT_EQ(run("tree " + first + " a.n").status, 3);
}

TEST_F(ToolItems, MoveToAnotherStore) {
    EXPECT_EQ(run("mv " + first + " a.n c.m --to " + second).status, 0);
    EXPECT_EQ(run("mv " + first + " a.t c.s --to " + second).status, 0);
    EXPECT_EQ(shown(first, "a"), "a  [group]\n");
    EXPECT_EQ(shown(second, "c"),
              "c  [group]\n├─ m  [node]\n│  └─ x = 5  [int8]\n└─ s  [table]\n   └─ y = 6  [int8]\n");
}

TEST_F(ToolItems, GoNowhereWithoutAContainerToStandIn) {
    const std::string words = " names no container to stand in: give CONTAINER.NAME";
    expectRefusal("cp " + first + " a z", "the destination z" + words);
    expectRefusal("cp " + first + " a b.", "the destination b." + words);
    expectRefusal("mv " + first + " a.n .z", "the destination .z" + words);
    expectRefusal("cp " + first + " a.n z.m", "the store " + first + " holds no container at the path z");
    expectRefusal("cp " + first + " a.n a.t.m",
                  "a.t in the store " + first + " is a table: cp and mv put items into containers only");
}

TEST_F(ToolItems, DoNotCoverWhatIsThere) {
    expectRefusal("cp " + first + " a.n a.t", "in the store " + first + ", a already holds t");
    run("cp " + first + " a c.a --to " + second);
    expectRefusal("cp " + first + " a c.a --to " + second, "in the store " + second + ", c already holds a");
}

TEST_F(ToolItems, AreNamedWhenTheyAreNotThere) {
    const std::string nothing = "the store " + first + " holds nothing at the path a.z: in a there is no z";
    expectRefusal("cp " + first + " a.z b.z", nothing);
    expectRefusal("mv " + first + " a.z b.z", nothing);
    expectRefusal("cp " + first + " a.z c.z --to " + second, nothing);
}

TEST_F(ToolItems, DoNotMoveIntoThemselvesOrFromTheTop) {
    expectRefusal("mv " + first + " a.n a.n.n",
                  "a.n in the store " + first + " cannot move to a.n.n, which is its own place or below it");
    expectRefusal("mv " + first + " a.n a.n",
                  "a.n in the store " + first + " cannot move to a.n, which is its own place or below it");
    expectRefusal("mv " + first + " a b.a", "a in the store " + first + " stands at the top, which nothing can leave");
}

TEST_F(ToolItems, ThatCameFromASchemaStay) {
    const std::string store = path("m.lvp");
    ASSERT_EQ(run("import " + materials + " " + store + " --schemas " + schemas).status, 0);
    const tRun refused = run("mv " + store + " Carbon.Graphite.Density Carbon.d");
    EXPECT_EQ(refused.status, 3);
    EXPECT_EQ(refused.err, "lvp-data: Carbon.Graphite.Density in the store " + store +
                               " came from a schema and stays where it is: copy it instead\n");
}

TEST_F(ToolItems, ThatCameFromASchemaAreCopiedAsAnyOther) {
    const std::string store = path("m.lvp");
    ASSERT_EQ(run("import " + materials + " " + store + " --schemas " + schemas).status, 0);
    EXPECT_EQ(run("cp " + store + " Carbon.Graphite.Density Carbon.d").status, 0);
    EXPECT_EQ(shown(store, "Carbon.d"), "d = 1750 KilogramPerCubicMeter  [double]\n");
    EXPECT_EQ(run("cp " + store + " Carbon.Graphite.YieldStrength Carbon.y").status, 0);
    EXPECT_EQ(shown(store, "Carbon.y"), "y = 0 MegaPascal  [double]\n") << "it was hidden there";
    EXPECT_EQ(run("mv " + store + " Carbon.y Carbon.z").status, 0);
    EXPECT_EQ(run("mv " + store + " Carbon.z Gas.z").status, 0);
}

TEST_F(ToolItems, AreFoundInStoresWithoutARootToo) {
    const std::string store =
        imported("<group name='top'><node name='n'><int8 name='v'>1</int8></node></group>", "n.lvp");
    EXPECT_EQ(run("mv " + store + " n.v n.w").status, 0);
    EXPECT_EQ(run("cp " + store + " n.w c.w --to " + second).status, 0);
    EXPECT_EQ(shown(second, "c"), "c  [group]\n└─ w = 1  [int8]\n");
}

TEST_F(ToolItems, AreNotLookedForBeyondAValue) {
    for (const std::string value : {"a.n.x", "a.t.y"}) {
        for (const std::string& path : {value + ".more", value + "."}) {
            expectRefusal("cp " + first + " " + path + " b.z", "the store " + first + " holds nothing at the path " +
                                                                   path + ": " + value +
                                                                   " is a value, which holds no items");
        }
    }
}

TEST_F(ToolItems, DoNotMakeAStoreThatIsNotThere) {
    const std::string none = path("none.lvp");
    expectRefusal("cp " + none + " a.n b.n", "Cannot open the store \"" + none + "\": there is no such file.");
    expectRefusal("mv " + first + " a.n b.n --to " + none,
                  "Cannot open the store \"" + none + "\": there is no such file.");
    EXPECT_FALSE(std::filesystem::exists(none));
}

TEST_F(ToolItems, StayWhereTheyAreWhenTheNewPlaceCannotBeWritten) {
    const auto storeOf = [&](std::size_t size, const std::string& name) {
        return imported(
            "<root name='r'><group name='g'><string name='s'>" + std::string(size, 's') + "</string></group></root>",
            name);
    };
    // Between the two lies the size beyond which no file grows: the one can be written, the other cannot.
    const std::string source = storeOf(50'000, "source.lvp");
    const std::string target = storeOf(1'000'000, "target.lvp");
    const std::string limited = "sh -c 'trap \"\" XFSZ; exec prlimit --fsize=2000000 " LVP_TOOL " \"$@\"' sh";
    ASSERT_GT(std::filesystem::file_size(target), 2'000'000u);
    const std::string before = run("tree " + source).out;
    const tRun failed = runProgram(limited, "mv " + source + " g.s g.t --to " + target);
    EXPECT_EQ(failed.status, 4) << failed.err;
    EXPECT_EQ(run("tree " + source).out, before);
}

}  // namespace
