#include "tools/view/PageValues.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>

#include "tools/base/Values.h"
#include "tools/items/Items.h"
#include "tools/schemas/Layouts.h"

namespace lvp::tool {

using namespace lumivard::platform::data;
using metadata::IStructLayout;
using metadata::tValue;

namespace {

constexpr std::uint64_t kPortion = 65'536;  ///< elements that are read at once
constexpr unsigned int kMostFields = 200;   ///< of a struct that is shown as a table

void writeNumber(JsonWriter& json, std::integral auto number) {
    constexpr std::int64_t kExact = std::int64_t{1} << 53;
    if (std::cmp_less(number, -kExact) || std::cmp_greater(number, kExact)) {
        json.value(std::to_string(number));
    } else {
        json.value(number);
    }
}

void writeNumber(JsonWriter& json, std::floating_point auto number) {
    if (std::isnan(number)) {
        json.value("NaN");
    } else if (std::isinf(number)) {
        json.value(number < 0 ? "-Infinity" : "Infinity");
    } else {
        json.value(number);
    }
}

/// A byte that is a truth value, or says that it is none.
void writeTruth(JsonWriter& json, std::uint8_t byte) {
    if (byte > 1) return json.value(unsigned{byte});
    json.value(byte == 1);
}

template <class T>
T at(const char* bytes) {
    T element;
    std::memcpy(&element, bytes, sizeof element);
    return element;
}

/// An element of a kind of numbers.
void writeElement(JsonWriter& json, tValue kind, const char* bytes) {
    switch (kind) {
        case metadata::kBool:
            return writeTruth(json, at<std::uint8_t>(bytes));
        case metadata::kInt8:
            return writeNumber(json, int{at<std::int8_t>(bytes)});
        case metadata::kUInt8:
            return writeNumber(json, unsigned{at<std::uint8_t>(bytes)});
        case metadata::kInt16:
            return writeNumber(json, at<std::int16_t>(bytes));
        case metadata::kUInt16:
            return writeNumber(json, at<std::uint16_t>(bytes));
        case metadata::kInt32:
            return writeNumber(json, at<std::int32_t>(bytes));
        case metadata::kUInt32:
            return writeNumber(json, at<std::uint32_t>(bytes));
        case metadata::kInt64:
            return writeNumber(json, at<std::int64_t>(bytes));
        case metadata::kUInt64:
            return writeNumber(json, at<std::uint64_t>(bytes));
        case metadata::kScalar:
            return writeNumber(json, at<float>(bytes));
        default:
            return writeNumber(json, at<double>(bytes));
    }
}

bool isText(tValue kind) {
    return formOf(kind) == tForm::kTexts;
}

bool isBytes(tValue kind) {
    return formOf(kind) == tForm::kBytes;
}

/// Texts that each end with a zero, the last one perhaps without.
void writeTexts(JsonWriter& json, std::wstring characters) {
    if (characters.empty() || characters.back() != L'\0') characters += L'\0';
    const auto texts = std::count(characters.begin(), characters.end(), L'\0');
    if (texts > 1) json.beginArray();
    for (std::size_t begin = 0, end; (end = characters.find(L'\0', begin)) != characters.npos; begin = end + 1) {
        json.value(utf8(characters.substr(begin, end - begin)));
    }
    if (texts > 1) json.endArray();
}

/// Elements of a field of a struct: one by itself, several as an array.
void writeField(JsonWriter& json, tValue kind, std::string_view bytes, unsigned int count) {
    if (isBytes(kind)) {
        return json.hex([&] { return std::exchange(bytes, {}); });
    }
    if (isText(kind)) {
        std::wstring characters(count, L'\0');
        std::memcpy(characters.data(), bytes.data(), std::min(bytes.size(), count * sizeof(wchar_t)));
        // A field has the room that its schema gave it: zeros behind the texts fill it up.
        characters.resize(characters.find_last_not_of(L'\0') + 1);
        return writeTexts(json, std::move(characters));
    }
    if (count != 1) json.beginArray();
    const std::size_t stride = count == 0 ? 0 : bytes.size() / count;
    for (unsigned int i = 0; i < count; ++i) writeElement(json, kind, bytes.data() + i * stride);
    if (count != 1) json.endArray();
}

class Writer : public structure::IVisitor {
public:
    Writer(JsonWriter& json, metadata::ISchemaLocator* locator, const tPageLimits& limits, tPageValues& values)
        : _json(json), _layouts(locator), _limits(limits), _values(values) {}

    void root(const tRoot&) override { writeNone(); }
    bool table(const tTable&) override { return writeNone(); }
    bool container(const tContainer&) override { return writeNone(); }

    void primitive(const tPrimitive& item) override {
        if (item.dimension == 0) {
            writeNone();
            return;
        }
        if (isText(item.valuetype)) {
            writeText(item);
        } else if (!isBytes(item.valuetype)) {
            writeNumbers(item);
        } else if (IStructLayout* layout = layoutOf(item)) {
            writeBlocks(item, *layout);
        } else {
            writeBytes(item);
        }
        ++_values.items;
    }

private:
    bool writeNone() {
        _json.literal("null");
        ++_values.items;
        return true;
    }

    /// How many of `total` are shown; notes where that is not all.
    std::uint64_t shown(std::uint64_t total, std::uint64_t limit) {
        if (limit == 0 || total <= limit) return total;
        _values.cuts.push_back({_values.items, total});
        return limit;
    }

    /// So many elements from one on; zeros where the store does not have them any more.
    const std::string& read(const tPrimitive& item, std::uint64_t start, std::uint64_t count) {
        _bytes.assign(count * item.stride, '\0');
        item.get(_bytes.data(), static_cast<unsigned int>(start), static_cast<unsigned int>(count));
        return _bytes;
    }

    /// By portions: the digits of all of them together would take several times the memory of the value.
    void writeBytes(const tPrimitive& item) {
        const std::uint64_t count = shown(item.dimension, _limits.elements);
        std::uint64_t start = 0;
        _json.hex([&]() -> std::string_view {
            const std::uint64_t portion = std::min(kPortion, count - start);
            start += portion;
            return read(item, start - portion, portion);
        });
    }

    void writeText(const tPrimitive& item) {
        const std::uint64_t count = shown(item.dimension, _limits.characters);
        const std::string& bytes = read(item, 0, count);
        std::wstring characters(count, L'\0');
        std::memcpy(characters.data(), bytes.data(), bytes.size());
        writeTexts(_json, std::move(characters));
    }

    void writeNumbers(const tPrimitive& item) {
        // No vector and no matrix is cut in two.
        const std::uint64_t count =
            shown(item.dimension, _limits.elements - _limits.elements % componentsOf(item.valuetype));
        if (item.dimension != 1) _json.beginArray();
        for (std::uint64_t start = 0; start < count; start += kPortion) {
            const std::uint64_t portion = std::min(kPortion, count - start);
            const std::string& bytes = read(item, start, portion);
            for (std::uint64_t i = 0; i < portion; ++i) {
                writeElement(_json, item.valuetype, bytes.data() + i * item.stride);
            }
        }
        if (item.dimension != 1) _json.endArray();
    }

    /// The layout by which a struct can be shown; null for none.
    IStructLayout* layoutOf(const tPrimitive& item) {
        IStructLayout* const layout = _layouts.of(item);
        if (!layout || layout->fields() > kMostFields) return nullptr;
        return _limits.elements == 0 || layout->values() <= _limits.elements ? layout : nullptr;
    }

    void writeBlocks(const tPrimitive& item, IStructLayout& layout) {
        const std::uint64_t stride = layout.stride();
        const std::uint64_t blocks = shown(item.dimension / stride, _limits.elements / layout.values());
        _values.structs.push_back({_values.items, placeOf(layout)});
        _json.beginArray();
        for (std::uint64_t block = 0; block < blocks; ++block) {
            const std::string_view bytes = read(item, block * stride, stride);
            _json.beginArray();
            for (unsigned int i = 0; i < layout.fields(); ++i) {
                const IStructLayout::tField& field = *layout.get(i);
                writeField(_json, field.type, bytes.substr(field.offset, field.size), field.dim);
            }
            _json.endArray();
        }
        _json.endArray();
    }

    std::size_t placeOf(IStructLayout& layout) {
        const auto known = std::find(_values.layouts.begin(), _values.layouts.end(), &layout);
        if (known != _values.layouts.end()) return static_cast<std::size_t>(known - _values.layouts.begin());
        _values.layouts.push_back(&layout);
        return _values.layouts.size() - 1;
    }

    JsonWriter& _json;
    Layouts _layouts;
    const tPageLimits& _limits;
    tPageValues& _values;
    std::string _bytes;
};

}  // namespace

tPageValues writeValues(JsonWriter& json, IDataStore& store, metadata::ISchemaLocator* locator,
                        const tPageLimits& limits) {
    tPageValues values;
    Writer writer(json, locator, limits, values);
    json.beginArray();
    structure::IVisitor::visit(&store, L"", writer);
    json.endArray();
    return values;
}

}  // namespace lvp::tool
