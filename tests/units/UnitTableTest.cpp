// The table of units and the enumerations made of it.
#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "lumivard/platform/data/units/tUnit.h"
#include "lumivard/platform/data/units/tUnitGroup.h"

namespace {

namespace units = lumivard::platform::data::units;

struct tRow {
    std::string enumerator;
    units::tUnit unit;
    std::string name;
};

const std::vector<tRow> kTable = {
#define LVP_UNIT(enumerator, identifier, name) {#enumerator, units::enumerator, name},
#include "lumivard/platform/data/units/UnitTable.inc"
#undef LVP_UNIT
};

/// One line of the kept copy: a hexadecimal identifier, a tab, the name in quotes.
tRow parsed(std::string_view line) {
    const std::size_t tab = line.find('\t');
    int identifier = 0;
    std::from_chars(line.data() + 2, line.data() + tab, identifier, 16);
    const std::string_view quoted = line.substr(tab + 1);
    return {"", static_cast<units::tUnit>(identifier), std::string(quoted.substr(1, quoted.size() - 2))};
}

std::vector<tRow> keptTable() {
    std::ifstream file(LVP_SOURCE_DIR "/tests/data/units.tsv", std::ios::binary);
    std::vector<tRow> rows;
    for (std::string line; std::getline(file, line);) rows.push_back(parsed(line));
    return rows;
}

std::string enumeratorFor(const std::string& name) {
    const auto kept = [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
    };
    std::string result = "k";
    std::copy_if(name.begin(), name.end(), std::back_inserter(result), kept);
    return result;
}

int position(units::tUnit unit) {
    return unit & 0xFFF;
}

TEST(UnitTable, HasTheRowsOfTheKeptCopyInTheirOrder) {
    const std::vector<tRow> kept = keptTable();
    ASSERT_EQ(kept.size(), kTable.size());
    for (std::size_t i = 0; i < kept.size(); ++i) {
        EXPECT_EQ(kept[i].unit, kTable[i].unit) << "row " << i;
        EXPECT_EQ(kept[i].name, kTable[i].name) << "row " << i;
    }
}

TEST(UnitTable, Has780RowsFor773Identifiers) {
    std::set<units::tUnit> identifiers;
    for (const tRow& row : kTable) identifiers.insert(row.unit);
    EXPECT_EQ(780u, kTable.size());
    EXPECT_EQ(773u, identifiers.size());
}

TEST(UnitTable, NamesAreAllDifferent) {
    std::set<std::string> names;
    for (const tRow& row : kTable) names.insert(row.name);
    EXPECT_EQ(kTable.size(), names.size());
}

TEST(UnitTable, EnumeratorsAreKAndTheNameWithoutItsOddCharacters) {
    for (const tRow& row : kTable) EXPECT_EQ(enumeratorFor(row.name), row.enumerator);
}

TEST(UnitTable, ElevenNamesHoldAComma) {
    const std::vector<std::string> expected = {
        "OuncePerGallon,   ",
        "KilonewtonPerCubicMeter,   ",
        "LiterPerSecond,              ",
        "PoundForcePerFoot,   ",
        "KilowattPerSquareFoot,   ",
        "MeterPerKilonewton,   ",
        "SquareMeterPerKilonewton,   ",
        "KipFootPerDegreePerFoot,   ",
        "CubicFootPerMinuteCubicFoot,   ",
        "FootPerSecondSquared,   ",
        "InvCelsius,",
    };
    std::vector<std::string> found;
    for (const tRow& row : kTable) {
        if (row.name.find(',') != std::string::npos) found.push_back(row.name);
    }
    std::vector<std::string> sorted = expected;
    std::sort(sorted.begin(), sorted.end());
    std::sort(found.begin(), found.end());
    EXPECT_EQ(sorted, found);
}

TEST(UnitTable, GroupsAreTheNumbers1To0x44) {
    std::set<int> numbers;
    for (const tRow& row : kTable) numbers.insert(row.unit >> 12);
    EXPECT_EQ(68u, numbers.size());
    EXPECT_EQ(1, *numbers.begin());
    EXPECT_EQ(0x44, *numbers.rbegin());
}

TEST(UnitTable, RowsOfAGroupStandTogether) {
    std::set<units::tUnitGroup> ended;
    units::tUnitGroup current = units::kNoGroup;
    for (const tRow& row : kTable) {
        const units::tUnitGroup group = units::group(row.unit);
        if (group == current) continue;
        EXPECT_TRUE(ended.insert(group).second) << row.name;
        current = group;
    }
}

TEST(UnitTable, PositionsRunUpFrom1WithAliasesStandingStill) {
    units::tUnitGroup current = units::kNoGroup;
    int expected = 0;
    int aliases = 0;
    for (const tRow& row : kTable) {
        if (units::group(row.unit) != current) {
            current = units::group(row.unit);
            expected = 0;
        }
        const bool alias = expected != 0 && position(row.unit) == expected;
        aliases += alias;
        if (!alias) ++expected;
        EXPECT_EQ(expected, position(row.unit)) << row.name;
    }
    EXPECT_EQ(7, aliases);
}

TEST(UnitTable, GroupsHaveTheirKnownSizes) {
    std::map<int, int> last;
    std::map<int, int> rows;
    for (const tRow& row : kTable) {
        last[row.unit >> 12] = position(row.unit);
        ++rows[row.unit >> 12];
    }
    const std::map<int, std::pair<int, int>> expected = {
        // number: last position, rows
        {0x01, {1, 1}},   {0x02, {66, 66}}, {0x03, {50, 50}}, {0x04, {94, 98}}, {0x05, {42, 42}},
        {0x06, {2, 2}},   {0x07, {21, 21}}, {0x08, {10, 12}}, {0x13, {35, 35}}, {0x14, {38, 38}},
        {0x21, {39, 39}}, {0x2c, {41, 41}}, {0x37, {3, 4}},   {0x44, {2, 2}},
    };
    for (const auto& [group, size] : expected) {
        EXPECT_EQ(size.first, last[group]) << std::hex << group;
        EXPECT_EQ(size.second, rows[group]) << std::hex << group;
    }
}

TEST(UnitTable, GroupsDoNotStandInNumericOrder) {
    std::vector<int> order;
    for (const tRow& row : kTable) {
        if (order.empty() || order.back() != row.unit >> 12) order.push_back(row.unit >> 12);
    }
    ASSERT_LT(9u, order.size());
    EXPECT_EQ((std::vector<int>{1, 2, 3, 4, 5, 6, 0x2c, 0xd, 0x2a, 7}),
              std::vector<int>(order.begin(), order.begin() + 10));
    EXPECT_EQ(0x44, order.back());
}

TEST(Unit, IsGroupNumberTimes0x1000PlusPosition) {
    EXPECT_EQ(2 * 0x1000 + 1, units::kMeter);
    EXPECT_EQ(0x44 * 0x1000 + 2, units::kAmperePerMeter);
    EXPECT_EQ(0, units::kNoUnit);
}

TEST(Unit, IsFourBytesWide) {
    EXPECT_EQ(4u, sizeof(units::tUnit));
    EXPECT_EQ(4u, sizeof(units::tUnitGroup));
}

TEST(UnitGroup, IsTheUnitWithItsLow12BitsCleared) {
    EXPECT_EQ(0x2000, units::group(units::kMeter));
    EXPECT_EQ(0x2000, units::group(units::kBolt));
    EXPECT_EQ(0x44000, units::group(units::kAmperePerMeter));
    EXPECT_EQ(units::kNoGroup, units::group(units::kNoUnit));
}

TEST(UnitGroup, KeepsTheHighestBits) {
    EXPECT_EQ(-0x1000, units::group(static_cast<units::tUnit>(-1)));
}

}  // namespace
