#include "property/Facades.h"

#include "lumivard/platform/core/memory/SharedPtr.h"
#include "property/DesignPrimitiveImpl.h"
#include "property/DesignTableImpl.h"
#include "record/Base.h"

namespace lumivard::platform::data {

SharedPtr<metadata::IProperty> openProperty(IDataStore* store, unsigned int offset) {
    std::unique_ptr<metadata::IProperty> property;
    switch (Record::peek(store, offset)) {
        case Record::kPrimitive:
            property = std::make_unique<DesignPrimitiveImpl>(std::make_unique<Design::Primitive>(store, offset));
            break;
        case Record::kTable:
            property = std::make_unique<DesignTableImpl>(std::make_unique<Design::Table>(store, offset, false));
            break;
        default:
            break;
    }
    return core::memory::share<metadata::IProperty>(std::move(property));
}

}  // namespace lumivard::platform::data
