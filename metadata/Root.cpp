#include "metadata/Root.h"

#include "record/Root.h"

namespace lumivard::platform::data::Metadata {

Root::Root(IDataStore* store, const wchar_t* name) {
    Record::Root record(store, name);
    open(store, record);
    record.ref();
}

Root::Root(IDataStore* store, unsigned int offset) {
    Record::Root record(store, offset, Record::kInPlace);
    open(store, record);
    _children = record.children();
    populate();
    record.ref();
}

Root::~Root() {
    release();
}

}  // namespace lumivard::platform::data::Metadata
