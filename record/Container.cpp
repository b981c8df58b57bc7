#include "record/Container.h"

namespace lumivard::platform::data::Record {

Container::Container(IDataStore* store, const wchar_t* name) : Entity(store, kFixed + textSection(name), kContainer) {
    children(BADOFF);
    putName(kSections, kName, name);
    update(true);
}

}  // namespace lumivard::platform::data::Record
