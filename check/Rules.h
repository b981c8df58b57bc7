#pragma once

#include "lumivard/platform/data/check/Finding.h"

namespace lumivard::platform::data::Check {

using check::Rule;
using check::tSeverity;

/// The rules by their numbers, which are the places in `check::rules()`.
enum tRule : unsigned char {
    kCycle,
    kListedTwice,
    kMisplaced,
    kParentDiffers,
    kTop,
    kStaleCount,
    kUnattached,
    kContainerType,
    kDefaultPairs,
    kFlags,
    kKind,
    kListSize,
    kLocalePairs,
    kReserved,
    kRest,
    kSection,
    kShort,
    kTextCharacter,
    kTextEnd,
    kTextLength,
    kTextRest,
    kUnit,
    kUnreadable,
    kValueContent,
    kValueKind,
    kValueSize,
    kChildren,
    kDefaults,
    kEntry,
    kLocale,
    kShared,
    kDottedName,
    kDuplicateName,
    kEmptyName,
    kRules
};

const Rule& rule(tRule number);

}  // namespace lumivard::platform::data::Check
