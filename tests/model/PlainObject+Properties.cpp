#include "tests/model/PlainObject.h"

namespace lumivard::platform::model {

TreeObject::tPtr PlainObject::at(unsigned int index) {
    if (!_knowsList || index >= _item.list->size()) return nullptr;
    PlainItem* const item = (*_item.list)[index];
    return item->kind == PlainItem::kContainer ? nullptr : open(_tree, item);
}

TreeObject::tPtr PlainObject::makeByGroup(const std::wstring& name, units::tUnitGroup group) {
    const auto kind = static_cast<metadata::tValue>(defaultKind(group));
    if (kind == 0) return nullptr;
    return makePrimitive(name, kind, static_cast<units::tUnit>(defaultUnit(group)));
}

void PlainObject::loadDefaults() {
    _groups.clear();
    _knowsDefaults = _item.defaults.has_value();
    if (!_knowsDefaults) return;
    for (std::size_t i = 0; i < _item.defaults->size(); i += 2) {
        _groups.emplace(units::group(static_cast<units::tUnit>((*_item.defaults)[i])), i / 2);
    }
}

// For a group that this object does not know it looks again: others may have added to the list.
bool PlainObject::defaults(units::tUnit unit, metadata::tValue kind) {
    if (unit == 0 || kind == 0) return false;
    if (_groups.count(units::group(unit)) == 0) {
        loadDefaults();
        if (!_knowsDefaults) _item.defaults.emplace();
        _knowsDefaults = true;
    }
    const std::size_t place = _groups.emplace(units::group(unit), _groups.size()).first->second;
    if (_item.defaults->size() < 2 * place + 2) _item.defaults->resize(2 * place + 2);
    (*_item.defaults)[2 * place] = static_cast<unsigned int>(unit);
    (*_item.defaults)[2 * place + 1] = kind;
    return true;
}

units::tUnitGroup PlainObject::group(unsigned int index) {
    if (index >= _groups.size()) return units::kNoGroup;
    return static_cast<units::tUnitGroup>(std::next(_groups.begin(), index)->first);
}

unsigned int PlainObject::ownDefault(units::tUnitGroup group, unsigned int which) const {
    const auto place = _groups.find(group);
    if (group == 0 || place == _groups.end() || !_item.defaults) return 0;
    const std::size_t at = 2 * place->second + which;
    return at < _item.defaults->size() ? (*_item.defaults)[at] : 0;
}

unsigned int PlainObject::defaultOf(units::tUnitGroup group, unsigned int which) {
    const unsigned int own = ownDefault(group, which);
    if (own != 0 || !_parent || _parent->dead || _parent->kind != PlainItem::kTable) return own;
    return PlainObject(_tree, *_parent, kTyped).ownDefault(group, which);
}

unsigned int PlainObject::stride() const {
    using namespace metadata;
    switch (_valuetype) {
        case kBinary:
        case kBool:
        case kInt8:
        case kUInt8:
        case kStruct:
            return 1;
        case kInt16:
        case kUInt16:
            return 2;
        case kInt64:
        case kUInt64:
            return 8;
        default:
            return _valuetype >= kDouble ? 8 : 4;
    }
}

void PlainObject::put(std::string value) {
    _size = static_cast<unsigned int>(value.size());
    _item.value = std::move(value);
}

bool PlainObject::uri(const std::wstring& uri) {
    if (uri.empty()) {
        off(PlainItem::kExternal);
    } else {
        on(PlainItem::kExternal);
    }
    put(uri.empty() ? std::string() : bytesOf(uri));
    _uri = uri;
    _external = !uri.empty();
    return true;
}

bool PlainObject::schema(const std::wstring& uri) {
    if (_valuetype != metadata::kStruct) return false;
    _item.base = _base = uri;
    return true;
}

bool PlainObject::reset(unsigned int count) {
    if (_external) return false;
    put(std::string(std::size_t{count} * stride(), '\0'));
    return true;
}

// Whether an element lies inside is judged by the length that this object knows; of what lies before it, as much is
// kept as both the object and the store have.
bool PlainObject::set(const std::string& data, unsigned int start, unsigned int count) {
    if (count == 0 || _external) return false;
    const std::size_t from = std::size_t{start} * stride();
    const std::size_t length = std::size_t{count} * stride();
    if (_size < stride()) {
        std::string value(from, '\0');
        if (start != 0)
            value.replace(0, std::min<std::size_t>({_item.value.size(), _size, from}), _item.value, 0, _size);
        value.resize(from);
        put(value + data.substr(from, length));
    } else if (from + length <= _size / stride() * stride() && from + length <= _item.value.size()) {
        _item.value.replace(from, length, data, 0, length);
    } else {
        std::string value = _item.value.substr(0, _size);
        value.resize(from + length);
        put(value.replace(from, length, data, 0, length));
    }
    show();
    return true;
}

std::optional<std::string> PlainObject::get(unsigned int start, unsigned int count) {
    if (count == 0 || _external || start + count > _size / stride()) return std::nullopt;
    const std::size_t from = std::size_t{start} * stride();
    const std::size_t length = std::size_t{count} * stride();
    if (from + length > _item.value.size()) return std::nullopt;
    return _item.value.substr(from, length);
}

bool PlainObject::write(const std::vector<std::wstring>& texts) {
    if (kind() != kPrimitive || _valuetype < metadata::kUUID || _valuetype > metadata::kVersion) return false;
    std::string packed;
    for (const std::wstring& text : texts) packed += bytesOf(text);
    if (texts.empty()) {
        reset(0);
    } else {
        set(packed, 0, static_cast<unsigned int>(packed.size() / sizeof(wchar_t)));
    }
    return true;
}

void PlainObject::show() {
    for (PlainItem* at = &_item; at && !at->dead && at->kind != PlainItem::kRoot; at = at->parent) {
        const bool hidden = (at->flags & PlainItem::kHidden) != 0;
        if (!hidden && at != &_item) return;
        at->flags = static_cast<unsigned char>(at->flags & ~PlainItem::kHidden);
    }
}

}  // namespace lumivard::platform::model
