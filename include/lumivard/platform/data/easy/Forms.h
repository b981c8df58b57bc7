#pragma once

#include <array>
#include <cstddef>
#include <cstring>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/data/easy/Place.h"
#include "lumivard/platform/data/metadata/IStringArray.h"
#include "lumivard/platform/data/metadata/tValue.h"
#include "lumivard/platform/data/structure/IVisitor.h"

/// What the types of C++ are in a store: which kinds they match, and how their values are read and packed. The rules
/// stand at `easy::get` and `easy::set`.
namespace lumivard::platform::data::easy::detail {

/// The kind that a number of a type is stored as; none for what is no number, as characters are not.
template <class T>
constexpr metadata::tValue kindOf() {
    if (std::is_same_v<T, bool>) return metadata::kBool;
    if (std::is_same_v<T, float>) return metadata::kScalar;
    if (std::is_same_v<T, double>) return metadata::kDouble;
    if (std::is_same_v<T, std::byte>) return metadata::kBinary;
    constexpr bool character = std::is_same_v<T, char> || std::is_same_v<T, wchar_t> || std::is_same_v<T, char8_t> ||
                               std::is_same_v<T, char16_t> || std::is_same_v<T, char32_t>;
    if constexpr (std::is_integral_v<T> && !character) {
        constexpr bool sign = std::is_signed_v<T>;
        switch (sizeof(T)) {
            case 1:
                return sign ? metadata::kInt8 : metadata::kUInt8;
            case 2:
                return sign ? metadata::kInt16 : metadata::kUInt16;
            case 4:
                return sign ? metadata::kInt32 : metadata::kUInt32;
            case 8:
                return sign ? metadata::kInt64 : metadata::kUInt64;
            default:
                break;
        }
    }
    return {};
}

/// A type whose values are elements of a primitive.
template <class T>
concept Number = kindOf<T>()
!= metadata::tValue{};

/// Several numbers that lie one behind the other: a vector, an array, a span.
template <class T>
concept Numbers = requires(const T& values) {
    std::size(values);
    requires Number<std::remove_cvref_t<decltype(*std::data(values))>>;
};

using tHolds = bool (*)(metadata::tValue kind);

/// Whether a primitive of a kind holds one number of a type, several of them, or texts.
template <Number T>
constexpr bool holdsOne(metadata::tValue kind) {
    return kind == kindOf<T>();
}

template <Number T>
constexpr bool holdsMany(metadata::tValue kind) {
    if (std::is_same_v<T, double> && kind >= metadata::kVec2 && kind <= metadata::kMtx4x4) return true;
    if (std::is_same_v<T, std::byte> && kind == metadata::kStruct) return true;
    return holdsOne<T>(kind);
}

constexpr bool holdsTexts(metadata::tValue kind) {
    return kind >= metadata::kUUID && kind <= metadata::kVersion;
}

// --- Reading.

using tItem = structure::IVisitor::tPrimitive;

/// Copies values to `to`, all of them or none. Whatever byte lies in a store becomes true or false.
template <Number T>
bool copy(const tItem& item, T* to, unsigned int start, unsigned int count) {
    static_assert(sizeof(bool) == 1);
    if (!item.get(to, start, count)) return false;
    if constexpr (std::is_same_v<T, bool>) {
        for (unsigned int i = 0; i < count; ++i) {
            unsigned char byte = 0;
            std::memcpy(&byte, to + i, 1);
            to[i] = byte != 0;
        }
    }
    return true;
}

/// All values of a primitive of which the kind is known to fit.
template <class T>
std::optional<std::vector<T>> all(const tItem& item) {
    std::vector<T> values(item.dimension);
    if (!values.empty() && !item.get(values.data(), 0, item.dimension)) return {};
    return values;
}

/// The texts of a primitive.
inline std::optional<std::vector<WideString>> texts(const tItem& item) {
    const auto packed = all<wchar_t>(item);
    if (!packed) return {};
    const std::unique_ptr<metadata::IStringArray> list(metadata::IStringArray::to(packed->data(), item.dimension));
    std::vector<WideString> texts;
    for (unsigned int i = 0; i < list->strings(); ++i) texts.push_back(list->get(i));
    return texts;
}

inline void assign(std::wstring& to, const WideString& text) {
    to.assign(text, text.length());
}
inline void assign(std::string& to, const WideString& text) {
    to = text.string();
}

/// How a value of a type is read: `read` is given a primitive that `holds` its kind and that has values of its own.
template <class T>
struct Form {};

template <Number T>
struct Form<T> {
    static constexpr tHolds holds = holdsOne<T>;
    static std::optional<T> read(const tItem& item) {
        T value{};
        if (item.dimension != 1 || !copy(item, &value, 0, 1)) return {};
        return value;
    }
};

template <Number T, std::size_t N>
struct Form<std::array<T, N>> {
    static constexpr tHolds holds = holdsMany<T>;
    static std::optional<std::array<T, N>> read(const tItem& item) {
        std::array<T, N> values{};
        if (item.dimension != N || (N != 0 && !copy(item, values.data(), 0, item.dimension))) return {};
        return values;
    }
};

template <Number T>
struct Form<std::vector<T>> {
    static constexpr tHolds holds = holdsMany<T>;
    static std::optional<std::vector<T>> read(const tItem& item) {
        if constexpr (std::is_same_v<T, bool>) {
            const auto bytes = all<unsigned char>(item);
            if (!bytes) return {};
            std::vector<bool> values;
            for (const unsigned char byte : *bytes) values.push_back(byte != 0);
            return values;
        } else {
            return all<T>(item);
        }
    }
};

template <class T>
concept Text = std::is_same_v<T, std::wstring> || std::is_same_v<T, std::string>;

template <Text T>
struct Form<T> {
    static constexpr tHolds holds = holdsTexts;
    static std::optional<T> read(const tItem& item) {
        const auto all = texts(item);
        if (!all || all->size() != 1) return {};
        T text;
        assign(text, all->front());
        return text;
    }
};

template <Text T>
struct Form<std::vector<T>> {
    static constexpr tHolds holds = holdsTexts;
    static std::optional<std::vector<T>> read(const tItem& item) {
        const auto found = texts(item);
        if (!found) return {};
        std::vector<T> all(found->size());
        for (std::size_t i = 0; i < all.size(); ++i) assign(all[i], (*found)[i]);
        return all;
    }
};

/// A type that `get` gives.
template <class T>
concept Gettable = requires(const tItem& item) {
    Form<T>::read(item);
};

/// Is shown one primitive, and does something with its values if it has some of its own of a kind that fits. It has to
/// have the last name of the path, which may go one name beyond a primitive.
template <class Use>
class OneValue final : public structure::IVisitor {
public:
    OneValue(std::wstring_view path, tHolds holds, Use use)
        : _name(path.substr(path.rfind(L'.') + 1)), _holds(holds), _use(use) {}
    void primitive(const tPrimitive& item) override {
        constexpr unsigned char external = 0x08;  // see `IProperty::flags`
        if (item.name == _name && (item.flags & external) == 0 && _holds(item.valuetype)) _use(item);
    }
    bool table(const tTable&) override { return false; }
    bool container(const tContainer&) override { return false; }

private:
    std::wstring_view _name;
    tHolds _holds;
    Use _use;
};

/// Lets `use` have the primitive at a path, if there is one whose kind fits.
template <class Use>
void look(Place where, std::wstring_view path, tHolds holds, Use use) {
    OneValue visitor(path, holds, use);
    if (!path.empty()) show(where, path, visitor);  // which for no path shows everything
}

// --- Packing.

/// Appends a text and its end to others; false where it has a zero inside.
inline bool pack(std::wstring& packed, std::wstring_view text) {
    if (!isWhole(text)) return false;
    packed.append(text) += L'\0';
    return true;
}
inline bool pack(std::wstring& packed, std::string_view text) {
    std::wstring wide;
    core::string::StringAlgorithm::UTF8Decode(text, wide);
    return pack(packed, wide);
}

}  // namespace lumivard::platform::data::easy::detail
