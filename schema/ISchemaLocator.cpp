#include "lumivard/platform/data/metadata/ISchemaLocator.h"

namespace lumivard::platform::data::metadata {

SharedPtr<ISchemaLocator> ISchemaLocator::make(IDataStore*) {
    return {};
}

}  // namespace lumivard::platform::data::metadata
