#include "metadata/Item.h"

#include <utility>

#include "metadata/Ascent.h"
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

void Item::open(IDataStore* store, const Entity& record, std::wstring tag) {
    _store = store;
    _offset = record.offset();
    _parent = record.parent();
    _locale = record.locale();
    _tag = std::move(tag);
}

void Item::release() noexcept {
    try {
        Entity(_store, _offset).unref();
    } catch (...) {
        // As above: the count stays one too high, which blocks a removal and loses nothing.
    }
}

void Item::path(std::wstring& out) const {
    std::vector<std::wstring> owners;
    Ascent ascent;
    unsigned int next = Entity(_store, _offset).parent();
    while (Record::peek(_store, next) != Record::kRoot && ascent.step(next)) {
        const Entity owner(_store, next);
        owners.push_back(owner.name());
        next = owner.parent();
    }
    out.clear();
    for (auto owner = owners.rbegin(); owner != owners.rend(); ++owner) out.append(*owner).append(1, L'.');
    out.append(_tag);
}

unsigned char Item::flags() const {
    return Entity(_store, _offset).flags();
}

void Item::on(unsigned char bits) {
    Entity record(_store, _offset);
    if (!record.whole()) return;
    record.flags(static_cast<unsigned char>(record.flags() | bits));
    record.update(true);
}

void Item::off(unsigned char bits) {
    Entity record(_store, _offset);
    if (!record.whole()) return;
    record.flags(static_cast<unsigned char>(record.flags() & ~bits));
    record.update(true);
}

void Item::show() {
    Ascent ascent;
    unsigned int next = _offset;
    while (next != BADOFF && ascent.step(next)) {
        Entity record(_store, next);
        if (record.parent() == BADOFF) return;
        const bool hidden = (record.flags() & Record::kHidden) != 0;
        if (!hidden && next != _offset) return;
        if (hidden) {
            record.flags(static_cast<unsigned char>(record.flags() & ~Record::kHidden));
            record.update(true);
        }
        next = record.parent();
    }
}

unsigned int Item::locales() {
    if (_locale == BADOFF) return 0;
    if (_index.empty()) setupLocales();
    return static_cast<unsigned int>(_index.size());
}

unsigned int Item::localize(const wchar_t* name, const wchar_t* locale) {
    if (!locale) return kNoLocale;
    if (_index.empty() && _locale != BADOFF) setupLocales();
    const unsigned int* known = _index.find(locale);
    if (!known) {
        if (!name) return kNoLocale;
        auto entry = std::make_unique<tName>();
        entry->locale = locale;
        entry->name = name;
        const auto index = static_cast<unsigned int>(_names.size());
        makeRoom(_names);
        _index.insert(entry->locale.c_str(), index);
        _names.push_back(std::move(entry));
        _dirty = true;
        return index;
    }
    const unsigned int index = *known;
    const bool there = index < _names.size();
    if (name) {
        if (there) _names[index]->name = name;
    } else {
        makeRoom(_removed);
        _index.erase(locale);  // while the text that its key points to is there
        if (there) remove(index, locale);
    }
    _dirty = true;
    return index;
}

unsigned int Item::localize(const wchar_t* locale) {
    if (!locale || _locale == BADOFF) return kNoLocale;
    if (_index.empty()) setupLocales();
    const unsigned int* index = _index.find(locale);
    return index ? *index : kNoLocale;
}

void Item::locale(unsigned int index, std::wstring& name, std::wstring& locale) {
    name.clear();
    locale.clear();
    if (_locale == BADOFF) return;
    if (_index.empty()) setupLocales();
    if (index >= _names.size()) return;
    name = _names[index]->name;
    locale = _names[index]->locale;
}

void Item::save() {
    if (!std::exchange(_dirty, false) || _names.empty()) return;
    saveLocales();
}

unsigned int Item::duplicate(IDataStore* target) {
    if (Record::peek(_store, _locale) != Record::kLocale) return BADOFF;
    return Record::Locale(_store, _locale).clone(target);
}

void Item::cleanup() {
    if (_locale == BADOFF) return;
    // A damaged record may name one of another kind, which is not its own.
    if (Record::peek(_store, _locale) == Record::kLocale) _store->erase(_locale);
    _index.clear();
    _names.clear();
    _removed.clear();
    _locale = BADOFF;
}

void Item::remove(unsigned int index, const wchar_t* locale) {
    // Behind an earlier removal the index names the wrong entry, to whose text another key may still point.
    if (_names[index]->locale != locale) _removed.push_back(std::move(_names[index]));
    _names.erase(_names.begin() + index);
}

void Item::setupLocales() {
    const std::wstring payload = Record::Locale(_store, _locale).payload();
    TextMap<unsigned int> index;
    std::vector<std::unique_ptr<tName>> names;
    std::unique_ptr<tName> pair;
    std::size_t start = 0;
    for (std::size_t end = payload.find(L'\0'); end != std::wstring::npos; end = payload.find(L'\0', start)) {
        std::wstring text = payload.substr(start, end - start);
        start = end + 1;
        if (!pair) {
            pair = std::make_unique<tName>();
            pair->locale = std::move(text);
            continue;
        }
        pair->name = std::move(text);
        names.push_back(std::move(pair));
        index.insert(names.back()->locale.c_str(), static_cast<unsigned int>(names.size() - 1));
    }
    _index = std::move(index);
    _names = std::move(names);
    _removed.clear();
}

void Item::saveLocales() {
    std::wstring payload;
    for (const auto& entry : _names) {
        payload.append(entry->locale).append(1, L'\0');
        payload.append(entry->name).append(1, L'\0');
    }
    const auto* bytes = reinterpret_cast<const char*>(payload.data());
    const std::uint64_t length = payload.size() * sizeof(wchar_t);
    if (Record::peek(_store, _locale) == Record::kLocale) {
        Record::Locale(_store, _locale).payload(length, bytes);
        return;
    }
    Entity owner(_store, _offset);
    if (!owner.whole()) return;
    Record::Locale record(_store);
    record.payload(length, bytes);
    owner.locale(record.offset());
    owner.update(true);
}

}  // namespace lumivard::platform::data::Metadata
