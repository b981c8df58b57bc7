#include "xml/WholePrimitive.h"

#include <cstdint>
#include <cstring>
#include <limits>

#include "record/Ledger.h"
#include "record/Primitive.h"

namespace lumivard::platform::data {

namespace {

/// Puts sections behind the fixed part of a record that has room for them.
class Sections {
public:
    explicit Sections(char* record) : _record(record), _end(record + Record::Primitive::kFixed) {}

    void add(unsigned int field, const void* bytes, std::size_t size) {
        const auto length = static_cast<unsigned int>(size);
        std::memcpy(_record + field, &length, sizeof(length));
        if (size != 0) std::memcpy(_end, bytes, size);
        _end += size;
    }

private:
    char* _record;
    char* _end;
};

void put(char* record, unsigned int field, unsigned int value) {
    std::memcpy(record + field, &value, sizeof(value));
}

/// The bytes of a text with its terminator.
std::size_t sizeOf(const std::wstring& text) {
    return (text.size() + 1) * sizeof(wchar_t);
}

}  // namespace

unsigned int create(IDataStore* store, const tWholePrimitive& primitive, std::vector<char>& scratch) {
    using Record::Primitive;
    const std::size_t locale = primitive.locale ? sizeOf(*primitive.locale) : 0;
    const std::size_t name = sizeOf(primitive.name);
    const std::uint64_t size = std::uint64_t{Primitive::kFixed} + locale + name + primitive.value.size();
    if (size > std::numeric_limits<unsigned int>::max()) return IDataStore::BADOFF;

    scratch.resize(size);
    char* const record = scratch.data();
    std::memset(record, 0, Primitive::kFixed);
    record[0] = static_cast<char>(Record::kPrimitive);
    put(record, Primitive::kParent, primitive.parent);
    put(record, Primitive::kLocale, IDataStore::BADOFF);
    put(record, Primitive::kUnits, static_cast<unsigned int>(primitive.unit));
    put(record, Primitive::kValueType, static_cast<unsigned int>(primitive.kind));
    Sections sections(record);
    sections.add(Primitive::kValueLocale, primitive.locale ? primitive.locale->c_str() : nullptr, locale);
    sections.add(Primitive::kName, primitive.name.c_str(), name);
    sections.add(Primitive::kValue, primitive.value.data(), primitive.value.size());
    const unsigned int offset = store->create(record, static_cast<unsigned int>(size));
    Record::Ledger::account(store);
    return offset;
}

}  // namespace lumivard::platform::data
