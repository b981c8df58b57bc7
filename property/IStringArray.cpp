#include "lumivard/platform/data/metadata/IStringArray.h"

namespace lumivard::platform::data::metadata {

IStringArray* IStringArray::to(const wchar_t*, unsigned int) {
    return nullptr;
}

}  // namespace lumivard::platform::data::metadata
