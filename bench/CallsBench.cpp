#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <vector>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"

// Single calls, in a store in memory: what each costs, beside sets and arrays of different lengths, on which it must
// not depend; but for destroying a child, which takes its entry out of the list of all.

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;
using core::memory::SharedPtr;
using structure::IContainer;

/// `top` with a group `set` of N children, and with a table `table` in which `array` has N values.
class Tree {
public:
    explicit Tree(long size) : _store(stores::memory()) {
        _top = structure::IContainerFrontEnd::toplevel(_store.get(), L"top");
        const auto set = _top->create(IContainer::kGroup, L"set", nullptr);
        for (long i = 0; i < size; ++i) set->create(IContainer::kGroup, std::to_wstring(i).c_str(), nullptr);
        const std::vector<double> values(static_cast<std::size_t>(size), 1.5);
        _top->create(L"table", nullptr)
            ->create(L"array", metadata::kDouble, units::kMeter)
            ->set(values.data(), 0, static_cast<unsigned int>(size));
        static_cast<void>(_top->container(L"set"));  // whose names are kept from then on
    }

    IDataStore* store() const { return _store.get(); }
    IContainer& top() const { return *_top; }

private:
    std::unique_ptr<IDataStore> _store;
    SharedPtr<IContainer> _top;
};

template <class Call>
void each(benchmark::State& state, const Tree& tree, Call call) {
    const std::unique_ptr<IDataStore::ILock> guard(tree.store()->lock());
    for (auto _ : state) benchmark::DoNotOptimize(call());
}

void OpenASet(benchmark::State& state) {
    const Tree tree(state.range(0));
    each(state, tree, [&] { return tree.top().container(L"set"); });
}

void OpenAChildByItsPath(benchmark::State& state) {
    const Tree tree(state.range(0));
    each(state, tree, [&] { return tree.top().container(L"set.7"); });
}

void OpenAPrimitiveByItsPath(benchmark::State& state) {
    const Tree tree(state.range(0));
    each(state, tree, [&] { return tree.top().property(L"table.array"); });
}

void AddAChildAndDestroyIt(benchmark::State& state) {
    const Tree tree(state.range(0));
    const auto set = tree.top().container(L"set");
    each(state, tree, [&] {
        set->create(IContainer::kGroup, L"new", nullptr);
        return set->destroy(L"new");
    });
}

void StepToTheNextChild(benchmark::State& state) {
    const Tree tree(state.range(0));
    auto children = tree.top().container(L"set")->containers();
    each(state, tree, [&] {
        if (!children->next()) children = tree.top().container(L"set")->containers();
        return children->current();
    });
}

void GetOneValue(benchmark::State& state) {
    const Tree tree(state.range(0));
    const auto property = tree.top().property(L"table.array");
    auto* const array = metadata::IPrimitive::to(property.get());
    double value = 0;
    each(state, tree, [&] { return array->get(&value, 7, 1); });
}

void SetOneValue(benchmark::State& state) {
    const Tree tree(state.range(0));
    const auto property = tree.top().property(L"table.array");
    auto* const array = metadata::IPrimitive::to(property.get());
    const double value = 2.5;
    each(state, tree, [&] { return array->set(&value, 7, 1); });
}

void VisitOneValue(benchmark::State& state) {
    class First : public structure::IVisitor {
    public:
        void primitive(const tPrimitive& item) override { item.get(&value, 0, 1); }
        double value = 0;
    };
    const Tree tree(state.range(0));
    First first;
    each(state, tree, [&] { return structure::IVisitor::visit(tree.store(), L"top.table.array", first); });
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(100)->Arg(10'000)->Arg(1'000'000);
}

BENCHMARK(OpenASet)->Apply(sizes);
BENCHMARK(OpenAChildByItsPath)->Apply(sizes);
BENCHMARK(OpenAPrimitiveByItsPath)->Apply(sizes);
BENCHMARK(AddAChildAndDestroyIt)->Arg(100)->Arg(10'000);
BENCHMARK(StepToTheNextChild)->Apply(sizes);
BENCHMARK(GetOneValue)->Apply(sizes);
BENCHMARK(SetOneValue)->Apply(sizes);
BENCHMARK(VisitOneValue)->Apply(sizes);

}  // namespace
