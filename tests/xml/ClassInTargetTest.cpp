#include "tests/xml/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::core::io::MemoryReader;
using lumivard::platform::data::structure::IContainer;
using lumivard::platform::data::structure::IContainerFrontEnd;

/// Documents with schemas that fill a container which is there.
class ClassInTarget : public SchemaXmlTest {
protected:
    tMessages fill(IContainer* container, const std::string& document) {
        Reporter reporter;
        MemoryReader reader(document);
        IXMLFrontEnd::parse(container, &reader, locator.get(), nullptr, &reporter);
        EXPECT_EQ(reporter.broken, kNone);
        return reporter.messages();
    }
    SharedPtr<IContainer> top() { return IContainerFrontEnd::toplevel(store(), L"top"); }

    /// A node in "top" that was made with a schema.
    SharedPtr<IContainer> made(const wchar_t* uri) {
        return top()->create(IContainer::kNode, L"n", locator->resolve(uri).get());
    }
};
LVP_ON_EACH_STORE(ClassInTarget);

TEST_P(ClassInTarget, IsTakenByTheElementsBelowTheTop) {
    schemas("<table name='S'><int32 name='a'/></table>");
    const auto top = this->top();
    EXPECT_EQ(fill(top.get(), "<group name='x'><node name='n' class='S'/><table name='t' class='S'/></group>"), kNone);
    EXPECT_EQ(items(L"top.n"), tItems{"(a)"});
    EXPECT_EQ(items(L"top.t"), tItems{"(a)"});
    EXPECT_TRUE(top->has(L"n.a"));
}

TEST_P(ClassInTarget, OfTheTopElementIsLost) {
    schemas("<table name='S'><int32 name='a'/></table>");
    const auto top = this->top();
    EXPECT_EQ(fill(top.get(), "<group name='x' class='S'><int32 name='a'>1</int32></group>"), kNone);
    EXPECT_EQ(items(L"top"), tItems{"a"});
    EXPECT_EQ(flags(L"top.a"), 0) << "it is the document's own";
    EXPECT_EQ(written(at(L"top")), "<group name=\"top\"><int32 name=\"a\">1</int32></group>");
}

TEST_P(ClassInTarget, FillsWhatTheContainerWasMadeWith) {
    schemas("<table name='S'><int32 name='a'>1</int32><double name='b'>2</double></table>");
    const auto node = made(L"S");
    ASSERT_TRUE(node);
    EXPECT_EQ(fill(node.get(), "<node name='x'><double name='b'>5</double><int32 name='c'>6</int32></node>"), kNone);
    EXPECT_EQ(items(L"top.n"), (tItems{"(a)", "b", "c"}));
    EXPECT_EQ(flags(L"top.n.b"), kFilled);
    EXPECT_EQ(written(at(L"top.n")),
              "<node name=\"n\" class=\"S\"><double name=\"b\">5</double><int32 name=\"c\">6</int32></node>");
}

TEST_P(ClassInTarget, FillsItAgainAtEachReading) {
    schemas("<table name='S'><int32 name='a'>1 2 3</int32></table>");
    const auto node = made(L"S");
    for (const char* value : {"7", "x 8"}) {
        EXPECT_EQ(fill(node.get(), std::string("<node name='x'><int32 name='a'>") + value + "</int32></node>"), kNone);
    }
    EXPECT_EQ(values<int>(at(L"top.n.a")), (std::vector<int>{7, 8, 3}));
}

TEST_P(ClassInTarget, RefusesWhatTheSchemaHasAsAnotherKind) {
    schemas("<table name='S'><int32 name='a'>1</int32></table>");
    const auto node = made(L"S");
    EXPECT_EQ(fill(node.get(), "<node name='x'><double name='a'>5</double></node>"),
              tMessages{"double : could not nest the element"});
    EXPECT_EQ(items(L"top.n"), tItems{"(a)"});
}

TEST_P(ClassInTarget, ShowsTheContainersAboveThatWereHidden) {
    schemas("<table name='S'><int32 name='a'>1</int32></table>");
    const auto node = made(L"S");
    stored::putByte(store(), at(L"top.n"), stored::kFlags, kUntouched);
    EXPECT_EQ(fill(node.get(), "<node name='x'><int32 name='a'>5</int32></node>"), kNone);
    EXPECT_EQ(flags(L"top.n"), kFilled);
    EXPECT_EQ(flags(L"top"), 0);
}

TEST_P(ClassInTarget, GivesItemsThatCanBeNeitherDestroyedNorRenamed) {
    schemas("<table name='S'><int32 name='a'>1</int32><table name='t'/></table>");
    const auto top = this->top();
    ASSERT_EQ(fill(top.get(), "<group name='x'><node name='n' class='S'><int32 name='a'>5</int32></node></group>"),
              kNone);
    const auto node = IContainerFrontEnd::find(store(), L"top.n");
    ASSERT_TRUE(node);
    EXPECT_FALSE(node->destroy(L"a"));
    EXPECT_FALSE(node->destroy(L"t"));
    EXPECT_FALSE(node->property(L"a")->rename(L"b"));
    EXPECT_EQ(items(L"top.n"), (tItems{"a", "(t)"}));
}

TEST_P(ClassInTarget, LaysStructsOut) {
    schemas(
        "<table name='P'><int16 name='x' dim='2'/></table><table name='S'><struct name='p' type='P' dim='1'/></table>");
    const auto node = made(L"S");
    EXPECT_EQ(fill(node.get(),
                   "<node name='x'><struct name='p' type='P'>1 2</struct><struct name='q' type='P'>3 4 5 6"
                   "</struct></node>"),
              kNone);
    EXPECT_EQ(written(at(L"top.n")),
              "<node name=\"n\" class=\"S\"><struct name=\"p\" type=\"P\">1 2</struct>"
              "<struct name=\"q\" type=\"P\">3 4 5 6</struct></node>");
}

}  // namespace
