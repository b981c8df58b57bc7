#include "xml/XMLRenderingLogic.h"

#include "design/Container.h"
#include "design/Primitive.h"
#include "design/Table.h"
#include "metadata/Root.h"
#include "record/Container.h"
#include "record/Primitive.h"
#include "record/Root.h"
#include "record/Table.h"
#include "xml/XMLContainer.h"
#include "xml/XMLPrimitive.h"
#include "xml/XMLRoot.h"
#include "xml/XMLTable.h"

namespace lumivard::platform::data {

namespace {

/// The kind of a record that can be written; `kOffsets`, which is no item, for one that cannot.
Record::tType writable(IDataStore* store, unsigned int offset) {
    const Record::Entity record(store, offset);
    const auto kindOr = [&record](unsigned int least) {
        return record.size() < least ? Record::kOffsets : record.type();
    };
    if (record.flags() & Record::kHidden) return Record::kOffsets;
    switch (record.type()) {
        case Record::kRoot:
            return kindOr(Record::Root::kName);
        case Record::kPrimitive:
            return kindOr(Record::Primitive::kFixed);
        case Record::kTable:
            return kindOr(Record::Table::kFixed);
        case Record::kContainer:
            return kindOr(Record::Container::kFixed);
        default:
            return Record::kOffsets;
    }
}

}  // namespace

XMLRenderingLogic::XMLRenderingLogic(IDataStore* store, core::xml::XMLSerializer& serializer,
                                     metadata::ISchemaLocator* locator, unsigned int offset)
    : _store(store), _serializer(serializer), _locator(locator) {
    _serializer.emitXMLHeader();
    translate(offset);
}

void XMLRenderingLogic::translate(unsigned int offset) {
    begin(offset);
    while (!_levels.empty()) {
        tLevel& level = _levels.back();
        if (level.next < level.entries.size()) {
            begin(level.entries[level.next++]);
        } else {
            _levels.pop_back();
            _serializer.endElement(false);
        }
    }
}

void XMLRenderingLogic::begin(unsigned int offset) {
    switch (writable(_store, offset)) {
        case Record::kRoot: {
            Metadata::Root root(_store, offset);
            XMLRoot element(_store);
            return beginSet(root, element);
        }
        case Record::kPrimitive:
            return writePrimitive(offset);
        case Record::kTable: {
            Design::Table table(_store, offset, false);
            XMLTable element(_store, nullptr);
            return beginSet(table, element);
        }
        case Record::kContainer: {
            Structural::Container container(_store, offset, false);
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
    _levels.push_back({set.entries(), 0});
}

void XMLRenderingLogic::writePrimitive(unsigned int offset) {
    Design::Primitive primitive(_store, offset);
    XMLPrimitive element(_store, primitive.valuetype(), _locator);
    if (!element.wname()) return;
    element.serialize(primitive, _serializer);
    _serializer.endElement(false);
}

}  // namespace lumivard::platform::data
