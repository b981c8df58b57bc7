#include "property/PropertyImpl.h"

#include "design/Container.h"
#include "design/Table.h"
#include "property/DesignTableImpl.h"
#include "record/Base.h"
#include "record/Guard.h"

namespace lumivard::platform::data {

using Record::Guard;

WideString PropertyImpl::tag() const {
    const Guard guard(store());
    return item()->tag();
}

WideString PropertyImpl::path() const {
    const Guard guard(store());
    std::wstring path;
    item()->path(path);
    return path.c_str();
}

IDataStore* PropertyImpl::store() const {
    return item()->store();
}

unsigned int PropertyImpl::type() const {
    const Guard guard(store());
    return Record::peek(store(), item()->offset()) == Record::kPrimitive ? 0 : 1;
}

bool PropertyImpl::rename(WideString name) {
    const Guard guard(store());
    const unsigned int parent = item()->parent();
    switch (Record::peek(store(), parent)) {
        case Record::kTable:
            return Design::Table(store(), parent, false).rename(item()->tag(), name.value());
        case Record::kContainer:
            return Structural::Container(store(), parent, false).rename(item()->tag(), name.value());
        default:
            return false;
    }
}

SharedPtr<metadata::ITable> PropertyImpl::parent() {
    const Guard guard(store());
    const unsigned int parent = item()->parent();
    if (Record::peek(store(), parent) != Record::kTable) return {};
    return DesignTableImpl::open(store(), parent);
}

unsigned int PropertyImpl::locales() {
    const Guard guard(store());
    return item()->locales();
}

WideString PropertyImpl::locale(unsigned int index) {
    const Guard guard(store());
    std::wstring description;
    std::wstring locale;
    item()->locale(index, description, locale);
    return locale.c_str();
}

void PropertyImpl::describe(WideString locale, WideString description) {
    const Guard guard(store());
    item()->localize(description.value(), locale.value());
}

WideString PropertyImpl::localize(WideString locale) {
    const Guard guard(store());
    const unsigned int index = item()->localize(locale.value());
    if (index == Metadata::Item::kNoLocale) return {};
    std::wstring description;
    std::wstring name;
    item()->locale(index, description, name);
    return description.c_str();
}

unsigned char PropertyImpl::flags() const {
    const Guard guard(store());
    return item()->flags();
}

void PropertyImpl::on(unsigned char bits) {
    const Guard guard(store());
    item()->on(bits);
}

void PropertyImpl::off(unsigned char bits) {
    const Guard guard(store());
    item()->off(bits);
}

}  // namespace lumivard::platform::data
