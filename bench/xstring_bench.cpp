// Lists and messages that grow item by item: the time of one item, which must not grow with what is there already.
#include "veltrane/foundation/xstring.h"

#include <benchmark/benchmark.h>

#include "veltrane/foundation/xexception.h"

namespace {

const CString ITEM = L"table <base_2026_11>";

void ShowTimeOfOne(benchmark::State& state) {
    const auto items = static_cast<double>(state.iterations() * state.range(0));
    state.counters["time/item"] = benchmark::Counter(items, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void AddItemsToAList(benchmark::State& state) {
    for (auto _ : state) {
        CString list;
        for (std::int64_t i = 0; i < state.range(0); ++i) AddString(list, ITEM);
        benchmark::DoNotOptimize(list);
    }
    ShowTimeOfOne(state);
}
BENCHMARK(AddItemsToAList)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

void AddMessagesToAnError(benchmark::State& state) {
    for (auto _ : state) {
        XException error;
        for (std::int64_t i = 0; i < state.range(0); ++i) error.AddMessage(ITEM);
        benchmark::DoNotOptimize(error);
    }
    ShowTimeOfOne(state);
}
BENCHMARK(AddMessagesToAnError)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

}  // namespace
