#include "xml/XMLRenderingLogic.h"

#include <limits>

#include "design/Container.h"
#include "design/Table.h"
#include "metadata/Root.h"
#include "record/Anatomy.h"
#include "record/Container.h"
#include "record/Primitive.h"
#include "record/Root.h"
#include "record/Table.h"
#include "xml/XMLContainer.h"
#include "xml/XMLRoot.h"
#include "xml/XMLTable.h"

namespace lumivard::platform::data {

namespace {

/// The kind of a record that can be written; `kOffsets`, which is no item, for one that cannot.
Record::tType writable(const Record::Entity& record) {
    const bool item = record.type() == Record::kRoot || Record::isChild(record.type());
    if (!item || (record.flags() & Record::kHidden) || !Record::Anatomy::fits(record)) return Record::kOffsets;
    return record.type();
}

}  // namespace

XMLRenderingLogic::XMLRenderingLogic(IDataStore* store, core::xml::XMLSerializer& serializer,
                                     metadata::ISchemaLocator* locator, unsigned int offset)
    : _store(store), _serializer(serializer), _primitives(store, serializer, locator) {
    _serializer.emitXMLHeader();
    translate(offset);
}

void XMLRenderingLogic::translate(unsigned int offset) {
    begin(offset, look(offset, nullptr));
    while (!_levels.empty()) {
        if (_levels.back().next < _levels.back().entries.size()) {
            beginNext();
        } else {
            _levels.pop_back();
            _serializer.endElement(false);
        }
    }
}

void XMLRenderingLogic::beginNext() {
    tLevel& level = _levels.back();
    const unsigned int offset = level.entries[level.next++];
    begin(offset, look(offset, &level));
}

Record::tType XMLRenderingLogic::look(unsigned int offset, tLevel* among) {
    const Record::Primitive record(_store, offset, Record::kInPlace);  // which is what it may be; all kinds begin alike
    const Record::tType kind = writable(record);
    const bool primitive = record.type() == Record::kPrimitive && Record::Anatomy::fits(record);
    if (primitive) _primitives.load(record);
    if (!among || among->counted) return kind;
    const bool child = record.whole() && Record::isChild(record.type());
    const auto isNew = [&](const std::wstring& name) { return among->names.add(name); };
    if (child && (primitive ? isNew(_primitives.name()) : isNew(record.name()))) return kind;
    return count(*among) ? kind : Record::kOffsets;
}

bool XMLRenderingLogic::count(tLevel& level) {
    level.counted = true;
    const std::size_t count = Metadata::Set::children(_store, level.list).size();
    if (count < level.entries.size()) level.entries.resize(count);
    return level.next <= count;
}

void XMLRenderingLogic::begin(unsigned int offset, Record::tType kind) {
    switch (kind) {
        case Record::kRoot: {
            Metadata::Root root(_store, offset);
            XMLRoot element(_store);
            return beginSet(root, element);
        }
        case Record::kPrimitive:
            return _primitives.write();
        case Record::kTable: {
            Design::Table table(_store, offset, true);
            XMLTable element(_store, nullptr);
            return beginSet(table, element);
        }
        case Record::kContainer: {
            Structural::Container container(_store, offset, true);
            XMLContainer element(_store, container.type(), nullptr);
            return beginSet(container, element);
        }
        default:
            return;
    }
}

void XMLRenderingLogic::beginSet(Metadata::Set& set, Element& element) {
    if (!element.wname() || !_written.insert(set.offset()).second) return;
    element.serialize(set, _serializer);
    const unsigned int list = Record::Entity(_store, set.offset()).children();
    _levels.emplace_back(list, Metadata::Set::entries(_store, list, std::numeric_limits<std::size_t>::max()));
}

}  // namespace lumivard::platform::data
