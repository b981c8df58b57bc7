#include "schema/Layout.h"

#include <cstdint>
#include <limits>

namespace lumivard::platform::data::Schema {

namespace {

bool fits(unsigned int sum, unsigned int more) {
    return std::uint64_t{sum} + more <= std::numeric_limits<unsigned int>::max();
}

}  // namespace

const metadata::IStructLayout::tField* Layout::get(WideString name) {
    const auto* field = _byName.find(name);
    return field ? *field : nullptr;
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
