#pragma once

#include <array>
#include <functional>
#include <memory>

#include "tests/model/TreeObject.h"

namespace lumivard::platform::model {

using core::storage::datastore::IDataStore;

/// The library itself, through its public interfaces.
class RealTree final : public Tree {
public:
    using tMake = std::function<std::unique_ptr<IDataStore>()>;

    /// `make` opens the first store, now and whenever it is to be opened again; one that is given by `kept` stays open.
    /// The second store has no guard: a client that goes between two stores in both directions takes their guards in
    /// both orders, which is this client's right, as it has one thread, but looks to a sanitizer like a deadlock.
    static std::unique_ptr<RealTree> reopened(tMake make);
    static std::unique_ptr<RealTree> kept(IDataStore& store);

    ~RealTree() override;

    TreeObject::tPtr toplevel(unsigned int store, const std::wstring& name) override;
    TreeObject::tPtr find(unsigned int store, const std::wstring& path) override;
    void reopen() override;

    IDataStore* store(unsigned int number) const { return _stores[number]; }

    /// The schema of a number; null for -1.
    metadata::ISchema* schema(int number) const;

private:
    RealTree();

    tMake _make;
    std::unique_ptr<IDataStore> _own;
    std::unique_ptr<IDataStore> _second;
    std::unique_ptr<IDataStore> _schemaStore;
    std::array<IDataStore*, 2> _stores{};
    data::SharedPtr<metadata::ISchemaLocator> _locator;
    std::array<data::SharedPtr<metadata::ISchema>, 3> _schemas;
};

}  // namespace lumivard::platform::model
