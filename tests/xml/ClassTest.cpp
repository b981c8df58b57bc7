#include "lumivard/platform/store_contract/LoggingStore.h"
#include "tests/xml/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
using lumivard::platform::store_contract::LoggingStore;

/// Containers and tables that name schemas.
class Class : public SchemaXmlTest {
protected:
    /// The schemas that a container or table says it has; "-" for none.
    std::wstring base(unsigned int offset = 0) {
        const bool table = stored::byte(store(), offset, 0) == lumivard::platform::data::Record::kTable;
        const Structural::Container container(store(), offset, true);
        const Design::Table asTable(store(), offset, true);
        const wchar_t* base = table ? asTable.base() : container.base();
        return base ? base : L"-";
    }
};
LVP_ON_EACH_STORE(Class);

std::string element(const std::string& name, const std::string& attributes, const std::string& content = {}) {
    const std::string start = "<" + name + " name=\"g\"" + attributes;
    return content.empty() ? start + "/>" : start + ">" + content + "</" + name + ">";
}

TEST_P(Class, GivesItsItemsHiddenInTheOrderOfTheSchema) {
    schemas("<table name='S'><double name='z'/><table name='t'><int32 name='x'/></table><string name='a'/></table>");
    for (const char* name : kClassed) {
        const auto fresh = GetParam().make();
        EXPECT_EQ(readInto(fresh.get(), element(name, " class='S'"), locator.get()), kNone) << name;
        EXPECT_EQ(itemsOf(fresh.get()), (tItems{"(z)", "(t)", "(a)"})) << name;
    }
}

TEST_P(Class, MarksItsItemsAndAllBelowThem) {
    schemas(
        "<table name='S'><int32 name='a'/><table name='t'><table name='u'><int32 name='x'/></table></table></table>");
    ASSERT_EQ(read("<group name='g' class='S'/>"), kNone);
    for (const wchar_t* path : {L"a", L"t", L"t.u", L"t.u.x"}) EXPECT_EQ(flags(path), kUntouched) << path;
    EXPECT_EQ(flagsOf(store(), 0), 0) << "the group itself";
}

TEST_P(Class, KeepsWhatWasOptionalInTheSchema) {
    schemas("<table name='S'><table name='t' optional='true'/></table>");
    ASSERT_EQ(read("<group name='g' class='S' optional='true'/>"), kNone);
    EXPECT_EQ(flags(L"t"), kUntouched | 0x01);
    EXPECT_EQ(flagsOf(store(), 0), 0x01);
}

TEST_P(Class, CopiesItsItemsWhole) {
    const std::string items =
        "<double name=\"d\" units=\"Meter\" locale=\"de\"><name locale=\"fr\">n</name><val>1 2</val></double>"
        "<binary name=\"u\" uri=\"x\"/>"
        "<table name=\"t\"><default unit=\"Volt\" type=\"scalar\"/><name locale=\"de\">T</name>"
        "<string name=\"s\"><val>a</val><val>b</val></string></table>";
    schemas("<table name='S'>" + items + "</table>");
    ASSERT_EQ(read("<group name='g' class='S'/>"), kNone);
    for (const wchar_t* path : {L"d", L"u", L"t", L"t.s"}) {
        stored::putByte(store(), at(path), stored::kFlags,
                        static_cast<unsigned char>(flags(path) & ~lumivard::platform::data::Record::kHidden));
    }
    EXPECT_EQ(written(), "<group name=\"g\" class=\"S\">" + items + "</group>");
}

TEST_P(Class, TakesNothingFromTheTableItself) {
    schemas("<table name='S' optional='true'><name>Schema</name><default unit='Meter' type='double'/></table>");
    for (const char* name : kClassed) {
        const auto fresh = GetParam().make();
        ASSERT_EQ(readInto(fresh.get(), element(name, " class='S'"), locator.get()), kNone);
        EXPECT_EQ(writtenFrom(fresh.get()), element(name, " class=\"S\""));
        EXPECT_EQ(flagsOf(fresh.get(), 0), 0);
    }
}

TEST_P(Class, IsWrittenAndWhatItGaveIsNot) {
    schemas("<table name='S'><int32 name='a'>1</int32><table name='t'><int32 name='b'>2</int32></table></table>");
    for (const char* name : kClassed) {
        const auto fresh = GetParam().make();
        ASSERT_EQ(readInto(fresh.get(), element(name, " class='S'"), locator.get()), kNone);
        EXPECT_EQ(writtenFrom(fresh.get(), 0, locator.get()), element(name, " class=\"S\""));
    }
}

TEST_P(Class, StandsBeforeTheTargetOfALink) {
    schemas("<table name='S'><int32 name='a'/></table>");
    EXPECT_EQ(rewritten("<link to='x' class='S' name='l'/>"), "<link name=\"l\" class=\"S\" to=\"x\"/>");
    EXPECT_EQ(items(), tItems{"(a)"});
}

TEST_P(Class, OfSeveralSchemasHasTheItemsOfEachInTurn) {
    schemas("<table name='A'><int32 name='x'/><int32 name='y'/></table><table name='B'><int32 name='z'/></table>");
    for (const char* name : kClassed) {
        const auto fresh = GetParam().make();
        ASSERT_EQ(readInto(fresh.get(), element(name, " class='B;A'"), locator.get()), kNone);
        EXPECT_EQ(itemsOf(fresh.get()), (tItems{"(z)", "(x)", "(y)"})) << name;
        EXPECT_EQ(writtenFrom(fresh.get()), element(name, " class=\"B;A\""));
    }
}

TEST_P(Class, TakesANameThatSeveralSchemasHaveFromTheFirst) {
    schemas("<table name='A'><int32 name='x'>1</int32></table><table name='B'><double name='x'>2</double></table>");
    ASSERT_EQ(read("<group name='g' class='B;A'/>"), kNone);
    EXPECT_EQ(items(), tItems{"(x)"});
    EXPECT_EQ(values<double>(at(L"x")), std::vector<double>{2});
    EXPECT_EQ(base(), L"B;A");
}

TEST_P(Class, NamedTwiceIsKeptTwiceAndInheritedOnce) {
    schemas("<table name='A'><int32 name='x'/></table>");
    ASSERT_EQ(read("<table name='g' class='A;A'/>"), kNone);
    EXPECT_EQ(items(), tItems{"(x)"});
    EXPECT_EQ(base(), L"A;A");
}

TEST_P(Class, ForgetsTheSchemasThatAreNotFound) {
    schemas("<table name='A'><int32 name='x'/></table><table name='B'><int32 name='y'/></table>");
    EXPECT_EQ(rewritten("<group name='g' class='X;B;;A;Y;'/>"), "<group name=\"g\" class=\"B;A\"/>");
    EXPECT_EQ(items(), (tItems{"(y)", "(x)"}));
}

TEST_P(Class, ThatIsNotFoundIsPassedOverInSilence) {
    schemas("<table name='A'><int32 name='x'/></table>");
    for (const char* name : kClassed) {
        for (const char* uris : {"X", "", ";", "a", " A", "A ", "A.x", "A,A"}) {
            const auto fresh = GetParam().make();
            const std::string attributes = std::string(" class='") + uris + "'";
            EXPECT_EQ(readInto(fresh.get(), element(name, attributes), locator.get()), kNone) << attributes;
            EXPECT_EQ(writtenFrom(fresh.get()), element(name, "")) << attributes;
            EXPECT_EQ(itemsOf(fresh.get()), kNoItems) << attributes;
        }
    }
}

TEST_P(Class, IsIgnoredWithoutALocator) {
    schemas("<table name='A'><int32 name='x'/></table>");
    for (const char* name : kClassed) {
        const auto fresh = GetParam().make();
        EXPECT_EQ(readInto(fresh.get(), element(name, " class='A'")), kNone);
        EXPECT_EQ(writtenFrom(fresh.get()), element(name, ""));
        EXPECT_EQ(itemsOf(fresh.get()), kNoItems);
    }
}

TEST_P(Class, IsKeptForASchemaWithoutItems) {
    schemas("<table name='None'/>");
    EXPECT_EQ(rewritten("<group name='g' class='None'/>"), "<group name=\"g\" class=\"None\"/>");
    EXPECT_EQ(items(), kNoItems);
}

TEST_P(Class, IsAPathIntoTheSchemas) {
    schemas("<group name='lib'><table name='A'><table name='B'><int32 name='x'/></table></table></group>");
    EXPECT_EQ(rewritten("<group name='g' class='lib.A;lib.A.B'/>"), "<group name=\"g\" class=\"lib.A;lib.A.B\"/>");
    EXPECT_EQ(items(), (tItems{"(B)", "(x)"}));
}

TEST_P(Class, MeansTablesOnly) {
    schemas("<group name='G'><int32 name='x'/></group><node name='N'/>");
    EXPECT_EQ(rewritten("<group name='g' class='G;N;G.x'/>"), "<group name=\"g\"/>");
}

TEST_P(Class, IsNoAttributeOfRootsAndValues) {
    schemas("<table name='S'><int32 name='x'/></table>");
    EXPECT_EQ(
        rewritten("<root name='r' class='S'><group name='g'><double name='d' class='S'>1</double></group></root>"),
        "<root version=\"0\" name=\"r\"><group name=\"g\"><double name=\"d\">1</double></group></root>");
    EXPECT_EQ(items(), tItems{"g"});
}

TEST_P(Class, SaysNothingOfTheElementsBelow) {
    schemas("<table name='S'><int32 name='x'/></table>");
    ASSERT_EQ(read("<group name='g' class='S'><group name='h'/><table name='t'/></group>"), kNone);
    EXPECT_EQ(items(), (tItems{"(x)", "h", "t"}));
    EXPECT_EQ(items(L"h"), kNoItems);
    EXPECT_EQ(items(L"t"), kNoItems);
}

TEST_P(Class, OfATableInATableIsItsOwn) {
    schemas("<table name='A'><int32 name='x'/></table><table name='B'><int32 name='y'/></table>");
    ASSERT_EQ(read("<table name='g' class='A'><table name='t' class='B'/></table>"), kNone);
    EXPECT_EQ(items(), (tItems{"(x)", "t"}));
    EXPECT_EQ(items(L"t"), tItems{"(y)"});
    EXPECT_EQ(base(at(L"t")), L"B");
}

TEST_P(Class, OfASchemaGivesTheSchemasItemsOnward) {
    schemas("<table name='A'><int32 name='x'>7</int32></table><table name='B' class='A'><int32 name='y'/></table>");
    EXPECT_EQ(rewritten("<node name='n' class='B'/>"), "<node name=\"n\" class=\"B\"/>");
    EXPECT_EQ(items(), (tItems{"(x)", "(y)"}));
    EXPECT_EQ(values<int>(at(L"x")), std::vector<int>{7});
}

TEST_P(Class, OfTheTableItselfIsNotThereYet) {
    schemas("<table name='A' class='A'><int32 name='x'/></table>");
    EXPECT_EQ(itemsOf(other(), stored::children(other(), 0).at(0)), tItems{"x"});
}

TEST_P(Class, CountsNoObjectOnWhatItGave) {
    schemas("<table name='S'><table name='t'><int32 name='x'/></table></table>");
    ASSERT_EQ(read("<group name='g' class='S'/>"), kNone);
    for (const wchar_t* path : {L"t", L"t.x"}) EXPECT_EQ(stored::refs(store(), at(path)), 0u) << path;
    EXPECT_EQ(stored::word(store(), at(L"t"), stored::kParent), 0u);
    EXPECT_EQ(stored::word(store(), at(L"t.x"), stored::kParent), at(L"t"));
}

TEST_P(Class, WritesNothingToTheSchemas) {
    schemas("<table name='S'><int32 name='x'>1</int32><table name='t'><int32 name='y'>2</int32></table></table>");
    LoggingStore logged(*other());
    const auto watched = ISchemaLocator::make(&logged);
    watched->resolve(L"S");
    logged.clearLog();
    ASSERT_EQ(readInto(store(), "<group name='g' class='S'><int32 name='x'>5</int32></group>", watched.get()), kNone);
    ASSERT_EQ(readInto(store(), "<table name='h' class='S'/>", watched.get()), kNone);
    for (const LoggingStore::tCall call :
         {LoggingStore::tCall::kCreate, LoggingStore::tCall::kAppend, LoggingStore::tCall::kUpdate,
          LoggingStore::tCall::kErase, LoggingStore::tCall::kFlush, LoggingStore::tCall::kSetVersion}) {
        EXPECT_EQ(logged.count(call), 0u) << static_cast<int>(call);
    }
}

TEST_P(Class, HoldsTheSchemasOfAContainerUnderTheirGuard) {
    schemas("<table name='S'><int32 name='x'/></table>");
    LoggingStore logged(*other());
    const auto watched = ISchemaLocator::make(&logged);
    watched->resolve(L"S");
    logged.clearLog();
    const auto before = logged.unguarded();
    ASSERT_EQ(readInto(store(), "<group name='g' class='S'/>", watched.get()), kNone);
    EXPECT_EQ(logged.unguarded(), before);
    EXPECT_EQ(logged.count(LoggingStore::tCall::kLock), 1u);
    EXPECT_EQ(logged.guards(), 0);
}

TEST_P(Class, HasTheItemsThatTheSchemaHadWhenItWasFirstFound) {
    schemas("<table name='S'><int32 name='x'/></table>");
    const auto kept = locator->resolve(L"S");
    const unsigned int table = stored::children(other(), 0).at(0);
    Design::Table(other(), table, false).add(Design::Primitive(other(), metadata::kInt32, L"late").offset());
    ASSERT_EQ(itemsOf(other(), table), (tItems{"x", "late"}));
    const auto fresh = GetParam().make();
    ASSERT_EQ(readInto(fresh.get(), "<group name='g' class='S'/>", locator.get()), kNone);
    EXPECT_EQ(itemsOf(fresh.get()), tItems{"(x)"});
}

TEST_P(Class, OfAnElementThatIsRefusedChangesNothingInTheFirst) {
    schemas("<table name='A'><int32 name='x'/></table><table name='B'><int32 name='y'/></table>");
    EXPECT_EQ(read("<group name='g'><node name='n' class='A'/><node name='n' class='B'/></group>"),
              tMessages{"node : could not nest the element"});
    EXPECT_EQ(items(L"n"), tItems{"(x)"});
    EXPECT_EQ(base(at(L"n")), L"A");
}

TEST_P(Class, MayNameTablesFurtherUpInItsOwnDocument) {
    const auto own = ISchemaLocator::make(store());
    ASSERT_EQ(readInto(store(),
                       "<root name='r'><node name='early' class='S'/><table name='S'><int32 name='x'>3</int32></table>"
                       "<node name='late' class='S'/></root>",
                       own.get()),
              kNone);
    EXPECT_EQ(items(L"early"), kNoItems);
    EXPECT_EQ(items(L"late"), tItems{"(x)"});
    EXPECT_EQ(values<int>(at(L"late.x")), std::vector<int>{3});
}

}  // namespace
