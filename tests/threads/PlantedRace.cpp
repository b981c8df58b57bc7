// The work of ThreadsTest.cpp on a store whose guard holds nobody off: a thread sanitizer that lets this pass sees
// nothing there either.
#include "lumivard/platform/store_contract/ForwardingStore.h"
#include "lumivard/platform/stores.h"
#include "tests/threads/ThreadWork.h"

namespace {

using namespace lumivard::platform;

class OpenStore final : public store_contract::ForwardingStore {
public:
    using ForwardingStore::ForwardingStore;

    ILock* lock() override { return nullptr; }
};

}  // namespace

int main() {
    const auto under = stores::memory();
    OpenStore store(*under);
    const auto schemas = stores::memory();
    model::ThreadWork work(store, *schemas, 1);
    model::onThreads([&](unsigned int number) { work.run(number, 100); });
    return 0;
}
