#include "tests/fault/calls/Operation.h"

namespace lumivard::platform::test_support::fault {

namespace {

std::vector<tOperation> gather() {
    std::vector<tOperation> all;
    for (const auto group : {&containerOperations, &editingOperations, &copyOperations, &propertyOperations,
                             &primitiveOperations, &tableOperations, &schemaOperations, &documentOperations,
                             &checkOperations, &easyOperations, &endOfLifeOperations}) {
        for (const tOperation& operation : group()) all.push_back(operation);
    }
    return all;
}

}  // namespace

const std::vector<tOperation>& operations() {
    static const std::vector<tOperation> all = gather();
    return all;
}

}  // namespace lumivard::platform::test_support::fault
