#include "Visits.h"

#include <lumivard/platform/data.h>
#include <lumivard/platform/data/easy.h>

namespace visits {

using namespace lumivard::platform::data;
using lumivard::platform::core::storage::datastore::IDataStore;

// [step]
void add(IDataStore& store) {
    const auto model = structure::IContainerFrontEnd::toplevel(&store, L"model");  // before the guard
    const easy::Scope scope(&store);
    easy::set(model, L"visits", easy::get<int>(model, L"visits").value_or(0) + 1);
}
// [step]

int count(IDataStore& store) {
    return easy::get<int>(&store, L"model.visits").value_or(0);
}

}  // namespace visits
