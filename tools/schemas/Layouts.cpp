#include "tools/schemas/Layouts.h"

namespace lvp::tool {

using namespace lumivard::platform::data;

Layouts::IStructLayout* Layouts::of(const tPrimitive& item) {
    if (item.valuetype != metadata::kStruct || item.schema.empty() || !_locator) return nullptr;
    const std::wstring uri(item.schema);
    if (uri.find(L';') != uri.npos) return nullptr;
    const auto [known, isNew] = _known.try_emplace(uri);
    if (isNew) known->second = _locator->resolve(uri.c_str());
    IStructLayout* const layout = known->second ? known->second->layout() : nullptr;
    if (!layout || layout->values() == 0 || layout->stride() == 0) return nullptr;
    return item.dimension % layout->stride() == 0 ? layout : nullptr;
}

}  // namespace lvp::tool
