#include "design/Primitive.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

#include "design/Stride.h"
#include "record/Primitive.h"

namespace lumivard::platform::data::Design {

namespace {

const char* bytesOf(const wchar_t* text) {
    return reinterpret_cast<const char*>(text);
}

}  // namespace

Primitive::Primitive(IDataStore* store, unsigned int offset) {
    Record::Primitive record(store, offset, Record::kInPlace);
    open(store, record);
}

Primitive::Primitive(IDataStore* store, Record::Primitive& record) {
    open(store, record);
}

void Primitive::open(IDataStore* store, Record::Primitive& record) {
    const auto parts = record.parts();
    Item::open(store, record, Record::textOf(parts.name));
    _valuetype = static_cast<metadata::tValue>(record.valuetype());
    _valuesize = static_cast<unsigned int>(parts.value.size());
    _external = (record.flags() & Record::kExternal) != 0;
    if (!parts.base.empty()) _base = Record::wide(parts.base);
    if (_external) _uri = Record::wide(parts.value);
    if (!parts.valueLocale.empty()) _valuelocale = Record::wide(parts.valueLocale);
    record.ref();
}

Primitive::Primitive(IDataStore* store, metadata::tValue type, const wchar_t* name) : _valuetype(type) {
    Record::Primitive record(store, type, name);
    Item::open(store, record);
    record.ref();
}

Primitive::~Primitive() {
    release();
}

bool Primitive::base(const wchar_t* name) {
    if (_valuetype != metadata::kStruct) return false;
    Record::Primitive record(_store, _offset, Record::kInPlace);
    if (!record.arrays(Record::Primitive::kBase, bytesOf(name), name ? Record::textSection(name) : 0)) return false;
    _base = name ? name : L"";
    return true;
}

bool Primitive::uri(const wchar_t* uri) {
    Record::Primitive record(_store, _offset, Record::kInPlace);
    const int others = record.flags() & ~Record::kExternal;
    record.flags(static_cast<unsigned char>(uri ? others | Record::kExternal : others));
    if (!put(record, bytesOf(uri), uri ? Record::textSection(uri) : 0)) return false;
    _uri = uri ? uri : L"";
    _external = uri != nullptr;
    return true;
}

units::tUnit Primitive::units() const {
    return static_cast<units::tUnit>(Record::Primitive(_store, _offset, Record::kInPlace).units());
}

void Primitive::units(units::tUnit unit) {
    Record::Primitive record(_store, _offset, Record::kInPlace);
    if (record.whole()) record.writeUnits(static_cast<unsigned int>(unit));
}

unsigned int Primitive::stride(metadata::tValue kind) {
    return Design::stride(kind);
}

unsigned int Primitive::dimension() const {
    return _external ? 0 : Design::dimension(_valuetype, _valuesize);
}

void Primitive::valuelocale(const wchar_t* locale) {
    Record::Primitive record(_store, _offset, Record::kInPlace);
    const std::uint64_t length = locale ? Record::textSection(locale) : 0;
    if (record.arrays(Record::Primitive::kValueLocale, bytesOf(locale), length)) _valuelocale = locale ? locale : L"";
}

bool Primitive::reset(unsigned int count) {
    const unsigned int size = stride(_valuetype);
    if (_external) return false;
    Record::Primitive record(_store, _offset, Record::kInPlace);
    return put(record, nullptr, std::uint64_t{count} * size);
}

bool Primitive::set(const char* data, unsigned int start, unsigned int count) {
    const unsigned int size = stride(_valuetype);
    if (count == 0 || _external || size == 0) return false;
    const std::uint64_t startBytes = std::uint64_t{start} * size;
    const std::uint64_t countBytes = std::uint64_t{count} * size;
    const std::uint64_t end = startBytes + countBytes;

    Record::Primitive record(_store, _offset, Record::kInPlace);
    if (_valuesize < size) {
        if (start == 0) return put(record, data, countBytes);
        return put(record, startBytes, data + startBytes, countBytes);
    }
    if (end <= std::uint64_t{_valuesize / size} * size && record.writeValue(startBytes, data, countBytes)) return true;
    return put(record, startBytes, data, countBytes);
}

unsigned int Primitive::get(char* buffer, unsigned int start, unsigned int count) const {
    const unsigned int size = stride(_valuetype);
    if (count == 0 || _valuesize == 0 || _external || size == 0) return 0;
    if (std::uint64_t{start} + count > _valuesize / size) return 0;
    const Record::Primitive record(_store, _offset, Record::kInPlace);
    const auto value = record.value();
    const std::uint64_t startBytes = std::uint64_t{start} * size;
    const std::uint64_t countBytes = std::uint64_t{count} * size;
    if (startBytes + countBytes > value.size()) return 0;
    std::memcpy(buffer, value.data() + startBytes, countBytes);
    return count;
}

bool Primitive::put(Record::Primitive& record, const char* data, std::uint64_t length) {
    if (!record.arrays(Record::Primitive::kValue, data, length)) return false;
    _valuesize = static_cast<unsigned int>(length);
    return true;
}

bool Primitive::put(Record::Primitive& record, std::uint64_t start, const char* data, std::uint64_t length) {
    if (start + length > std::numeric_limits<unsigned int>::max()) return false;
    std::vector<char> value(start + length);
    const auto present = record.value();
    const std::size_t kept = std::min<std::size_t>({present.size(), _valuesize, value.size()});
    std::copy_n(present.begin(), kept, value.begin());
    std::memcpy(value.data() + start, data, length);
    return put(record, value.data(), value.size());
}

}  // namespace lumivard::platform::data::Design
