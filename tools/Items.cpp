#include "tools/Items.h"

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "lumivard/platform/data/metadata/ITable.h"
#include "lumivard/platform/data/structure/IContainerFrontEnd.h"

namespace lvp::tool {

using lumivard::platform::data::metadata::ITable;
using lumivard::platform::data::structure::IContainerFrontEnd;

WideString wide(const std::string& text) {
    return lumivard::platform::core::string::StringAlgorithm::UTF8Decode(text.c_str()).c_str();
}

SharedPtr<IContainer> containerAt(IDataStore& store, const std::string& path) {
    return IContainerFrontEnd::find(&store, wide(path));
}

SharedPtr<IProperty> propertyAt(IDataStore& store, const std::string& path) {
    // By single names: a longer path that goes one name beyond a value ends on the value all the same.
    std::size_t end = path.rfind('.');
    SharedPtr<IContainer> container;
    for (; !container && end != std::string::npos && end != 0; end = path.rfind('.', end - 1)) {
        container = containerAt(store, path.substr(0, end));
        if (container) break;
    }
    SharedPtr<IProperty> property;
    while (container && end != std::string::npos) {
        const std::size_t next = path.find('.', end + 1);
        const WideString name = wide(path.substr(end + 1, next == std::string::npos ? next : next - end - 1));
        auto* table = ITable::to(property.get());
        if (property && !table) return {};
        property = table ? table->lookup(name) : container->property(name);
        if (!property) return {};
        end = next;
    }
    return property;
}

}  // namespace lvp::tool
