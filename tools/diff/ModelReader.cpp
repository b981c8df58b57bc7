#include "tools/diff/ModelReader.h"

#include "lumivard/platform/data/units/tUnitGroup.h"
#include "tools/base/Kinds.h"
#include "tools/base/Units.h"
#include "tools/items/Items.h"

namespace lvp::tool {

namespace metadata = lumivard::platform::data::metadata;

ModelReader::ModelReader(TextPool& pool, Model& model, const tExtent& extent, bool wholeStore)
    : _pool(pool), _model(model), _extent(extent) {
    if (!wholeStore) return;
    Model::tItem root;
    _open.push_back(_model.add(root));
    _states.emplace_back();
    for (const Glob& glob : *_extent.ignored) _states.back().push_back(glob.begin());
}

void ModelReader::root(const tRoot& shown) {
    _model.nameRoot(_pool.add(shown.name));
    _last = 0;
}

void ModelReader::primitive(const tPrimitive& shown) {
    if (!takes(shown.name, shown.flags)) return;
    Model::tItem item;
    item.sort = Model::tSort::kPrimitive;
    item.type = shown.valuetype;
    item.flags = shown.flags;
    item.record = shown.offset;
    item.dimension = shown.dimension;
    item.stride = static_cast<unsigned char>(shown.stride);
    item.unit = shown.units;
    add(item, shown.name);
    note(tAspect::kLocale, shown.valuelocale);
    note(tAspect::kType, shown.schema);
    if (shown.flags & kExternal) note(tAspect::kUri, shown.uri);
}

bool ModelReader::table(const tTable& shown) {
    if (!takes(shown.name, shown.flags)) return false;
    Model::tItem item;
    item.sort = Model::tSort::kTable;
    item.flags = shown.flags;
    enter(item, shown.name);
    note(tAspect::kSchemas, shown.base);
    return true;
}

bool ModelReader::container(const tContainer& shown) {
    if (!takes(shown.name, shown.flags)) return false;
    Model::tItem item;
    item.sort = Model::tSort::kContainer;
    item.type = shown.type;
    item.flags = shown.flags;
    enter(item, shown.name);
    note(tAspect::kSchemas, shown.base);
    note(tAspect::kTarget, shown.target);
    return true;
}

void ModelReader::text(std::wstring_view locale, std::wstring_view text) {
    if (_last != Model::kNone) note(tAspect::kText, text, _pool.add(locale));
}

void ModelReader::unitDefault(tUnit units, metadata::tValue valuetype) {
    if (_last == Model::kNone) return;
    const std::string kind = unitName(units) + " " + nameOf(valuetype);
    const auto group = static_cast<std::uint32_t>(lumivard::platform::data::units::group(units));
    note(tAspect::kDefault, static_cast<const wchar_t*>(wide(kind)), group);
}

void ModelReader::leave() {
    _model.close(_open.back());
    _open.pop_back();
    _states.pop_back();
}

std::string ModelReader::where() const {
    return _open.empty() ? std::string() : _model.path(_open.back());
}

void ModelReader::finish() {
    if (!_open.empty()) leave();
}

/// Whether an item is to be compared. That at the top is what was asked for.
bool ModelReader::takes(std::wstring_view name, unsigned char flags) {
    _last = Model::kNone;
    if (_open.empty()) {
        _here.clear();
        const WideString as = wide(_extent.as);
        for (const Glob& glob : *_extent.ignored) {
            _here.push_back(glob.after(glob.begin(), static_cast<const wchar_t*>(as)));
        }
        return true;
    }
    return ((flags & kHidden) == 0 || _extent.hidden) && !isIgnored(name);
}

bool ModelReader::isIgnored(std::wstring_view name) {
    bool ignored = false;
    _here.clear();
    for (std::size_t i = 0; i < _extent.ignored->size(); ++i) {
        const Glob& glob = (*_extent.ignored)[i];
        _here.push_back(glob.after(_states.back()[i], name));
        ignored = ignored || glob.matches(_here.back());
    }
    return ignored;
}

void ModelReader::add(Model::tItem& item, std::wstring_view name) {
    item.name = _pool.add(name);
    item.parent = _open.empty() ? 0 : _open.back();
    _last = _model.add(item);
}

void ModelReader::enter(Model::tItem& item, std::wstring_view name) {
    add(item, name);
    _open.push_back(_last);
    for (std::size_t i = 0; i < _here.size(); ++i) _here[i] = (*_extent.ignored)[i].after(_here[i], L".");
    _states.push_back(_here);
}

void ModelReader::note(tAspect aspect, std::wstring_view text, std::uint32_t key) {
    // A text of no characters is none, but for a URI, which is there in place of a value.
    if (!text.empty() || aspect == tAspect::kUri) _model.add({_last, aspect, key, _pool.add(text)});
}

}  // namespace lvp::tool
