#include "record/Root.h"

#include <cstring>

namespace lumivard::platform::data::Record {

Root::Root(IDataStore* store, const wchar_t* name) : Entity(store, kName + textSection(name), kRoot) {
    const std::uint64_t length = textSection(name);
    children(BADOFF);
    putWord(kNameLength, static_cast<unsigned int>(length));
    std::memcpy(buffer() + kName, name, length);
    update(true);
}

}  // namespace lumivard::platform::data::Record
