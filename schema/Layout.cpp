#include "schema/Layout.h"

#include <cstdint>
#include <limits>

#include "metadata/Set.h"
#include "record/Entity.h"

namespace lumivard::platform::data::Schema {

namespace {

bool fits(unsigned int sum, unsigned int more) {
    return std::uint64_t{sum} + more <= std::numeric_limits<unsigned int>::max();
}

unsigned int itemsOf(tTable table) {
    const Record::Entity record(table.store, table.offset, Record::kInPlace);
    return static_cast<unsigned int>(Metadata::Set::children(table.store, record.children()).size());
}

}  // namespace

Layout::Layout(std::wstring name, tTable table) : _name(std::move(name)), _table(table), _items(itemsOf(table)) {}

Layout::~Layout() {
    if (!_held) return;
    try {
        Record::Entity(_table.store, _table.offset, Record::kInPlace).unref();
    } catch (...) {
        // A destructor has nobody to tell.
    }
}

const metadata::IStructLayout::tField* Layout::get(WideString name) {
    const auto* field = _byName.find(name);
    return field ? *field : nullptr;
}

std::vector<unsigned int> Layout::entries() const {
    return Metadata::Set::entries(_table.store,
                                  Record::Entity(_table.store, _table.offset, Record::kInPlace).children(), _items);
}

void Layout::hold() {
    Record::Entity(_table.store, _table.offset, Record::kInPlace).ref();
    _held = true;
}

bool Layout::add(std::wstring name, metadata::tValue type, unsigned int dim, unsigned int size) {
    if (!fits(_stride, size) || !fits(_values, dim) || !fits(fields(), 1)) return false;
    Field& field = _fields.emplace_back();
    field.text = std::move(name);
    field.name = field.text.c_str();
    field.type = type;
    field.dim = dim;
    field.offset = _stride;
    field.size = size;
    _byName.insert(field.name, &field);
    _stride += size;
    _values += dim;
    return true;
}

}  // namespace lumivard::platform::data::Schema
