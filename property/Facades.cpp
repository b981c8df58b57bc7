#include "property/Facades.h"

#include <functional>

#include "lumivard/platform/core/memory/SharedPtr.h"
#include "property/DesignPrimitiveImpl.h"
#include "property/DesignTableImpl.h"
#include "record/Primitive.h"

namespace lumivard::platform::data {

SharedPtr<metadata::IProperty> openProperty(IDataStore* store, unsigned int offset) {
    using core::memory::makeShared;
    Record::Primitive record(store, offset, Record::kInPlace);
    switch (record.type()) {
        case Record::kPrimitive:
            return makeShared<metadata::IProperty, DesignPrimitiveImpl, metadata::IProperty>(store, std::ref(record));
        case Record::kTable:
            return makeShared<metadata::IProperty, DesignTableImpl, metadata::IProperty>(store, offset, false);
        default:
            return {};
    }
}

}  // namespace lumivard::platform::data
