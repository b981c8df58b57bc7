#include "tests/xml/XmlFixture.h"

namespace {

using namespace lumivard::platform::test_support;

/// Writing ends, and stays in proportion, whatever the records say.
class DamagedTree : public XmlTest {};
LVP_ON_EACH_STORE(DamagedTree);

TEST_P(DamagedTree, WritesASetThatStandsBelowItselfOnce) {
    read("<root name='r'><group name='a'><group name='b'/></group></root>");
    stored::enlist(store(), at(L"a.b"), at(L"a"));
    EXPECT_EQ(written(), "<root version=\"0\" name=\"r\"><group name=\"a\"><group name=\"b\"/></group></root>");
    EXPECT_EQ(written(at(L"a.b")), "<group name=\"b\"><group name=\"a\"/></group>");
}

TEST_P(DamagedTree, WritesASetThatIsItsOwnChildOnce) {
    read("<group name='a'/>");
    stored::enlist(store(), 0, 0);
    EXPECT_EQ(written(), "<group name=\"a\"/>");
}

TEST_P(DamagedTree, WritesASetThatStandsInTwoPlacesInTheFirst) {
    read(
        "<root name='r'><group name='a'><table name='t'><int32 name='i'>1</int32></table></group><group "
        "name='b'/></root>");
    stored::enlist(store(), at(L"b"), at(L"a.t"));
    EXPECT_EQ(written(),
              "<root version=\"0\" name=\"r\"><group name=\"a\"><table name=\"t\"><int32 name=\"i\">1</int32></table>"
              "</group><group name=\"b\"/></root>");
}

TEST_P(DamagedTree, DoesNotGrowWithThePathsThroughIt) {
    // Of two sets on each level each holds both of the next: 2^40 ways lead down.
    constexpr int kLevels = 40;
    read("<group name='top'/>");
    std::vector<unsigned int> upper{0};
    for (int level = 0; level < kLevels; ++level) {
        std::vector<unsigned int> lower;
        for (const wchar_t* name : {L"a", L"b"}) {
            const Structural::Container set(store(), Structural::Container::tType::kGroup, name);
            lower.push_back(set.offset());
            for (const unsigned int owner : upper) stored::enlist(store(), owner, set.offset());
        }
        upper = lower;
    }
    const std::string document = written();
    EXPECT_LT(document.size(), 100u * kLevels);
    EXPECT_GT(document.size(), 2u * 16 * kLevels);
}

TEST_P(DamagedTree, LeavesOutEntriesThatNameNoItem) {
    read("<group name='a'><int32 name='i'>1</int32><int32 name='j'>2</int32></group>");
    const unsigned int list = stored::makeList(store());
    const unsigned int nothing[] = {kNoItem, 0xFFFFFFF0u, list, at(L"i")};
    const unsigned int children = stored::word(store(), 0, stored::kChildren);
    std::string entries = stored::bytes(store(), children).substr(0, 4);
    entries.append(reinterpret_cast<const char*>(nothing), sizeof(nothing));
    store()->update(children, entries.data(), static_cast<unsigned int>(entries.size()), true);
    // One name, so one entry: what stands beyond the number of names is not looked at.
    EXPECT_EQ(written(), "<group name=\"a\"/>");
}

TEST_P(DamagedTree, LeavesOutRecordsThatAreTooShortForTheirKind) {
    read(
        "<root name='r'><group name='g'><int32 name='a'>1</int32><table name='t'/><int32 "
        "name='z'>2</int32></group></root>");
    const auto cut = [this](unsigned int offset, unsigned int size) {
        const std::string whole = stored::bytes(store(), offset);
        store()->update(offset, whole.data(), size, true);
        return whole;
    };
    const auto restore = [this](unsigned int offset, const std::string& whole) {
        store()->update(offset, whole.data(), static_cast<unsigned int>(whole.size()), true);
    };
    const std::pair<unsigned int, unsigned int> kLeast[] = {
        {at(L"g.a"), 44}, {at(L"g.t"), 36}, {at(L"g"), 32}, {0, 24}};
    for (const auto& [offset, least] : kLeast) {
        for (const unsigned int size : {0u, 1u, 13u, 14u, least - 1}) {
            const std::string whole = cut(offset, size);
            EXPECT_EQ(written(offset), "") << least << " cut to " << size;
            restore(offset, whole);
        }
    }
}

TEST_P(DamagedTree, WritesRecordsWithLengthsThatPointOutOfThem) {
    read("<group name='g'><string name='s'>x</string></group>");
    const unsigned int text = at(L"s");
    for (const unsigned int field : {26u, 30u, 34u, 38u}) {
        const unsigned int length = stored::word(store(), text, field);
        for (const unsigned int wrong : {0u, 1u, 7u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
            stored::putWord(store(), text, field, wrong);
            EXPECT_EQ(written(text).substr(0, 7), "<string") << field << ' ' << wrong;
        }
        stored::putWord(store(), text, field, length);
    }
    EXPECT_EQ(written(text), "<string name=\"s\">x</string>");
}

}  // namespace
