// Lists and messages that grow item by item, compared with a plain text to which the same items are appended: the ratio
// must not grow with their length.
#include "veltrane/foundation/xstring.h"

#include <string>

#include "support/ratio.h"
#include "veltrane/foundation/xexception.h"

namespace {

const CString ITEM = L"table <base_2026_11>";

template <class Text, class Add>
void Grow(const benchmark::State& state, Text text, Add add) {
    for (std::int64_t i = 0; i < state.range(0); ++i) add(text);
    benchmark::DoNotOptimize(text);
}

template <class Text, class Add>
void CompareToPlainText(benchmark::State& state, Add add) {
    CompareToFloor(
        state, 1,
        [&] { Grow(state, std::wstring{}, [](std::wstring& text) { text.append(L", ").append(ITEM.View()); }); },
        [&] { Grow(state, Text{}, add); });
    state.counters["ns/item"] = state.counters["time_ns"].value / static_cast<double>(state.range(0));
}

void AddItemsToAList(benchmark::State& state) {
    CompareToPlainText<CString>(state, [](CString& list) { AddString(list, ITEM); });
}
BENCHMARK(AddItemsToAList)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Iterations(100);

void AddMessagesToAnError(benchmark::State& state) {
    CompareToPlainText<XException>(state, [](XException& error) { error.AddMessage(ITEM); });
}
BENCHMARK(AddMessagesToAnError)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Iterations(100);

}  // namespace
