#include "schema/SchemaImpl.h"

#include <algorithm>
#include <string>
#include <unordered_set>

#include "metadata/Set.h"
#include "schema/Comparator.h"
#include "schema/Layout.h"
#include "schema/SchemaLocatorImpl.h"

namespace lumivard::platform::data::Schema {

WideString SchemaImpl::path() const {
    return _layouts.empty() ? WideString() : WideString(_layouts.front()->name());
}

metadata::IStructLayout* SchemaImpl::layout() {
    return _layouts.empty() ? nullptr : _layouts.front();
}

void SchemaImpl::add(Layout* layout) {
    _layouts.push_back(layout);
    if (layout->items() != 0) _empty = false;
}

bool SchemaImpl::prevalidate(const wchar_t* uris) const {
    std::vector<std::wstring> pieces;
    SchemaLocatorImpl::tokenize(uris, pieces);
    const std::unordered_set<std::wstring> named(pieces.begin(), pieces.end());
    return std::all_of(_layouts.begin(), _layouts.end(),
                       [&](const Layout* layout) { return named.contains(layout->name()); });
}

bool SchemaImpl::validate(const Metadata::Set& set) const {
    if (_empty) return false;
    return std::all_of(_layouts.begin(), _layouts.end(), [&](const Layout* layout) {
        return Comparator().compare(set.store(), set.offset(), layout->store(), layout->offset());
    });
}

bool SchemaImpl::validates(const Metadata::Set& set, const wchar_t* base, bool quick) const {
    if (base && prevalidate(base)) return true;
    return !quick && validate(set);
}

}  // namespace lumivard::platform::data::Schema
