#pragma once

#include <functional>
#include <string>
#include <vector>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"

namespace lumivard::platform::fuzz {

using core::memory::SharedPtr;
using core::storage::datastore::IDataStore;
using core::string::WideString;
using data::metadata::IPrimitive;
using data::metadata::IProperty;
using data::metadata::IPropertyFilter;
using data::metadata::ISchema;
using data::metadata::ISchemaLocator;
using data::metadata::IStringArray;
using data::metadata::ITable;
using data::structure::IContainer;
using data::structure::IContainerFilter;
using data::structure::IContainerFrontEnd;
using data::structure::IGroup;
using data::structure::ILink;
using data::structure::INode;
using data::structure::IVisitor;

/// Does with a store of any records what clients can do, and looks at no result. It stops after some hundred steps: a
/// tree that is shared between its branches has no end for who walks it in this way.
///
/// Each operation walks the store anew. What the store and the allocator throw passes through.
class RecordsClient {
public:
    RecordsClient(IDataStore& store, IDataStore& other, ISchemaLocator& locator)
        : _store(store), _other(other), _locator(locator) {}

    /// Everything that changes nothing but the counts of live objects.
    void look();
    /// Takes every table for a schema, of everything else and of itself; then from other sets of stores.
    void resolve();
    /// Copies within the store and to the other one.
    void copy();
    /// Names, texts, values, flags, schemas; new items.
    void change();
    /// Documents that are read into the store and into what is in it.
    void read();
    /// What tables and containers hold, while cursors stand over it.
    void destroy();

private:
    /// Opens what can be reached from the top, breadth first.
    void walk(const std::function<void(IContainer&)>& onContainer, const std::function<void(IProperty&)>& onProperty);
    void gather(IContainerFilter& containers, IPropertyFilter& properties);

    void lookAt(IContainer& container);
    void lookAt(IProperty& property);
    void changeContainer(IContainer& container);
    void changeBehind(IPropertyFilter& properties);
    void changeProperty(IProperty& property);
    void changeValue(IPrimitive& primitive);
    void changeTable(ITable& table);
    void createFrom(ISchema& schema, const WideString& name);
    void changeStores();
    void readInto(IContainer& container);
    void destroyIn(ITable& table);

    /// Each copy may be as large as all that there was before.
    bool isSmall() const;
    /// True for so many steps in all.
    bool step() { return _steps != 0 && --_steps != 0; }

    IDataStore& _store;
    IDataStore& _other;
    ISchemaLocator& _locator;
    unsigned int _steps = 400;
    std::vector<SharedPtr<IContainer>> _containers;
    std::vector<SharedPtr<IProperty>> _properties;
};

}  // namespace lumivard::platform::fuzz
