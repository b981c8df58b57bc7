#pragma once

#include <span>

#include "check/Case.h"

namespace lumivard::platform::data::Check {

/// Judges a text that fills a section: whole characters, an end, nothing but zeros behind it. `what` names it: "its
/// name". One of no bytes is fine unless it is `required`.
void judgeText(Case& subject, unsigned int offset, const char* what, std::span<const char> bytes, bool required);

/// Judges pairs of texts, each with its end.
void judgePairs(Case& subject, unsigned int offset, std::span<const char> bytes);

/// Whether all characters are ones that there are.
bool areCharacters(std::span<const char> bytes);

}  // namespace lumivard::platform::data::Check
