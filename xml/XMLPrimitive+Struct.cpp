#include <cstdint>
#include <limits>
#include <vector>

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/data/metadata/ISchema.h"
#include "lumivard/platform/data/metadata/ISchemaLocator.h"
#include "lumivard/platform/data/metadata/IStructLayout.h"
#include "xml/Scalar.h"
#include "xml/StructPlaces.h"
#include "xml/Tokens.h"
#include "xml/XMLPrimitive.h"

namespace lumivard::platform::data {

using core::string::StringAlgorithm;
using Design::Primitive;
using metadata::IStructLayout;

namespace {

constexpr std::uint64_t kLargest = std::numeric_limits<unsigned int>::max();

}  // namespace

void XMLPrimitive::makeStruct(Primitive& primitive) {
    const std::wstring uri = StringAlgorithm::UTF8Decode(_start.schema);
    const SharedPtr<metadata::ISchema> found = _locator->resolve(uri.c_str());
    if (!found) {
        _message = L"unable to resolve type schema '" + uri + L"'";
        return;
    }
    primitive.base(uri.c_str());
    const IStructLayout* blocks = found->layout();
    reserve(primitive, blocks ? std::uint64_t{blocks->stride()} * _start.count : 0);
}

void XMLPrimitive::takeStructs(const Primitive& primitive, std::string_view text) {
    if (!_locator) return;
    const SharedPtr<metadata::ISchema> schema = _locator->resolve(primitive.base());
    IStructLayout* layout = schema ? schema->layout() : nullptr;
    if (!layout || layout->values() == 0) return;
    const std::uint64_t size = Tokens::count(text) / layout->values() * std::uint64_t{layout->stride()};
    if (size == 0 || size > kLargest) return;

    // An element that is scanned wider than it is reaches into the next one, which then overwrites that.
    std::vector<char> blocks(size + Scalar::kWidest);
    Tokens tokens(text);
    std::string_view token;
    for (StructPlaces places(*layout); places.next() && places.position() < size && tokens.next(token);) {
        Scalar::scan(places.kind(), token, blocks.data() + places.position());
    }
    overlay(&primitive, blocks.data(), size);
}

}  // namespace lumivard::platform::data
