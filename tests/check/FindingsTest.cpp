// Each rule finds what it is there for, planted alone, under its name.
#include <gtest/gtest.h>

#include <functional>

#include "lumivard/platform/data/check/Check.h"
#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "lumivard/platform/stores.h"
#include "tests/check/Describe.h"
#include "tests/check/SmallTree.h"
#include "tests/support/Offsets.h"

namespace {

using namespace lumivard::platform::test_support;
namespace check = lumivard::platform::data::check;
namespace stores = lumivard::platform::stores;
using lumivard::platform::store_contract::ForwardingStore;

struct tPlanting {
    const char* name;
    std::function<void(SmallTree&)> plant;
    const char* codes;  ///< all that is found, each once
};

void PrintTo(const tPlanting& planting, std::ostream* out) {
    *out << planting.name;
}

class Findings : public testing::TestWithParam<tPlanting> {};

TEST_P(Findings, HaveTheirNames) {
    SmallTree tree;
    GetParam().plant(tree);
    EXPECT_EQ(codes(check::examine(tree.store, {.whole = true})), GetParam().codes);
}

using lumivard::platform::test_support::BADOFF;

const tPlanting kPlantings[] = {
    {"Nothing", [](SmallTree&) {}, ""},

    // One record by itself.
    {"UnknownKind", [](SmallTree& t) { t.store.create("\x07", 1); }, "live.unattached record.kind "},
    {"ShortRecord", [](SmallTree& t) { t.resize(t.value, 43); }, "record.short "},
    {"ShortList", [](SmallTree& t) { t.resize(t.list, 3); }, "live.unattached record.short "},
    {"SectionTooLong", [](SmallTree& t) { t.word(t.value, 38, 13); }, "record.section-past-end "},
    {"HugeSection", [](SmallTree& t) { t.word(t.value, 38, BADOFF); }, "record.section-past-end "},
    {"BytesBehindTheSections", [](SmallTree& t) { t.grow(t.value, 4); }, "record.rest "},
    {"PartOfAnEntry", [](SmallTree& t) { t.grow(t.list, 3); }, "record.list-size "},
    {"NameOfNoWholeCharacters", [](SmallTree& t) { t.rename(t.node, std::string("n\0\0\0\0\0\0\0\0", 9)); },
     "record.text-length "},
    {"NameWithoutItsEnd", [](SmallTree& t) { t.rename(t.node, std::string("n\0\0\0", 4)); }, "record.text-end "},
    {"NoName", [](SmallTree& t) { t.rename(t.node, ""); }, "record.text-end set.empty-name "},
    {"Surrogate", [](SmallTree& t) { t.rename(t.node, std::string("\0\xD8\0\0\0\0\0\0", 8)); },
     "record.text-character "},
    {"CharacterBeyondUnicode", [](SmallTree& t) { t.rename(t.node, std::string("\0\0\x11\0\0\0\0\0", 8)); },
     "record.text-character "},
    {"TextBehindTheEnd", [](SmallTree& t) { t.rename(t.node, std::string("n\0\0\0\0\0\0\0x\0\0\0", 12)); },
     "record.text-rest "},
    {"UnknownFlag", [](SmallTree& t) { t.byte(t.node, 13, 0x10); }, "record.flags "},
    {"ExternalContainer", [](SmallTree& t) { t.byte(t.node, 13, 0x08); }, "record.flags "},
    {"UnknownContainerType", [](SmallTree& t) { t.byte(t.node, 18, 3); }, "record.container-type "},
    {"UnknownValueKind", [](SmallTree& t) { t.word(t.value, 22, 25); }, "record.value-kind "},
    {"NoValueKind", [](SmallTree& t) { t.word(t.value, 22, 0); }, "record.value-kind "},
    {"UnknownUnit", [](SmallTree& t) { t.word(t.value, 18, 0x1FFF); }, "record.unit "},
    {"PartOfAnElement", [](SmallTree& t) { t.word(t.value, 22, 18); }, "record.value-size "},
    {"NoURI", [](SmallTree& t) { t.byte(t.value, 13, 0x08); }, "record.text-character record.text-end "},
    {"ReservedBytes", [](SmallTree& t) { t.word(t.value, 14, 1); }, "record.reserved "},
    {"ReservedBytesOfAList", [](SmallTree& t) { t.byte(t.list, 3, 1); }, "record.reserved "},
    {"TextsThatAreNoPairs", [](SmallTree& t) { t.texts("e\0\0\0\0\0\0\0", 8); }, "record.locale-pairs "},
    {"TextsWithoutAnEnd", [](SmallTree& t) { t.texts("e\0\0\0\0\0\0\0x\0\0\0\0\0\0\0y\0\0\0", 20); },
     "record.text-end "},
    {"DefaultsThatAreNoPairs", [](SmallTree& t) { t.grow(t.defaults, 4); }, "record.default-pairs "},
    {"DefaultOfAnUnknownUnit", [](SmallTree& t) { t.word(t.defaults, 4, 0x1FFF); }, "record.default-pairs "},
    {"DefaultOfNoKind", [](SmallTree& t) { t.word(t.defaults, 8, 0); }, "record.default-pairs "},
    {"WrongCharacterInAValue", [](SmallTree& t) { t.word(t.value, 22, 3); }, "record.value-content "},
    {"WrongTruthValue", [](SmallTree& t) { t.word(t.value, 22, 7); }, "record.value-content "},

    // What records name.
    {"ChildrenThatAreNotThere", [](SmallTree& t) { t.word(t.leaf, 14, 999); }, "reference.children "},
    {"ChildrenThatAreNoList", [](SmallTree& t) { t.word(t.leaf, 14, t.value); }, "reference.children "},
    {"LocalizedNamesThatAreNotThere", [](SmallTree& t) { t.word(t.leaf, 9, 999); }, "reference.locale "},
    {"LocalizedNamesThatAreNone", [](SmallTree& t) { t.word(t.leaf, 9, t.value); }, "reference.locale "},
    {"DefaultsThatAreNotThere", [](SmallTree& t) { t.word(t.below, 22, 999); }, "reference.defaults "},
    {"DefaultsThatAreNoList", [](SmallTree& t) { t.word(t.below, 22, t.value); }, "reference.defaults "},
    {"EntryThatIsNotThere", [](SmallTree& t) { t.enlist(t.group, 999); }, "reference.entry "},
    {"EntryThatIsNone", [](SmallTree& t) { t.enlist(t.group, BADOFF); }, "reference.entry "},
    {"EntryThatIsTheRoot", [](SmallTree& t) { t.enlist(t.group, 0); }, "reference.entry "},
    {"EntryThatIsAList", [](SmallTree& t) { t.enlist(t.group, t.list); }, "reference.entry "},
    {"SharedChildren", [](SmallTree& t) { t.word(t.leaf, 14, t.list); }, "reference.shared "},
    {"SharedNames", [](SmallTree& t) { t.word(t.leaf, 9, t.names); }, "reference.shared "},
    {"SharedDefaults", [](SmallTree& t) { t.word(t.below, 22, t.defaults); }, "reference.shared "},
    {"DefaultsThatAreChildren", [](SmallTree& t) { t.word(t.below, 22, t.list); }, "reference.shared "},

    // The tree.
    {"TopThatIsNotThere", [](SmallTree& t) { t.store.erase(0); }, "graph.top live.unattached "},
    {"TopThatIsAList", [](SmallTree& t) { t.byte(0, 0, 3); }, "graph.top live.unattached record.reserved "},
    {"TopThatIsTooShort", [](SmallTree& t) { t.resize(0, 18); }, "graph.top live.unattached record.short "},
    {"TopWithAParent", [](SmallTree& t) { t.word(0, 1, t.group); }, "graph.parent-differs "},
    {"OtherParent", [](SmallTree& t) { t.word(t.leaf, 1, t.group); }, "graph.parent-differs "},
    {"NoParent", [](SmallTree& t) { t.word(t.leaf, 1, BADOFF); }, "graph.parent-differs "},
    {"ParentThatIsNotThere", [](SmallTree& t) { t.word(t.leaf, 1, 999); }, "graph.parent-differs "},
    {"TwoPlaces", [](SmallTree& t) { t.enlist(t.leaf, t.value); }, "graph.listed-twice "},
    {"TwiceInAList", [](SmallTree& t) { t.enlist(t.node, t.leaf); }, "graph.listed-twice "},
    {"Ring", [](SmallTree& t) { t.enlist(t.leaf, t.group); }, "graph.cycle "},
    {"RingOfOne", [](SmallTree& t) { t.enlist(t.leaf, t.leaf); }, "graph.cycle "},
    {"ContainerInATable", [](SmallTree& t) { tree::add(&t.store, t.below, tree::container(&t.store, L"c")); },
     "graph.misplaced "},

    // Sets.
    {"TwoOfOneName", [](SmallTree& t) { t.enlistNew(t.group, L"node"); }, "set.duplicate-name "},
    {"EmptyName", [](SmallTree& t) { t.rename(t.node, std::string(4, '\0')); }, "set.empty-name "},
    {"DottedName", [](SmallTree& t) { tree::addContainer(&t.store, t.group, L"a.b"); }, "set.dotted-name "},

    // What nobody has.
    {"StaleCount", [](SmallTree& t) { t.word(t.leaf, 5, 1); }, "live.stale-count "},
    {"UnattachedItem", [](SmallTree& t) { tree::container(&t.store, L"stray"); }, "live.unattached "},
    {"UnattachedList", [](SmallTree& t) { stored::makeList(&t.store); }, "live.unattached "},
    {"LostChildren", [](SmallTree& t) { t.word(t.node, 14, BADOFF); }, "live.unattached "},
};

INSTANTIATE_TEST_SUITE_P(Of, Findings, testing::ValuesIn(kPlantings),
                         [](const auto& planting) { return std::string(planting.param.name); });

TEST(FindingsTable, HasEveryRuleButThatOfAnUnwillingStore) {
    std::string all;
    for (const tPlanting& planting : kPlantings) all += planting.codes;
    for (const check::Rule& rule : check::rules()) {
        const std::string code = rule.code;
        EXPECT_TRUE(code == "record.unreadable" || all.find(code) != all.npos) << code;
    }
}

/// A store that does not give out one of its records.
class Unwilling final : public ForwardingStore {
public:
    Unwilling(IDataStore& under, unsigned int offset, bool size)
        : ForwardingStore(under), _offset(offset), _size(size) {}
    unsigned int size(unsigned int offset) override {
        if (_size && offset == _offset) throw stores::StoreError("no size");
        return ForwardingStore::size(offset);
    }
    void read(unsigned int offset, void* buffer, unsigned int size) override {
        if (offset == _offset) throw stores::StoreError("no bytes");
        ForwardingStore::read(offset, buffer, size);
    }

private:
    unsigned int _offset;
    bool _size;
};

TEST(UnreadableRecord, IsAFindingAndNothingBesides) {
    SmallTree tree;
    for (const unsigned int offset : {tree.leaf, tree.value, tree.names, tree.defaults}) {
        for (const bool size : {false, true}) {
            Unwilling store(tree.store, offset, size);
            EXPECT_EQ(codes(check::examine(store)), "record.unreadable ") << offset;
        }
    }
}

TEST(UnreadableRecord, KeepsWhatItMayHaveHeldFromBeingReclaimed) {
    SmallTree tree;
    Unwilling store(tree.store, tree.list, false);
    EXPECT_EQ(codes(check::examine(store)), "live.unattached record.unreadable ");
    EXPECT_TRUE(check::plan(store, {.reclaim = true}).steps.empty());
}

TEST(UnreadableTop, IsFatal) {
    SmallTree tree;
    Unwilling store(tree.store, 0, false);
    const auto report = check::examine(store);
    EXPECT_EQ(report.count(check::tSeverity::kFatal), 1u);
    EXPECT_FALSE(report.sound());
}

}  // namespace
