#include "design/Container.h"

#include "record/Container.h"

namespace lumivard::platform::data::Structural {

Container::Container(IDataStore* store, unsigned int offset, bool lazy) {
    Record::Container record(store, offset, Record::kInPlace);
    open(store, record);
    _children = record.children();
    _type = static_cast<tType>(record.kind());
    _base = record.text(Record::Container::kBase);
    _info = record.text(Record::Container::kInfo);
    if (!lazy) populate();
    record.ref();
}

Container::Container(IDataStore* store, tType type, const wchar_t* name) : _type(type) {
    Record::Container record(store, name);
    open(store, record);
    record.writeKind(type);
    record.ref();
}

Container::~Container() {
    release();
}

void Container::info(const wchar_t* text) {
    Record::Container record(_store, _offset, Record::kInPlace);
    const auto* bytes = reinterpret_cast<const char*>(text);
    if (record.arrays(Record::Container::kInfo, bytes, text ? Record::textSection(text) : 0)) _info = text ? text : L"";
}

}  // namespace lumivard::platform::data::Structural
