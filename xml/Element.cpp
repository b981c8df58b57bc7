#include "xml/Element.h"

#include <cstring>

#include "lumivard/platform/core/string/StringAlgorithm.h"

namespace lumivard::platform::data {

using core::string::StringAlgorithm;
using core::xml::XMLSerializer;
using Metadata::Item;

namespace {

constexpr const char* kDefaultLocale = "en-us";

}  // namespace

std::unique_ptr<Item> Element::open(const char* const*) {
    return refuse(L"unknown element, skipping");
}

std::unique_ptr<Item> Element::nest(Item&, std::unique_ptr<Item>) {
    return refuse(L"unable to nest");
}

bool Element::set(Item& item, const char* text) {
    if (_mode != tMode::kName) return false;  // kVal stays: from here on `sub` refuses everything
    closeName(item, text);
    return true;
}

void Element::close(Item&) {}

bool Element::sub(const char* name, const char* const* attributes) {
    if (_mode != tMode::kNone) return false;
    if (std::strcmp(name, "val") == 0) {
        _mode = tMode::kVal;
        return true;
    }
    if (std::strcmp(name, "name") == 0) {
        openName(attributes);
        return true;
    }
    return false;
}

bool Element::serialize(Item&, XMLSerializer&) {
    return false;
}

const char* Element::find(const char* name, const char* const* attributes) {
    for (const char* const* attribute = attributes; *attribute; attribute += 2) {
        if (std::strcmp(*attribute, name) == 0) return attribute[1];
    }
    return nullptr;
}

const UnitsDictionary& Element::units() {
    static const UnitsDictionary units;
    return units;
}

std::unique_ptr<Item> Element::refuse(std::wstring message) {
    _message = std::move(message);
    return nullptr;
}

bool Element::isOptional(const char* const* attributes) {
    const char* optional = find("optional", attributes);
    return optional && std::strcmp(optional, "true") == 0;
}

void Element::openName(const char* const* attributes) {
    const char* locale = find("locale", attributes);
    _locale = locale ? locale : kDefaultLocale;
    _mode = tMode::kName;
}

void Element::closeName(Item& item, const char* text) {
    item.localize(StringAlgorithm::UTF8Decode(text).c_str(), StringAlgorithm::UTF8Decode(_locale.c_str()).c_str());
    _mode = tMode::kNone;
}

bool Element::writeNames(Item& item, XMLSerializer& serializer) {
    const unsigned int count = item.locales();
    std::wstring text;
    std::wstring locale;
    for (unsigned int i = 0; i < count; ++i) {
        item.locale(i, text, locale);
        serializer.startElement("name");
        serializer.addAttribute("locale", locale);
        serializer.addCharacterData(text);
        serializer.endElement(false);
    }
    return count != 0;
}

}  // namespace lumivard::platform::data
