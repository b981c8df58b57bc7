#include "tools/diff/JsonReport.h"

namespace lvp::tool {

void JsonReport::tell(const tDifference& difference) {
    _json.beginObject();
    _json.key("what").value(nameOf(difference.what));
    _json.key("path").value(difference.path);
    if (difference.what == tWhat::kMoved) _json.key("from").value(difference.from);
    _json.key("kind").value(difference.kind);
    if (difference.what == tWhat::kChanged) {
        writeChange(difference);
    } else if (difference.isSet) {
        _json.key("items").value(difference.held);
    }
    if (!difference.unit.empty()) _json.key("unit").value(difference.unit);
    const bool change = difference.what == tWhat::kChanged;
    if (change || difference.a.sort != tSide::tSort::kNothing) write("a", difference.a);
    if (change || difference.b.sort != tSide::tSort::kNothing) write("b", difference.b);
    _json.endObject();
}

void JsonReport::writeChange(const tDifference& difference) {
    _json.key("aspect").value(nameOf(difference.aspect));
    if (difference.aspect == tAspect::kText) _json.key("locale").value(difference.key);
    if (difference.aspect == tAspect::kDefault) _json.key("group").value(difference.key);
    if (difference.aspect == tAspect::kValue || difference.aspect == tAspect::kOrder) {
        _json.key("first").value(difference.first);
        _json.key("differing").value(difference.differing);
    }
}

void JsonReport::write(const char* key, const tSide& side) {
    if (side.sort == tSide::tSort::kValues && !side.whole) {
        _json.key(std::string(key) + "Start").value(side.start);
        _json.key(std::string(key) + "Count").value(side.count);
    }
    _json.key(key);
    if (side.sort == tSide::tSort::kNothing) return _json.literal("null");
    if (side.sort != tSide::tSort::kValues) return _json.value(side.values[0]);
    _json.beginArray();
    for (const std::string& value : side.values) {
        const bool text = side.form == tForm::kTexts || side.form == tForm::kBytes;
        if (text || value.find('n') != std::string::npos) {  // "nan", "inf"
            _json.value(value);
        } else {
            _json.literal(value);
        }
    }
    _json.endArray();
}

}  // namespace lvp::tool
