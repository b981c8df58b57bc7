#pragma once

#include <map>
#include <memory>
#include <string>

#include "tests/model/PlainItem.h"

namespace lumivard::platform::model {

/// The localized texts as one object knows them: as they were when it first looked, with what was set through it. They
/// are kept when it goes. After a removal it goes by stale places, as `IProperty::describe` tells.
class PlainTexts {
public:
    explicit PlainTexts(PlainItem& item) : _item(item), _stored(item.texts) {}

    unsigned int locales() {
        if (!_stored) return 0;
        load();
        return static_cast<unsigned int>(_places.size());
    }

    std::wstring locale(unsigned int index) {
        if (!_stored) return {};
        load();
        return index < _texts.size() ? _texts[index].first : std::wstring();
    }

    std::wstring localize(const std::wstring& locale) {
        if (!_stored || locale.empty()) return {};
        load();
        const auto place = _places.find(locale);
        return place == _places.end() || place->second >= _texts.size() ? std::wstring() : _texts[place->second].second;
    }

    void describe(const std::wstring& locale, const std::wstring& text) {
        if (locale.empty()) return;
        if (_stored) load();
        const auto place = _places.find(locale);
        if (place == _places.end()) {
            if (text.empty()) return;
            _places[locale] = _texts.size();
            _texts.emplace_back(locale, text);
        } else if (!text.empty()) {
            if (place->second < _texts.size()) _texts[place->second].second = text;
        } else {
            const std::size_t index = place->second;
            _places.erase(place);
            if (index < _texts.size()) _texts.erase(_texts.begin() + static_cast<std::ptrdiff_t>(index));
        }
        _changed = true;
    }

    /// What the object does when it goes.
    void keep() {
        if (!_changed || _texts.empty()) return;
        if (_stored) {
            *_stored = _texts;
        } else {
            _item.texts = std::make_shared<tTexts>(_texts);
        }
    }

    /// What the object takes for the item's texts in the store; null for none.
    const std::shared_ptr<tTexts>& stored() const { return _stored; }

private:
    void load() {
        if (!_places.empty()) return;
        _texts = *_stored;
        for (std::size_t i = 0; i < _texts.size(); ++i) _places.emplace(_texts[i].first, i);
    }

    PlainItem& _item;
    std::shared_ptr<tTexts> _stored;
    std::map<std::wstring, std::size_t> _places;
    tTexts _texts;
    bool _changed = false;
};

}  // namespace lumivard::platform::model
