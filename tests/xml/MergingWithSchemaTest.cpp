#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/xml/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;

/// Elements under names that their parent has from a schema.
class MergingWithSchema : public SchemaXmlTest {};
LVP_ON_EACH_STORE(MergingWithSchema);

TEST_P(MergingWithSchema, ShowsAndFillsTheValue) {
    schemas("<table name='S'><int32 name='a'>1</int32><int32 name='b'>2</int32></table>");
    for (const std::string name : kClassed) {
        const auto fresh = GetParam().make();
        ASSERT_EQ(readInto(fresh.get(), "<" + name + " name='g' class='S'><int32 name='b'>7</int32></" + name + ">",
                           locator.get()),
                  kNone);
        EXPECT_EQ(itemsOf(fresh.get()), (tItems{"(a)", "b"})) << name;
        EXPECT_EQ(writtenFrom(fresh.get()),
                  "<" + name + " name=\"g\" class=\"S\"><int32 name=\"b\">7</int32></" + name + ">");
    }
}

TEST_P(MergingWithSchema, KeepsTheItemInherited) {
    schemas("<table name='S'><int32 name='a'/><table name='t'><int32 name='b'/><int32 name='c'/></table></table>");
    ASSERT_EQ(read("<group name='g' class='S'><table name='t'><int32 name='c'>1</int32></table>"
                   "<int32 name='a'>1</int32></group>"),
              kNone);
    EXPECT_EQ(flags(L"a"), kFilled);
    EXPECT_EQ(flags(L"t"), kFilled);
    EXPECT_EQ(flags(L"t.c"), kFilled);
    EXPECT_EQ(flags(L"t.b"), kUntouched);
}

TEST_P(MergingWithSchema, GoesOnAmongTheItemsOfTheDocument) {
    schemas("<table name='S'><int32 name='a'/><int32 name='b'/></table>");
    ASSERT_EQ(read("<group name='g' class='S'><int32 name='x'>0</int32><int32 name='b'>2</int32><node name='y'/>"
                   "<int32 name='a'>1</int32></group>"),
              kNone);
    EXPECT_EQ(items(), (tItems{"a", "b", "x", "y"})) << "in the order of the schema, and then the document's own";
    EXPECT_EQ(flags(L"x"), 0);
}

TEST_P(MergingWithSchema, MakesNoSecondItem) {
    schemas("<table name='S'><int32 name='a'/></table>");
    LoggingStore logged(*store());
    ASSERT_EQ(readInto(&logged, "<group name='g' class='S'><int32 name='a'>1</int32></group>", locator.get()), kNone);
    EXPECT_EQ(stored::children(store(), 0).size(), 1u);
    unsigned int made = 0;
    for (const auto& entry : logged.log()) {
        if (entry.call != LoggingStore::tCall::kCreate) continue;
        if (stored::byte(store(), entry.offset, 0) != lumivard::platform::data::Record::kPrimitive) continue;
        ++made;
        EXPECT_EQ(stored::refs(store(), entry.offset), 0u);
        if (entry.offset == at(L"a")) continue;
        EXPECT_EQ(stored::word(store(), entry.offset, stored::kParent), stored::BADOFF) << "it is attached to nothing";
    }
    EXPECT_EQ(made, 2u) << "the inherited one and the one for the element";
}

TEST_P(MergingWithSchema, ShowsAnItemThatTheDocumentLeavesAsItIs) {
    schemas(
        "<table name='S'><double name='a' units='Meter'>2.5</double><table name='t'><int32 name='x'/></table>"
        "</table>");
    EXPECT_EQ(
        rewritten("<group name='g' class='S'><double name='a'/><table name='t'/></group>"),
        "<group name=\"g\" class=\"S\"><double name=\"a\" units=\"Meter\">2.5</double><table name=\"t\"/></group>");
    EXPECT_EQ(items(L"t"), tItems{"(x)"});
}

TEST_P(MergingWithSchema, TakesNothingFromTheAttributesOfTheElement) {
    schemas("<table name='S'><double name='a' units='Meter' locale='de'>1</double><table name='t'/></table>");
    ASSERT_EQ(read("<group name='g' class='S'><double name='a' units='Volt' locale='fr' uri='u' dim='9'>5</double>"
                   "<table name='t' optional='true'/></group>"),
              kNone);
    EXPECT_EQ(written(),
              "<group name=\"g\" class=\"S\"><double name=\"a\" units=\"Meter\" locale=\"de\">5</double>"
              "<table name=\"t\"/></group>");
    EXPECT_EQ(flags(L"t"), kFilled);
}

TEST_P(MergingWithSchema, LaysNumbersOverThoseOfTheSchema) {
    schemas("<table name='S'><int32 name='a'>1 2 3</int32><vector3 name='v'>1 2 3</vector3></table>");
    ASSERT_EQ(read("<group name='g' class='S'><int32 name='a'>x 9</int32><vector3 name='v'>7</vector3></group>"),
              kNone);
    EXPECT_EQ(values<int>(at(L"a")), (std::vector<int>{1, 9, 3}));
    EXPECT_EQ(values<double>(at(L"v")), (std::vector<double>{7, 2, 3}));
}

TEST_P(MergingWithSchema, LaysEachValOverThoseOfTheSchema) {
    schemas("<table name='S'><int32 name='a'>1 2 3</int32></table>");
    ASSERT_EQ(read("<group name='g' class='S'><int32 name='a'><val>7 8</val><val>9</val></int32></group>"), kNone);
    EXPECT_EQ(values<int>(at(L"a")), (std::vector<int>{9, 8, 3}));
}

TEST_P(MergingWithSchema, MakesAValueLongerThanTheSchemas) {
    schemas("<table name='S'><int8 name='a'>1</int8><string name='s'>a</string></table>");
    ASSERT_EQ(read("<group name='g' class='S'><int8 name='a'>7 8 9</int8><string name='s'>wxyz</string></group>"),
              kNone);
    EXPECT_EQ(values<char>(at(L"a")), (std::vector<char>{7, 8, 9}));
    EXPECT_EQ(text(at(L"s")), L"wxyz|");
}

TEST_P(MergingWithSchema, LaysATextOverTheStartOfTheSchemas) {
    schemas("<table name='S'><string name='a'>abcd</string><uri name='b'>abcd</uri><time name='c'>abcd</time></table>");
    ASSERT_EQ(read("<group name='g' class='S'><string name='a'>xy</string><uri name='b'/><time name='c'>1234</time>"
                   "</group>"),
              kNone);
    EXPECT_EQ(text(at(L"a")), L"xy|d|");
    EXPECT_EQ(text(at(L"b")), L"|bcd|") << "an empty text is a text";
    EXPECT_EQ(text(at(L"c")), L"1234|");
}

TEST_P(MergingWithSchema, AppendsTheTextsOfValsToTheSchemas) {
    schemas("<table name='S'><string name='a'>ab</string><string name='b'><name>n</name></string></table>");
    ASSERT_EQ(read("<group name='g' class='S'><string name='a'><val>c</val><val>d</val></string>"
                   "<string name='b'><val>e</val></string></group>"),
              kNone);
    EXPECT_EQ(text(at(L"a")), L"ab|c|d|");
    EXPECT_EQ(text(at(L"b")), L"e|");
}

TEST_P(MergingWithSchema, LaysBytesOverTheStartOfTheSchemas) {
    schemas("<table name='S'><binary name='a'>SGVsbG8=</binary></table>");
    EXPECT_EQ(rewritten("<group name='g' class='S'><binary name='a'>QUI=</binary></group>"),
              "<group name=\"g\" class=\"S\"><binary name=\"a\">QUJsbG8=</binary></group>")
        << "\"AB\" over \"Hello\"";
}

TEST_P(MergingWithSchema, LeavesAURIOfTheSchema) {
    schemas("<table name='S'><int32 name='a' uri='u'/></table>");
    EXPECT_EQ(rewritten("<group name='g' class='S'><int32 name='a'>1</int32></group>"),
              "<group name=\"g\" class=\"S\"><int32 name=\"a\" uri=\"u\"/></group>");
}

TEST_P(MergingWithSchema, GivesNamesBesideAndInPlaceOfTheSchemas) {
    schemas("<table name='S'><int32 name='a'><name locale='de'>alt</name><val>1</val></int32></table>");
    EXPECT_EQ(rewritten("<group name='g' class='S'><int32 name='a'><name locale='de'>neu</name>"
                        "<name locale='fr'>nouveau</name></int32></group>"),
              "<group name=\"g\" class=\"S\"><int32 name=\"a\"><name locale=\"de\">neu</name>"
              "<name locale=\"fr\">nouveau</name><val>1</val></int32></group>");
    EXPECT_EQ(writtenFrom(other(), stored::children(other(), 0).at(0)),
              "<table name=\"S\"><int32 name=\"a\"><name locale=\"de\">alt</name><val>1</val></int32></table>");
}

TEST_P(MergingWithSchema, GivesDefaultsBesideAndInPlaceOfTheSchemas) {
    schemas("<table name='S'><table name='t'><default unit='Meter' type='double'/></table></table>");
    EXPECT_EQ(rewritten("<group name='g' class='S'><table name='t'><default unit='Volt' type='scalar'/>"
                        "<default unit='CentiMeter' type='int8'/></table></group>")
                  .find("<default unit=\"Meter\""),
              std::string::npos);
    const Design::Table table(store(), at(L"t"), false);
    EXPECT_EQ(table.groups().size(), 2u);
    EXPECT_EQ(table.valuetype(units::group(units::kMeter)), metadata::kInt8);
    EXPECT_EQ(writtenFrom(other(), stored::children(other(), 0).at(0)),
              "<table name=\"S\"><table name=\"t\"><default unit=\"Meter\" type=\"double\"/></table></table>");
}

TEST_P(MergingWithSchema, FillsATableAndAddsToIt) {
    schemas("<table name='S'><table name='t'><int32 name='x'>1</int32><int32 name='y'>2</int32></table></table>");
    ASSERT_EQ(
        read("<group name='g' class='S'><table name='t'><int32 name='z'>9</int32><int32 name='y'>8</int32></table>"
             "</group>"),
        kNone);
    EXPECT_EQ(items(), tItems{"t"});
    EXPECT_EQ(items(L"t"), (tItems{"(x)", "y", "z"}));
    EXPECT_EQ(written(),
              "<group name=\"g\" class=\"S\"><table name=\"t\"><int32 name=\"y\">8</int32><int32 name=\"z\">9</int32>"
              "</table></group>");
}

TEST_P(MergingWithSchema, FillsATableInATable) {
    schemas(
        "<table name='S'><table name='t'><table name='u'><int32 name='x'/><int32 name='y'/></table></table></table>");
    ASSERT_EQ(read("<table name='g' class='S'><table name='t'><table name='u'><int32 name='y'>8</int32></table></table>"
                   "</table>"),
              kNone);
    EXPECT_EQ(items(), tItems{"t"});
    EXPECT_EQ(items(L"t"), tItems{"u"});
    EXPECT_EQ(items(L"t.u"), (tItems{"(x)", "y"}));
}

TEST_P(MergingWithSchema, TakesAnItemTwice) {
    schemas("<table name='S'><int32 name='a'>1 2 3</int32></table>");
    EXPECT_EQ(
        rewritten("<group name='g' class='S'><int32 name='a'>7</int32><int32 name='a'><val>8 9</val></int32></group>"),
        "<group name=\"g\" class=\"S\"><int32 name=\"a\">8 9 3</int32></group>");
}

TEST_P(MergingWithSchema, RefusesAnotherKindOfValueAndLeavesTheItemHidden) {
    schemas("<table name='S'><int32 name='a'>1</int32></table>");
    EXPECT_EQ(read("<group name='g' class='S'><double name='a'>2</double><uint32 name='a'>3</uint32></group>"),
              (tMessages{"double : could not nest the element", "uint32 : could not nest the element"}));
    EXPECT_EQ(items(), tItems{"(a)"});
    EXPECT_EQ(values<int>(at(L"a")), std::vector<int>{1});
}

TEST_P(MergingWithSchema, RefusesAnotherKindOfItemWithAllThatItHolds) {
    schemas("<table name='S'><int32 name='a'/><table name='t'><int32 name='x'/></table></table>");
    EXPECT_EQ(
        read("<group name='g' class='S'><table name='a'><int32 name='y'>1</int32><nonsense/></table>"
             "<int32 name='t'>1</int32><node name='a'/><group name='t'><int32 name='x'>1</int32></group></group>"),
        (tMessages{"table : could not nest the element", "int32 : could not nest the element",
                   "node : could not nest the element", "group : could not nest the element"}));
    EXPECT_EQ(items(), (tItems{"(a)", "(t)"}));
    EXPECT_EQ(items(L"t"), tItems{"(x)"});
}

TEST_P(MergingWithSchema, RefusesATableOfOtherSchemas) {
    schemas(
        "<table name='R'><int32 name='x'>1</int32></table><table name='Q'/>"
        "<table name='S'><table name='t' class='R'/><table name='u'/></table>");
    EXPECT_EQ(read("<group name='g' class='S'><table name='t'><int32 name='x'>2</int32></table>"
                   "<table name='t' class='Q'/><table name='t' class='R;R'/><table name='t' class='Unknown'/>"
                   "<table name='u' class='R'/></group>"),
              tMessages(5, "table : could not nest the element"));
    EXPECT_EQ(items(), (tItems{"(t)", "(u)"}));
    EXPECT_EQ(values<int>(at(L"t.x")), std::vector<int>{1});
}

TEST_P(MergingWithSchema, FillsATableOfTheSameSchemas) {
    schemas("<table name='R'><int32 name='x'>1</int32></table><table name='S'><table name='t' class='R'/></table>");
    EXPECT_EQ(
        rewritten("<group name='g' class='S'><table name='t' class='R'><int32 name='x'>2</int32></table></group>"),
        "<group name=\"g\" class=\"S\"><table name=\"t\" class=\"R\"><int32 name=\"x\">2</int32></table></group>");
    EXPECT_EQ(items(L"t"), tItems{"x"});
    EXPECT_EQ(flags(L"t.x"), kFilled);
}

TEST_P(MergingWithSchema, FillsATableOfNoneThroughAClassThatIsNotFound) {
    schemas("<table name='S'><table name='u'/></table>");
    EXPECT_EQ(rewritten("<group name='g' class='S'><table name='u' class='Unknown'/></group>"),
              "<group name=\"g\" class=\"S\"><table name=\"u\"/></group>");
}

TEST_P(MergingWithSchema, FillsTheFirstOfTwoSchemas) {
    schemas("<table name='A'><int32 name='x'>1</int32></table><table name='B'><double name='x'>2</double></table>");
    EXPECT_EQ(read("<group name='g' class='A;B'><double name='x'>5</double><int32 name='x'>6</int32></group>"),
              tMessages{"double : could not nest the element"});
    EXPECT_EQ(written(), "<group name=\"g\" class=\"A;B\"><int32 name=\"x\">6</int32></group>");
}

TEST_P(MergingWithSchema, LeavesNothingOpen) {
    schemas("<table name='S'><int32 name='a'/><table name='t'><int32 name='x'/></table></table>");
    ASSERT_EQ(
        read("<group name='g' class='S'><int32 name='a'>1</int32><table name='t'><int32 name='x'>1</int32></table>"
             "</group>"),
        kNone);
    for (const wchar_t* path : {L"a", L"t", L"t.x"}) EXPECT_EQ(stored::refs(store(), at(path)), 0u) << path;
    EXPECT_EQ(stored::refs(store(), 0), 0u);
}

}  // namespace
