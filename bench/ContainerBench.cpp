#include <benchmark/benchmark.h>

#include <filesystem>
#include <memory>
#include <string>

#include "lumivard/platform/core.h"
#include "lumivard/platform/data.h"
#include "lumivard/platform/stores.h"

// One container of N children with names that begin alike, as generated names do: built, opened again, looked through
// and walked. What matters is the price of one child: it has to be the same for all N (the column "child").

namespace {

using namespace lumivard::platform;
using namespace lumivard::platform::data;

constexpr const wchar_t* kTop = L"top";

std::wstring itemName(long number) {
    std::wstring digits = std::to_wstring(number);
    return L"item_" + std::wstring(digits.size() < 6 ? 6 - digits.size() : 0, L'0') + digits;
}

/// A store file that is removed in the end.
class TemporaryStore {
public:
    TemporaryStore() : _path(std::filesystem::temp_directory_path() / "lvp-bench.lvp") { remove(); }
    ~TemporaryStore() { remove(); }
    TemporaryStore(const TemporaryStore&) = delete;
    TemporaryStore& operator=(const TemporaryStore&) = delete;

    std::unique_ptr<IDataStore> open(stores::tMode mode) const { return stores::file(_path, mode); }

private:
    void remove() const {
        std::filesystem::remove(_path);
        std::filesystem::remove(_path.string() + "-lock");
    }

    std::filesystem::path _path;
};

void build(IDataStore* store, long count) {
    const auto top = structure::IContainerFrontEnd::toplevel(store, kTop);
    for (long i = 0; i < count; ++i) top->create(structure::IContainer::kNode, itemName(i).c_str(), nullptr);
    store->flush();
}

void perChild(benchmark::State& state) {
    state.counters["child"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
    state.SetComplexityN(state.range(0));
}

void Build(benchmark::State& state) {
    for (auto _ : state) {
        const TemporaryStore file;
        const auto store = file.open(stores::tMode::kWrite);
        build(store.get(), state.range(0));
    }
    perChild(state);
}

void ReopenAndWalk(benchmark::State& state) {
    const TemporaryStore file;
    build(file.open(stores::tMode::kWrite).get(), state.range(0));
    for (auto _ : state) {
        const auto store = file.open(stores::tMode::kRead);
        const auto top = structure::IContainerFrontEnd::find(store.get(), kTop);
        const auto children = top->containers();
        long seen = 0;
        for (auto child = children->current(); child; child = children->next() ? children->current() : child) {
            benchmark::DoNotOptimize(child->tag());
            if (++seen == state.range(0)) break;
        }
        if (seen != state.range(0)) state.SkipWithError("children are missing");
    }
    perChild(state);
}

void LookUpEach(benchmark::State& state) {
    const auto store = stores::memory();
    build(store.get(), state.range(0));
    const auto top = structure::IContainerFrontEnd::find(store.get(), kTop);
    for (auto _ : state) {
        for (long i = 0; i < state.range(0); ++i) {
            if (!top->has(itemName(i).c_str())) state.SkipWithError("a child is missing");
        }
    }
    perChild(state);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMillisecond)->Complexity(benchmark::oN);
}

BENCHMARK(Build)->Apply(sizes);
BENCHMARK(ReopenAndWalk)->Apply(sizes);
BENCHMARK(LookUpEach)->Apply(sizes);

}  // namespace
