#include "Visits.h"

#include <lumivard/platform/core.h>
#include <lumivard/platform/data.h>

#include <memory>

namespace visits {

using namespace lumivard::platform::data;
using lumivard::platform::core::storage::datastore::IDataStore;

namespace {

int valueOf(metadata::IProperty* property) {
    int value = 0;
    if (property) metadata::IPrimitive::to(property)->get(&value, 0, 1);
    return value;
}

}  // namespace

void add(IDataStore& store) {
    const std::unique_ptr<IDataStore::ILock> guard(store.lock());
    const auto model = structure::IContainerFrontEnd::toplevel(&store, L"model");
    if (!model->property(L"visits")) model->create(L"visits", metadata::kInt32);
    const auto property = model->property(L"visits");
    const int value = valueOf(property.get()) + 1;
    metadata::IPrimitive::to(property.get())->set(&value, 0, 1);
}

int count(IDataStore& store) {
    const std::unique_ptr<IDataStore::ILock> guard(store.lock());
    const auto model = structure::IContainerFrontEnd::find(&store, L"model");
    return model ? valueOf(model->property(L"visits").get()) : 0;
}

}  // namespace visits
