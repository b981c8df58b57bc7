#pragma once

#include <memory>
#include <vector>

#include "tests/support/ClientFixture.h"

namespace lumivard::platform::test_support {

using data::metadata::IStringArray;

/// The list in these characters.
inline std::unique_ptr<IStringArray> unpacked(const std::vector<wchar_t>& packed) {
    return std::unique_ptr<IStringArray>(IStringArray::to(packed.data(), static_cast<unsigned int>(packed.size())));
}

/// A list of these texts.
inline std::unique_ptr<IStringArray> listOf(const tNames& texts) {
    auto list = unpacked({});
    for (const std::wstring& each : texts) list->add(each.c_str());
    return list;
}

/// All texts of a list.
inline tNames texts(const IStringArray& list) {
    tNames all;
    for (unsigned int index = 0; index < list.strings(); ++index) all.push_back(text(list.get(index)));
    return all;
}

}  // namespace lumivard::platform::test_support
