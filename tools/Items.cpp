#include "tools/Items.h"

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/data/structure/IContainerFrontEnd.h"

namespace lvp::tool {

using lumivard::platform::data::structure::IContainerFrontEnd;

WideString wide(const std::string& text) {
    return lumivard::platform::core::string::StringAlgorithm::UTF8Decode(text.c_str()).c_str();
}

SharedPtr<IContainer> containerAt(IDataStore& store, const std::string& path) {
    return IContainerFrontEnd::find(&store, wide(path));
}

SharedPtr<IProperty> propertyAt(IDataStore& store, const std::string& path) {
    for (std::size_t dot = path.rfind('.'); dot != std::string::npos && dot != 0; dot = path.rfind('.', dot - 1)) {
        const auto container = containerAt(store, path.substr(0, dot));
        if (!container) continue;
        const auto property = container->property(wide(path.substr(dot + 1)));
        // A path that goes one name beyond a value ends on the value all the same.
        if (property && property->path().string() == path) return property;
        return {};
    }
    return {};
}

}  // namespace lvp::tool
