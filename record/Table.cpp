#include "record/Table.h"

namespace lumivard::platform::data::Record {

Table::Table(IDataStore* store, const wchar_t* name) : Property(store, kFixed + textSection(name), kTable) {
    children(BADOFF);
    defaults(BADOFF);
    putName(kSections, kName, name);
    update(true);
}

}  // namespace lumivard::platform::data::Record
