#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "lumivard/platform/data/metadata/tValue.h"
#include "lumivard/platform/data/structure/IVisitor.h"

namespace lvp::tool {

using lumivard::platform::data::metadata::tValue;
using lumivard::platform::data::structure::IVisitor;

/// How the values of a kind are written for people.
enum class tForm : unsigned char {
    kNothing,   ///< the kind is none
    kBytes,     ///< base64, all bytes as one value
    kTexts,     ///< texts in UTF-8
    kTruths,    ///< true, false
    kIntegers,  ///< decimal
    kReals,     ///< the shortest decimal form that reads back as the same number
};
tForm formOf(tValue kind);

/// How many numbers make one value: 3 for a vector3; 1 for other kinds.
unsigned int componentsOf(tValue kind);

/// The bytes of a primitive's value, as they are in the store at this moment; none for one that has a URI instead.
std::vector<char> bytesOf(const IVisitor::tPrimitive& item);

/// The values in such bytes as people type and read them, one text each: a number, a text, or all bytes in base64.
std::vector<std::string> valuesOf(tValue kind, std::span<const char> bytes);

/// The numbers in such bytes, exactly, of a kind whose values are integers or real numbers; of other kinds none.
std::vector<long double> numbersOf(tValue kind, std::span<const char> bytes);

/// The bytes of values as they were typed: the reverse of `valuesOf`. What cannot be read as a value of the kind, or
/// lies out of its range, is a failure of `kWrongUsage` that says which value, and what would do.
std::vector<char> parseValues(tValue kind, std::span<const std::string> values);

/// The kind of a name, such as "double"; 0 when there is none.
tValue kindNamed(const std::string& name);

}  // namespace lvp::tool
