#include "xml/XMLRoot.h"

#include "lumivard/platform/core/string/StringAlgorithm.h"
#include "metadata/Root.h"
#include "record/Base.h"
#include "xml/Nesting.h"
#include "xml/Scalar.h"

namespace lumivard::platform::data {

using core::string::StringAlgorithm;
using core::xml::XMLSerializer;
using Metadata::Item;

unsigned int XMLRoot::type() const {
    return Record::kRoot;
}

std::unique_ptr<Item> XMLRoot::open(const char* const* attributes) {
    const char* name = find("name", attributes);
    if (!name) return refuse(kMissingName);
    if (const char* version = find("version", attributes)) {
        unsigned int number = 0;
        Scalar::scan(metadata::kUInt32, version, reinterpret_cast<char*>(&number));  // what is no number is 0
        _store->version(number);
    }
    return std::make_unique<Metadata::Root>(_store, StringAlgorithm::UTF8Decode(name).c_str());
}

std::unique_ptr<Item> XMLRoot::nest(Item& parent, std::unique_ptr<Item> child) {
    switch (Record::peek(_store, child->offset())) {
        case Record::kTable:
        case Record::kContainer:
            return add(static_cast<Metadata::Set&>(parent), std::move(child));
        default:
            return nullptr;
    }
}

bool XMLRoot::serialize(Item& item, XMLSerializer& serializer) {
    serializer.startElement(name());
    const unsigned int number = _store->version();
    char version[Scalar::kLongest];
    const char* end = Scalar::print(metadata::kUInt32, reinterpret_cast<const char*>(&number), version);
    serializer.addAttribute("version", std::string_view(version, static_cast<std::size_t>(end - version)));
    serializer.addAttribute("name", item.tag());
    writeNames(item, serializer);
    return true;
}

}  // namespace lumivard::platform::data
