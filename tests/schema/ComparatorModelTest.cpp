// Comparing sets with schemas, against the same rules over plain values.
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "lumivard/platform/stores.h"
#include "schema/Comparator.h"
#include "tests/schema/SchemaFixture.h"

namespace {

using namespace lumivard::platform::test_support;
namespace stores = lumivard::platform::stores;
using data::Record::tType;

/// An item as plain values. Two items of a list may have one name.
struct tItem {
    tType kind = data::Record::kPrimitive;
    wchar_t name = L'a';
    metadata::tValue type = metadata::kInt32;
    std::vector<tItem> listed;

    bool isSet() const { return kind != data::Record::kPrimitive; }

    /// As many of the listed items as there are names among them.
    std::vector<tItem> items() const {
        std::set<wchar_t> names;
        for (const tItem& item : listed) names.insert(item.name);
        return {listed.begin(), listed.begin() + static_cast<std::ptrdiff_t>(names.size())};
    }
};

bool equal(const tItem& a, const tItem& b) {
    if (a.kind != b.kind || a.name != b.name) return false;
    return a.kind == data::Record::kTable || (a.kind == data::Record::kPrimitive && a.type == b.type);
}

bool matches(const tItem& set, const tItem& schema) {
    if (schema.kind != data::Record::kTable) return false;
    const std::vector<tItem> items = set.isSet() ? set.items() : std::vector<tItem>();
    std::size_t cursor = 0;
    for (const tItem& wanted : schema.items()) {
        while (cursor < items.size() && !equal(items[cursor], wanted)) ++cursor;
        if (cursor == items.size()) return false;
        if (wanted.kind == data::Record::kTable && !matches(items[cursor], wanted)) return false;
        if (set.kind == data::Record::kContainer) ++cursor;
    }
    return true;
}

/// Random items, and their records.
class ComparatorModel : public testing::TestWithParam<unsigned int> {
protected:
    unsigned int below(unsigned int count) { return static_cast<unsigned int>(_random() % count); }

    tItem item(unsigned int depth) {
        tItem item;
        item.name = static_cast<wchar_t>(L'a' + below(4));
        item.type = below(4) == 0 ? metadata::kDouble : metadata::kInt32;
        if (depth != 0 && below(3) == 0)
            item = set(below(8) == 0 ? data::Record::kContainer : data::Record::kTable, depth);
        return item;
    }

    tItem set(tType kind, unsigned int depth) {
        tItem item;
        item.kind = kind;
        item.name = static_cast<wchar_t>(L'a' + below(4));
        for (unsigned int count = below(4); count != 0; --count) item.listed.push_back(this->item(depth - 1));
        return item;
    }

    /// A set with most items of a schema in their order, and strangers between them.
    tItem like(const tItem& schema, tType kind) {
        tItem like;
        like.kind = kind;
        like.name = schema.name;
        for (const tItem& wanted : schema.listed) {
            while (below(5) == 0) like.listed.push_back(item(1));
            if (below(20) == 0) continue;
            like.listed.push_back(wanted.isSet() ? this->like(wanted, wanted.kind) : wanted);
        }
        return like;
    }

    /// Makes the records of an item and of all below it.
    unsigned int make(const tItem& item) {
        const wchar_t name[] = {item.name, L'\0'};
        if (!item.isSet()) return tree::primitive(store(), name, item.type);
        const unsigned int set =
            item.kind == data::Record::kTable ? tree::table(store(), name) : tree::container(store(), name);
        for (const tItem& each : item.listed) stored::enlist(store(), set, make(each));
        return set;
    }

    IDataStore* store() { return _store.get(); }

private:
    const std::unique_ptr<IDataStore> _store = stores::memory();
    std::mt19937 _random{GetParam()};
};
INSTANTIATE_TEST_SUITE_P(Seeds, ComparatorModel, testing::Range(1u, 9u));

TEST_P(ComparatorModel, AgreesWithTheComparatorOnWhatMatches) {
    constexpr int kRounds = 300;
    tree::root(store());
    int matched = 0;
    for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE("seed " + std::to_string(GetParam()) + ", round " + std::to_string(round));
        const tItem schema = set(data::Record::kTable, 3);
        const tItem instance = like(schema, below(2) == 0 ? data::Record::kTable : data::Record::kContainer);
        const bool expected = matches(instance, schema);
        ASSERT_EQ(data::Schema::Comparator().compare(store(), make(instance), store(), make(schema)), expected);
        matched += expected ? 1 : 0;
    }
    EXPECT_GT(matched, kRounds / 10) << "too few of these show anything";
    EXPECT_LT(matched, kRounds * 9 / 10) << "too few of these show anything";
}

}  // namespace
