#include "metadata/Item.h"

#include <utility>

#include "metadata/Ascent.h"
#include "metadata/Set.h"
#include "record/Entity.h"
#include "record/Locale.h"

namespace lumivard::platform::data::Metadata {

using Record::Entity;

namespace {

/// Sees to it that one more entry can be added without fail.
template <class Entry>
void makeRoom(std::vector<Entry>& list) {
    if (list.size() == list.capacity()) list.reserve(2 * list.size() + 1);
}

}  // namespace

Item::~Item() {
    try {
        save();
    } catch (...) {
        // A destructor has nobody to tell: a store that refuses the names here loses them.
    }
}

void Item::open(IDataStore* store, const Entity& record) {
    open(store, record, record.nameBytes());
}

void Item::open(IDataStore* store, const Entity& record, std::string_view name) {
    _tag = Tag(name);
    _store = store;
    _offset = record.offset();
    _parent = record.parent();
    _locale = record.locale();
}

void Item::release() noexcept {
    try {
        Entity(_store, _offset, Record::kInPlace).unref();
    } catch (...) {
        // As above: the count stays one too high, which blocks a removal and loses nothing.
    }
}

void Item::comeTo(Set& owner) {
    owner.add(_offset);
    _parent = owner.offset();
}

void Item::path(std::wstring& out) const {
    std::vector<std::wstring> owners;
    Ascent ascent;
    unsigned int next = Entity(_store, _offset, Record::kInPlace).parent();
    while (Record::peek(_store, next) != Record::kRoot && ascent.step(next)) {
        const Entity owner(_store, next, Record::kInPlace);
        owners.push_back(owner.name());
        next = owner.parent();
    }
    out.clear();
    for (auto owner = owners.rbegin(); owner != owners.rend(); ++owner) out.append(*owner).append(1, L'.');
    out.append(_tag.view());
}

unsigned char Item::flags() const {
    return Entity(_store, _offset, Record::kInPlace).flags();
}

void Item::on(unsigned char bits) {
    Entity record(_store, _offset, Record::kInPlace);
    if (record.whole()) record.writeFlags(static_cast<unsigned char>(record.flags() | bits));
}

void Item::off(unsigned char bits) {
    Entity record(_store, _offset, Record::kInPlace);
    if (record.whole()) record.writeFlags(static_cast<unsigned char>(record.flags() & ~bits));
}

void Item::show() {
    Ascent ascent;
    unsigned int next = _offset;
    while (next != BADOFF && ascent.step(next)) {
        Entity record(_store, next, Record::kInPlace);
        const unsigned int owner = record.parent();
        if (owner == BADOFF) return;
        const bool hidden = (record.flags() & Record::kHidden) != 0;
        if (!hidden && next != _offset) return;
        if (hidden) record.writeFlags(static_cast<unsigned char>(record.flags() & ~Record::kHidden));
        next = owner;
    }
}

unsigned int Item::locales() {
    return _locale == BADOFF ? 0 : static_cast<unsigned int>(loaded().index.size());
}

unsigned int Item::localize(const wchar_t* name, const wchar_t* locale) {
    if (!locale) return kNoLocale;
    tLocales& locales = loaded();
    const unsigned int* known = locales.index.find(locale);
    if (!known) {
        if (!name) return kNoLocale;
        auto entry = std::make_unique<tName>();
        entry->locale = locale;
        entry->name = name;
        const auto index = static_cast<unsigned int>(locales.names.size());
        makeRoom(locales.names);
        locales.index.insert(entry->locale.c_str(), index);
        locales.names.push_back(std::move(entry));
        locales.dirty = true;
        return index;
    }
    const unsigned int index = *known;
    const bool there = index < locales.names.size();
    if (name) {
        if (there) locales.names[index]->name = name;
    } else {
        makeRoom(locales.removed);
        locales.index.erase(locale);  // while the text that its key points to is there
        if (there) remove(index, locale);
    }
    locales.dirty = true;
    return index;
}

unsigned int Item::localize(const wchar_t* locale) {
    if (!locale || _locale == BADOFF) return kNoLocale;
    const unsigned int* index = loaded().index.find(locale);
    return index ? *index : kNoLocale;
}

void Item::locale(unsigned int index, std::wstring& name, std::wstring& locale) {
    name.clear();
    locale.clear();
    if (_locale == BADOFF) return;
    const tLocales& locales = loaded();
    if (index >= locales.names.size()) return;
    name = locales.names[index]->name;
    locale = locales.names[index]->locale;
}

void Item::save() {
    if (!_locales || !std::exchange(_locales->dirty, false) || _locales->names.empty()) return;
    saveLocales();
}

unsigned int Item::duplicate(IDataStore* target) {
    if (Record::peek(_store, _locale) != Record::kLocale) return BADOFF;
    return Record::Locale(_store, _locale, Record::kInPlace).clone(target);
}

void Item::cleanup() {
    if (_locale == BADOFF) return;
    // A damaged record may name one of another kind, which is not its own.
    if (Record::peek(_store, _locale) == Record::kLocale) _store->erase(_locale);
    if (_locales) {
        _locales->index.clear();
        _locales->names.clear();
        _locales->removed.clear();
    }
    _locale = BADOFF;
}

void Item::remove(unsigned int index, const wchar_t* locale) {
    auto& names = _locales->names;
    // Behind an earlier removal the index names the wrong entry, to whose text another key may still point.
    if (names[index]->locale != locale) _locales->removed.push_back(std::move(names[index]));
    names.erase(names.begin() + index);
}

Item::tLocales& Item::loaded() {
    if (!_locales) _locales = std::make_unique<tLocales>();
    if (_locales->index.empty() && _locale != BADOFF) {
        const bool dirty = _locales->dirty;
        *_locales = read(_store, _locale);
        _locales->dirty = dirty;
    }
    return *_locales;
}

Item::tLocales Item::read(IDataStore* store, unsigned int offset) {
    const std::wstring payload = Record::Locale(store, offset, Record::kInPlace).payload();
    tLocales locales;
    Record::Locale::each(payload, [&locales](std::wstring_view locale, std::wstring_view text) {
        auto pair = std::make_unique<tName>();
        pair->locale = locale;
        pair->name = text;
        locales.names.push_back(std::move(pair));
        locales.index.insert(locales.names.back()->locale.c_str(), static_cast<unsigned int>(locales.names.size() - 1));
    });
    return locales;
}

void Item::saveLocales() {
    std::wstring payload;
    for (const auto& entry : _locales->names) {
        payload.append(entry->locale).append(1, L'\0');
        payload.append(entry->name).append(1, L'\0');
    }
    const auto* bytes = reinterpret_cast<const char*>(payload.data());
    const std::uint64_t length = payload.size() * sizeof(wchar_t);
    if (Record::peek(_store, _locale) == Record::kLocale) {
        Record::Locale(_store, _locale, Record::kInPlace).payload(length, bytes);
        return;
    }
    Entity owner(_store, _offset, Record::kInPlace);
    if (!owner.whole()) return;
    Record::Locale record(_store);
    record.payload(length, bytes);
    owner.writeLocale(record.offset());
}

}  // namespace lumivard::platform::data::Metadata
