#include "tools/items/ItemJson.h"

#include <cstring>
#include <iostream>
#include <sstream>

#include "tools/base/Kinds.h"
#include "tools/base/Location.h"
#include "tools/base/Units.h"
#include "tools/base/Values.h"
#include "tools/items/Items.h"

namespace lvp::tool {

using namespace lumivard::platform::data;

namespace {

void writeValues(JsonWriter& json, const IVisitor::tPrimitive& item) {
    const std::vector<char> bytes = bytesOf(item);
    json.key("values").beginArray();
    if (formOf(item.valuetype) == tForm::kReals && item.stride == sizeof(double)) {
        for (std::size_t i = 0; i < item.dimension && !bytes.empty(); ++i) {
            double number;
            std::memcpy(&number, bytes.data() + i * sizeof number, sizeof number);
            json.value(number);
        }
    } else if (item.valuetype == metadata::kScalar) {
        for (std::size_t i = 0; i < item.dimension && !bytes.empty(); ++i) {
            float number;
            std::memcpy(&number, bytes.data() + i * sizeof number, sizeof number);
            json.value(number);
        }
    } else {
        const tForm form = formOf(item.valuetype);
        for (const std::string& value : valuesOf(item.valuetype, bytes)) {
            if (form == tForm::kTexts || form == tForm::kBytes) {
                json.value(value);
            } else {
                json.literal(value);
            }
        }
    }
    json.endArray();
}

void writeText(JsonWriter& json, const char* key, std::wstring_view text) {
    if (!text.empty()) json.key(key).value(utf8(text));
}

}  // namespace

bool ItemJson::passesOver(unsigned char flags) const {
    return (flags & kHidden) && !_extent.hidden && !(_extent.byPath && _levels == 0);
}

void ItemJson::begin(std::wstring_view name, const char* kind, unsigned char flags) {
    finish();
    _json.beginObject();
    _json.key("name").value(utf8(name));
    _json.key("kind").value(kind);
    if ((flags & (kOptional | kInherited | kHidden)) == 0) return;
    _json.key("flags").beginArray();
    if (flags & kOptional) _json.value("optional");
    if (flags & kInherited) _json.value("inherited");
    if (flags & kHidden) _json.value("hidden");
    _json.endArray();
}

void ItemJson::primitive(const tPrimitive& item) {
    finish();
    if (passesOver(item.flags)) return;
    begin(item.name, nameOf(item.valuetype), item.flags);
    if (item.units != units::kNoUnit) _json.key("unit").value(unitName(item.units));
    writeText(_json, "type", item.schema);
    writeText(_json, "locale", item.valuelocale);
    if (item.flags & kExternal) {
        _json.key("uri").value(utf8(item.uri));
    } else {
        writeValues(_json, item);
    }
    _open = kPrimitive;
}

bool ItemJson::table(const tTable& item) {
    finish();
    if (passesOver(item.flags)) return false;
    begin(item.name, "table", item.flags);
    writeText(_json, "schemas", item.base);
    return enter();
}

bool ItemJson::container(const tContainer& item) {
    finish();
    if (passesOver(item.flags)) return false;
    begin(item.name, nameOf(item.type), item.flags);
    writeText(_json, "schemas", item.base);
    writeText(_json, "to", item.target);
    return enter();
}

bool ItemJson::enter() {
    if (_levels + 1 >= _extent.levels) {
        _json.endObject();
        return false;
    }
    ++_levels;
    _open = kSet;
    return true;
}

void ItemJson::text(std::wstring_view locale, std::wstring_view text) {
    if (_open == kNothing) return;
    list(kTexts, "texts");
    _json.beginObject();
    _json.key("locale").value(utf8(locale));
    _json.key("text").value(utf8(text));
    _json.endObject();
}

void ItemJson::unitDefault(units::tUnit units, metadata::tValue valuetype) {
    if (_open == kNothing) return;
    list(kDefaults, "defaults");
    _json.beginObject();
    _json.key("unit").value(unitName(units));
    _json.key("kind").value(nameOf(valuetype));
    _json.endObject();
}

void ItemJson::list(tList list, const char* name) {
    if (_list == list) return;
    if (_list != kNone) _json.endArray();
    _json.key(name).beginArray();
    _list = list;
}

void ItemJson::finish() {
    if (_list != kNone) _json.endArray();
    _list = kNone;
    if (_open == kPrimitive) _json.endObject();
    if (_open == kSet) _json.key("items").beginArray();
    _open = kNothing;
}

void ItemJson::leave() {
    finish();
    --_levels;
    _json.endArray();
    _json.endObject();
}

void printItems(IDataStore& store, const std::string& storeName, const std::string& path, ItemJson::tExtent extent) {
    std::ostringstream out;  // a whole object or none
    JsonWriter json(out);
    json.beginObject();
    json.key("store").value(shown(storeName));
    json.key("path").value(path);
    json.key("items").beginArray();
    extent.byPath = !path.empty();
    ItemJson items(json, extent);
    visit(store, path, items);
    items.finish();
    json.endArray();
    json.endObject();
    std::cout << out.str() << '\n';
}

}  // namespace lvp::tool
