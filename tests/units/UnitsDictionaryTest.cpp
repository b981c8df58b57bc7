#include "units/UnitsDictionary.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using lumivard::platform::data::UnitsDictionary;
namespace units = lumivard::platform::data::units;

using tRow = std::pair<const char*, units::tUnit>;

const std::vector<tRow> kTable = {
#define LVP_UNIT(enumerator, identifier, name) {name, units::enumerator},
#include "lumivard/platform/data/units/UnitTable.inc"
#undef LVP_UNIT
};

units::tUnit identifier(int value) {
    return static_cast<units::tUnit>(value);
}

TEST(UnitsDictionary, FindsTheIdentifierOfEachName) {
    const UnitsDictionary dictionary;
    for (const auto& [name, unit] : kTable) EXPECT_EQ(unit, dictionary.unit(name)) << name;
}

TEST(UnitsDictionary, FindsANameInMemoryOfTheCaller) {
    const std::string name = "Meter";
    EXPECT_EQ(0x2001, UnitsDictionary().unit(name.c_str()));
}

TEST(UnitsDictionary, GivesEachIdentifierTheNameOfItsFirstRow) {
    const UnitsDictionary dictionary;
    std::set<units::tUnit> seen;
    for (const auto& [name, unit] : kTable) {
        if (seen.insert(unit).second) {
            EXPECT_STREQ(name, dictionary.unit(unit));
        }
    }
    EXPECT_EQ(773u, seen.size());
}

TEST(UnitsDictionary, KnowsNothingOutsideTheTable) {
    const UnitsDictionary dictionary;
    std::set<int> known;
    for (const auto& [name, unit] : kTable) known.insert(unit);
    for (int value = 0; value < 0x46000; ++value) {
        if (!known.contains(value)) {
            EXPECT_EQ(nullptr, dictionary.unit(identifier(value))) << value;
        }
    }
}

TEST(UnitsDictionary, ReadsAnAliasAndWritesTheFirstName) {
    struct tPair {
        int identifier;
        const char* written;
        const char* alias;
    };
    const tPair pairs[] = {
        {0x400c, "Quart_US_fluid", "Quart"},
        {0x400f, "Gallon_US_fluid", "Gallon"},
        {0x4018, "CubicMeter", "Stere"},
        {0x401e, "Pint_US_fluid", "Pint"},
        {0x8008, "AngleMinute", "Arcminute"},
        {0x8009, "AngleSecond", "Arcsecond"},
        {0x37001, "CandelasPerSquareMeter", "Nit"},
    };
    const UnitsDictionary dictionary;
    for (const tPair& pair : pairs) {
        EXPECT_EQ(pair.identifier, dictionary.unit(pair.written));
        EXPECT_EQ(pair.identifier, dictionary.unit(pair.alias));
        EXPECT_STREQ(pair.written, dictionary.unit(identifier(pair.identifier)));
    }
}

TEST(UnitsDictionary, WritesSevenNamesOtherThanTheyWereRead) {
    const UnitsDictionary dictionary;
    int changed = 0;
    for (const auto& [name, unit] : kTable) changed += std::string(dictionary.unit(dictionary.unit(name))) != name;
    EXPECT_EQ(7, changed);
}

TEST(UnitsDictionary, CommasAndBlanksBelongToAName) {
    const UnitsDictionary dictionary;
    EXPECT_EQ(0x43002, dictionary.unit("InvCelsius,"));
    EXPECT_EQ(units::kNoUnit, dictionary.unit("InvCelsius"));
    EXPECT_EQ(0x11007, dictionary.unit("OuncePerGallon,   "));
    EXPECT_EQ(units::kNoUnit, dictionary.unit("OuncePerGallon"));
    EXPECT_EQ(units::kNoUnit, dictionary.unit("OuncePerGallon,"));
    EXPECT_STREQ("LiterPerSecond,              ", dictionary.unit(units::kLiterPerSecond));
}

TEST(UnitsDictionary, OddSpellingsAreTheNamesThemselves) {
    const UnitsDictionary dictionary;
    EXPECT_EQ(0x2c029, dictionary.unit("Millenium_Julian"));
    EXPECT_EQ(units::kNoUnit, dictionary.unit("Millennium_Julian"));
    EXPECT_EQ(0x3e001, dictionary.unit("CubicMeterPerSecondSqureMeter"));
    EXPECT_EQ(units::kNoUnit, dictionary.unit("CubicMeterPerSecondSquareMeter"));
}

TEST(UnitsDictionary, TrimsNothing) {
    const UnitsDictionary dictionary;
    EXPECT_EQ(units::kNoUnit, dictionary.unit(" Meter"));
    EXPECT_EQ(units::kNoUnit, dictionary.unit("Meter "));
}

TEST(UnitsDictionary, CaseCounts) {
    EXPECT_EQ(units::kNoUnit, UnitsDictionary().unit("meter"));
}

TEST(UnitsDictionary, APartOfANameIsNoName) {
    EXPECT_EQ(units::kNoUnit, UnitsDictionary().unit("Mete"));
    EXPECT_EQ(units::kNoUnit, UnitsDictionary().unit("Meters"));
}

TEST(UnitsDictionary, NoTextIsNoUnit) {
    EXPECT_EQ(units::kNoUnit, UnitsDictionary().unit(""));
    EXPECT_EQ(units::kNoUnit, UnitsDictionary().unit(static_cast<const char*>(nullptr)));
}

TEST(UnitsDictionary, UnitlessIsNotNoUnit) {
    EXPECT_EQ(0x1001, UnitsDictionary().unit("Unitless"));
    EXPECT_STREQ("Unitless", UnitsDictionary().unit(units::kUnitless));
    EXPECT_EQ(nullptr, UnitsDictionary().unit(units::kNoUnit));
}

TEST(UnitsDictionary, AnIdentifierPastTheEndOfItsGroupHasNoName) {
    EXPECT_STREQ("Bolt", UnitsDictionary().unit(identifier(0x2042)));
    EXPECT_EQ(nullptr, UnitsDictionary().unit(identifier(0x2043)));
    EXPECT_EQ(nullptr, UnitsDictionary().unit(identifier(0x2000)));
    EXPECT_EQ(nullptr, UnitsDictionary().unit(identifier(-1)));
}

TEST(UnitsDictionary, NamesOutliveTheDictionary) {
    const char* name = UnitsDictionary().unit(units::kMeter);
    EXPECT_STREQ("Meter", name);
}

TEST(UnitsDictionary, HasNoVirtualOperations) {
    EXPECT_FALSE(std::is_polymorphic_v<UnitsDictionary>);
}

}  // namespace
