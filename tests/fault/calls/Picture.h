#pragma once

#include <string>
#include <vector>

#include "tests/fault/calls/World.h"

namespace lumivard::platform::test_support::fault {

/// What the public interfaces show of all stores.
struct Picture {
    std::vector<tNamed> items;             ///< by path, in the order of a walk
    std::vector<std::wstring> complaints;  ///< where two ways to one thing do not agree
};

/// Walks over all stores. Throws what the library throws.
Picture pictureOf(const tStores& stores);

/// What there is to see of a store as a document; empty for a store without any record.
std::string documentOf(IDataStore* store);

/// Those whose path is none of `touched`, paths joined by ";", and not below one of them, but for those that end with
/// "="; all of them for null.
std::vector<tNamed> untouched(const std::vector<tNamed>& items, const wchar_t* touched);

/// What an object says of itself, without its children.
std::wstring describe(IContainer& container);
std::wstring describe(IProperty& property);

/// The path of an item with the place of its store before it, as pictures have it: "main:top.group".
std::wstring path(const IDataStore* store, const tStores& stores, const std::wstring& path);

/// What differs between two, in words; empty when nothing does.
std::string difference(const std::vector<tNamed>& wanted, const std::vector<tNamed>& found);

/// A text of numbers and letters, for messages.
std::string narrow(const std::wstring& text);

/// A number in digits, with a blank before it.
inline std::wstring numeral(unsigned long long number) {
    return L' ' + std::to_wstring(number);
}

}  // namespace lumivard::platform::test_support::fault
