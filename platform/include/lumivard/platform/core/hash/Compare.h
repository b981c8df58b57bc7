#pragma once

#include <cstring>
#include <cwchar>

namespace lumivard::platform::core {

/// Compares two values with `==`, which for pointers is their address.
template <class T>
class tCompareEqual {
public:
    virtual ~tCompareEqual() = default;
    /// Whether the two are equal.
    virtual bool operator()(const T& a, const T& b) const { return a == b; }
};

/// Compares two wide texts character by character.
class tWCharCompareEqual : public tCompareEqual<const wchar_t*> {
public:
    /// Whether two texts, neither of them null, are equal.
    bool operator()(const wchar_t* const& a, const wchar_t* const& b) const override { return std::wcscmp(a, b) == 0; }
};

/// Compares two narrow texts byte by byte.
class tCharCompareEqual : public tCompareEqual<const char*> {
public:
    /// Whether two texts, neither of them null, are equal.
    bool operator()(const char* const& a, const char* const& b) const override { return std::strcmp(a, b) == 0; }
};

/// Orders narrow texts by their bytes.
struct tCharCompareLess {
    /// Whether `a` comes before `b`; neither is null.
    bool operator()(const char* a, const char* b) const { return std::strcmp(a, b) < 0; }
};

}  // namespace lumivard::platform::core
