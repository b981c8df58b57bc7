#include "schema/LayoutBuilder.h"

#include <algorithm>

#include "design/Stride.h"
#include "metadata/Set.h"
#include "record/Primitive.h"
#include "record/Table.h"
#include "schema/SchemaLocatorImpl.h"

namespace lumivard::platform::data::Schema {

using core::storage::datastore::IDataStore;

void LayoutBuilder::tMember::take(Layout* known) {
    ++found;
    layout = known;
}

Layout* LayoutBuilder::build(const std::wstring& name) {
    if (!begin(name)) return nullptr;
    for (;;) {
        tFrame& frame = _frames.back();
        if (_over || (!frame.member && frame.levels.empty())) {
            Layout* built = end();
            if (_frames.empty()) return built;
        } else if (frame.member) {
            findNext(frame);
        } else {
            takeNext(frame);
        }
    }
}

bool LayoutBuilder::begin(const std::wstring& name) {
    const tTable table = _search.find(name);
    if (!table) return false;
    const std::size_t place = _frames.size();
    const bool again = !_begun.insert(name).second;
    _open.emplace(name, place);
    tFrame& frame = _frames.emplace_back();
    frame.layout = std::make_unique<Layout>(name, table);
    frame.cutBy = place;
    frame.again = again;
    enter(frame, Record::Table(table.store, table.offset, Record::kInPlace), L"");
    return true;
}

Layout* LayoutBuilder::end() {
    tFrame frame = std::move(_frames.back());
    _frames.pop_back();
    _open.erase(frame.layout->name());
    if (_frames.empty()) return _locator.keep(std::move(frame.layout));
    tFrame& outer = _frames.back();
    outer.cutBy = std::min(outer.cutBy, frame.cutBy);
    if (!_over && frame.cutBy == _frames.size()) {
        outer.member->take(_locator.keep(std::move(frame.layout)));
    } else {
        outer.member->cut = std::move(frame.layout);
        outer.member->take(outer.member->cut.get());
    }
    return nullptr;
}

void LayoutBuilder::enter(tFrame& frame, const Record::Table& table, const std::wstring& label) {
    // A damaged store has a table below itself, or thousands that share a list.
    if (!frame.entered.insert(table.offset()).second) return;
    const unsigned int list = table.children();
    if (list == IDataStore::BADOFF || !frame.entered.insert(list).second) return;
    frame.levels.push_back({Metadata::Set::entries(table.store(), list), 0, frame.prefix.size()});
    frame.prefix += label;
    if (frame.again) spend(kItem * (1 + frame.levels.back().members.size()));
}

void LayoutBuilder::takeNext(tFrame& frame) {
    tLevel& level = frame.levels.back();
    if (level.next == level.members.size()) {
        frame.prefix.resize(level.prefix);
        frame.levels.pop_back();
        return;
    }
    IDataStore* store = frame.layout->store();
    const unsigned int offset = level.members[level.next++];
    if (frame.again && offset != IDataStore::BADOFF) spend(store->size(offset));
    switch (Record::peek(store, offset)) {
        case Record::kTable: {
            const Record::Table table(store, offset, Record::kInPlace);
            enter(frame, table, table.text(Record::Table::kName) + L'.');
            break;
        }
        case Record::kPrimitive:
            takePrimitive(frame, Record::Primitive(store, offset, Record::kInPlace));
            break;
        default:
            break;
    }
}

void LayoutBuilder::takePrimitive(tFrame& frame, const Record::Primitive& primitive) {
    const auto kind = static_cast<metadata::tValue>(primitive.valuetype());
    const bool external = (primitive.flags() & Record::kExternal) != 0;
    const auto bytes = external ? 0 : static_cast<unsigned int>(primitive.section(Record::Primitive::kValue).size());
    std::wstring name = frame.prefix + primitive.text(Record::Primitive::kName);
    spend(name.size() * sizeof(wchar_t));
    if (kind != metadata::kStruct) {
        const unsigned int dim = Design::dimension(kind, bytes);
        add(*frame.layout, std::move(name), {nullptr, kind, dim, 0, dim == 0 ? 0 : bytes});
        return;
    }
    const std::wstring base = primitive.text(Record::Primitive::kBase);
    if (base.empty()) return;
    tMember member;
    member.name = std::move(name);
    member.size = bytes;
    SchemaLocatorImpl::tokenize(base.c_str(), member.uris);
    frame.member = std::move(member);
}

void LayoutBuilder::findNext(tFrame& frame) {
    tMember& member = *frame.member;
    if (member.next == member.uris.size()) {
        expand(frame, member);
        frame.member.reset();
        return;
    }
    const std::wstring uri = std::move(member.uris[member.next++]);
    if (Layout* known = _locator.known(uri.c_str())) {
        member.take(known);
    } else if (const auto met = _open.find(uri); met != _open.end()) {
        frame.cutBy = std::min(frame.cutBy, met->second);
    } else if (!_unknown.contains(uri) && !begin(uri)) {
        _unknown.insert(uri);
    }
}

void LayoutBuilder::expand(tFrame& frame, const tMember& member) {
    if (member.found != 1 || member.layout->stride() == 0) return;
    Layout& fields = *member.layout;
    const unsigned int count = member.size / fields.stride();
    for (unsigned int i = 0; i < count; ++i) {
        const std::wstring place = count == 1 ? L"." : L"[" + std::to_wstring(i) + L"].";
        for (unsigned int j = 0; j < fields.fields(); ++j) {
            const auto& field = *fields.get(j);
            add(*frame.layout, member.name + place + field.name, field);
            if (_over) return;
        }
    }
}

void LayoutBuilder::add(Layout& layout, std::wstring name, const metadata::IStructLayout::tField& field) {
    constexpr std::uint64_t kField = sizeof(field) + 3 * sizeof(std::wstring);
    spend(kField + name.size() * sizeof(wchar_t));
    if (_over || layout.add(std::move(name), field.type, field.dim, field.size)) return;
    _over = true;
}

void LayoutBuilder::spend(std::uint64_t bytes) {
    _spent += bytes;
    if (_spent > kAllowance) _over = true;
}

}  // namespace lumivard::platform::data::Schema
