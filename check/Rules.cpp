#include "check/Rules.h"

#include <vector>

#include "lumivard/platform/data/check/Check.h"

namespace lumivard::platform::data {

namespace {

using check::Rule;
using check::tSeverity;

constexpr auto kNote = tSeverity::kNote;
constexpr auto kStale = tSeverity::kStale;
constexpr auto kDamage = tSeverity::kDamage;
constexpr auto kFatal = tSeverity::kFatal;

constexpr Rule kTable[] = {
    {"graph.cycle", kDamage, "a list names an item that it stands below",
     "the entry is dropped, unless the list has to stay as it is"},
    {"graph.listed-twice", kDamage, "an item has two places", "the place that the item itself names stays"},
    {"graph.misplaced", kNote, "an item stands where it can be reached by no cursor", ""},
    {"graph.parent-differs", kDamage, "an item names another owner than the one that lists it",
     "set to the one that lists it"},
    {"graph.top", kFatal, "the record at offset 0 cannot hold anything", ""},
    {"live.stale-count", kStale, "a record counts live objects, though nobody can have any", "set to 0"},
    {"live.unattached", kNote, "records that nothing reaches", "erased, if asked for"},
    {"record.container-type", kDamage, "a container is no node, group or link", ""},
    {"record.default-pairs", kDamage, "a table's defaults are not pairs of a unit and a kind of value", ""},
    {"record.flags", kNote, "flags that mean nothing for the item", ""},
    {"record.kind", kDamage, "the first byte is no kind of record", ""},
    {"record.list-size", kDamage, "a list ends in a part of an entry", "the part is cut off"},
    {"record.locale-pairs", kDamage, "localized names are not pairs of texts", ""},
    {"record.reserved", kNote, "bytes that mean nothing are not 0", ""},
    {"record.rest", kNote, "bytes behind the last section", ""},
    {"record.section-past-end", kDamage, "a section is longer than the record", ""},
    {"record.short", kDamage, "the record is shorter than the fixed part of its kind", ""},
    {"record.text-character", kDamage, "a text holds a number that is no character", ""},
    {"record.text-end", kDamage, "a text has no end", ""},
    {"record.text-length", kDamage, "a text is not a whole number of characters", ""},
    {"record.text-rest", kNote, "bytes behind the end of a text are not 0", ""},
    {"record.unit", kDamage, "a unit that there is not", ""},
    {"record.unreadable", kDamage, "the store does not give the record out", ""},
    {"record.value-content", kNote, "a value is no text or truth value, as its kind says; only looked for with --whole",
     ""},
    {"record.value-kind", kDamage, "a kind of value that there is not", ""},
    {"record.value-size", kDamage, "a value is not a whole number of elements", ""},
    {"reference.children", kDamage, "the children are no list, or not there", "set to none"},
    {"reference.defaults", kDamage, "a table's defaults are no list, or not there", "set to none"},
    {"reference.entry", kDamage, "a list of children names what is no item, or not there", "the entry is dropped"},
    {"reference.locale", kDamage, "the localized names are none, or not there", "set to none"},
    {"reference.shared", kDamage, "a record has two owners", "of a list of children, one stays; nothing otherwise"},
    {"set.dotted-name", kNote, "a name holds a dot, so no path leads to the item", ""},
    {"set.duplicate-name", kDamage, "two items of one name in one place", "all but the first get another name"},
    {"set.empty-name", kNote, "an item has no name", ""},
};
static_assert(std::size(kTable) == Check::kRules);

}  // namespace

const Rule& Check::rule(tRule number) {
    return kTable[number];
}

const std::vector<Rule>& check::rules() {
    static const std::vector<Rule> all(std::begin(kTable), std::end(kTable));
    return all;
}

}  // namespace lumivard::platform::data
