#include "tests/model/RealTree.h"

#include "lumivard/platform/core.h"
#include "lumivard/platform/stores.h"
#include "tests/model/RealObjects.h"
#include "tests/support/OddStore.h"

namespace lumivard::platform::model {

using data::structure::IContainerFrontEnd;

namespace {

constexpr metadata::ISchema* kNoSchema = nullptr;

/// At the top of a store of schemas a schema stands in a table without a container, as only a document makes it.
void makeSchemas(IDataStore* store) {
    core::io::MemoryReader reader(
        "<root version='1' name='schemas'><table name='S0'><double name='a'>1 2</double><table name='b'>"
        "<name locale='de'>B</name><string name='c'/></table></table><table name='S1'><int32 name='d'/>"
        "<table name='b'/></table></root>");
    data::format::xml::IXMLFrontEnd::parse(store, &reader, nullptr, nullptr, nullptr);
}

}  // namespace

RealTree::RealTree() : _second(std::make_unique<test_support::OddStore>()), _schemaStore(stores::memory()) {
    makeSchemas(_schemaStore.get());
    _locator = metadata::ISchemaLocator::make(_schemaStore.get());
    for (std::size_t i = 0; i < _schemas.size(); ++i) _schemas[i] = _locator->resolve(kSchemaNames[i]);
    _stores[1] = _second.get();
}

RealTree::~RealTree() = default;

std::unique_ptr<RealTree> RealTree::reopened(tMake make) {
    std::unique_ptr<RealTree> tree(new RealTree);
    tree->_own = make();
    tree->_stores[0] = tree->_own.get();
    tree->_make = std::move(make);
    return tree;
}

std::unique_ptr<RealTree> RealTree::kept(IDataStore& store) {
    std::unique_ptr<RealTree> tree(new RealTree);
    tree->_stores[0] = &store;
    return tree;
}

TreeObject::tPtr RealTree::toplevel(unsigned int store, const std::wstring& name) {
    return RealContainer::over(*this, IContainerFrontEnd::toplevel(_stores[store], name.c_str()));
}

TreeObject::tPtr RealTree::find(unsigned int store, const std::wstring& path) {
    return RealContainer::over(*this, IContainerFrontEnd::find(_stores[store], path.c_str()));
}

void RealTree::reopen() {
    if (!_make) return;
    _own.reset();
    _own = _make();
    _stores[0] = _own.get();
}

metadata::ISchema* RealTree::schema(int number) const {
    return number < 0 ? kNoSchema : _schemas[static_cast<std::size_t>(number)].get();
}

}  // namespace lumivard::platform::model
