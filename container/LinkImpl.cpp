#include "container/LinkImpl.h"

#include <optional>

#include "container/Facades.h"
#include "record/Base.h"
#include "record/Guard.h"
#include "schema/Finder.h"

namespace lumivard::platform::data {

using Record::Guard;

SharedPtr<structure::IContainer> LinkImpl::follow(IDataStore* store) {
    const Guard guard(this->store());
    const wchar_t* target = item()->info();
    if (!target) return {};
    std::optional<Guard> otherGuard;
    if (store) otherGuard.emplace(store);
    IDataStore* search = store ? store : this->store();

    const unsigned int offset = Schema::Finder(search, 0, target).offset;
    if (Record::peek(search, offset) != Record::kContainer) return {};
    return openPlain(search, offset);
}

WideString LinkImpl::target() {
    const Guard guard(store());
    return item()->info();
}

void LinkImpl::target(WideString text) {
    const Guard guard(store());
    item()->info(text.value());
}

}  // namespace lumivard::platform::data
