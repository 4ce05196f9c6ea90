#include "veltrane/options/xoption.h"

#include <cstdlib>
#include <string>
#include <unordered_map>
#include <vector>

#include "support/ratio.h"
#include "veltrane/options/typed.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

// The getter of an existing item compared with one look-up of the same name, both with prepared strings.
void GetOptionString(benchmark::State& state) {
    XOption options;
    std::unordered_map<std::wstring, std::wstring> map;
    std::vector<std::wstring> names;
    std::vector<CString> texts;
    for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) {
        if (!row->IsString() || !row->IsSingle()) continue;
        options.InsertOptionItem(row->szLongName, L"D:\\Out\\value of the option", -1);
        map.emplace(row->szLongName, L"D:\\Out\\value of the option");
        names.emplace_back(row->szLongName);
        texts.emplace_back(row->szLongName);
    }
    std::size_t i = 0;
    std::size_t j = 0;
    CompareToFloor(
        state, 1000,
        [&] {
            benchmark::DoNotOptimize(map.find(names[i])->second.data());
            i = i + 1 < names.size() ? i + 1 : 0;
        },
        [&] {
            benchmark::DoNotOptimize(options.GetOptionString(texts[j], -1).GetString());
            j = j + 1 < texts.size() ? j + 1 : 0;
        });
}
BENCHMARK(GetOptionString)->Iterations(300);

// Options by a name that the compiler looks up, compared with the getters with prepared names.
constexpr XOptionDefinition OWN_ROWS[] = {OptionRow(OwnOption(1, eString | eSingle), eSectionRoot, L"", L"unit", -1)};
constexpr OwnTable OWN{OWN_ROWS};

template <class Getter, class Typed>
void BesideGetter(benchmark::State& state, Getter getter, Typed typed) {
    const OwnOptions registered{OWN};
    XOption options;
    for (const wchar_t* name : {L"logfile", L"unit"}) {
        if (state.range(0) != 0) options.InsertOptionItem(name, L"D:\\Out\\value of the option", -1);
    }
    options.InsertOptionItem(L"quiet", L"true", -1);
    for (int i = 0; i < 10; ++i) options.InsertOptionItem(L"map-file", L"a", i);
    CompareToFloor(
        state, 1000, [&] { benchmark::DoNotOptimize(getter(options)); },
        [&] { benchmark::DoNotOptimize(typed(options)); });
}

void TypedText(benchmark::State& state) {
    const CString name = L"logfile";
    BesideGetter(
        state, [&](auto& options) { return &options.GetOptionString(name, -1); },
        [](auto& options) { return &GetText<"logfile">(options); });
}
BENCHMARK(TypedText)->Arg(0)->Arg(1)->Iterations(300);

void TypedTextOfTool(benchmark::State& state) {
    const CString name = L"unit";
    BesideGetter(
        state, [&](auto& options) { return &options.GetOptionString(name, -1); },
        [](auto& options) { return &GetText<"unit", OWN>(options); });
}
BENCHMARK(TypedTextOfTool)->Arg(0)->Arg(1)->Iterations(300);

void TypedUtf8(benchmark::State& state) {
    const CString name = L"logfile";
    BesideGetter(
        state, [&](auto& options) { return ToUtf8(options.GetOptionString(name, -1)); },
        [](auto& options) { return Get<"logfile">(options); });
}
BENCHMARK(TypedUtf8)->Arg(0)->Arg(1)->Iterations(300);

void TypedIndexedText(benchmark::State& state) {
    const CString name = L"map-file";
    BesideGetter(
        state, [&](auto& options) { return &options.GetOptionString(name, 7); },
        [](auto& options) { return &GetText<"map-file">(options, 7); });
}
BENCHMARK(TypedIndexedText)->Arg(1)->Iterations(300);

void TypedFlag(benchmark::State& state) {
    const CString name = L"quiet";
    BesideGetter(
        state, [&](auto& options) { return options.GetOptionBoolean(name, -1); },
        [](auto& options) { return Get<"quiet">(options); });
}
BENCHMARK(TypedFlag)->Arg(1)->Iterations(300);

// The cost of one item among many of an option, compared with one among a thousand. Bar: 1.2.
template <class Ask>
void PerItem(benchmark::State& state, Ask ask) {
    const auto fill = [](XOption& options, int count) {
        for (int i = 0; i < count; ++i) options.InsertOptionItem(L"load-dictionary", L"a", i);
    };
    constexpr int FEW = 1'000;
    const auto many = static_cast<int>(state.range(0));
    XOption few;
    XOption all;
    fill(few, FEW);
    fill(all, many);
    CompareToFloor(
        state, 1,
        [&] {
            for (int i = 0; i < many / FEW; ++i) ask(few, FEW);
        },
        [&] { ask(all, many); });
}

void WalkItems(benchmark::State& state) {
    const CString name = L"load-dictionary";
    PerItem(state, [&](XOption& options, int) {
        for (auto* item = options.GetFirstOptionItem(name); item; item = options.GetNextOptionItem(name)) {
            benchmark::DoNotOptimize(item);
        }
    });
}
BENCHMARK(WalkItems)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

void GetIndexedString(benchmark::State& state) {
    const CString name = L"load-dictionary";
    PerItem(state, [&](XOption& options, int count) {
        for (int i = 0; i < count; ++i) benchmark::DoNotOptimize(options.GetOptionString(name, i).GetString());
    });
}
BENCHMARK(GetIndexedString)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

void CandidatesOfAllItems(benchmark::State& state) {
    PerItem(state, [](XOption& options, int) { benchmark::DoNotOptimize(options.GetAllOptionCandidates(L"")); });
}
BENCHMARK(CandidatesOfAllItems)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

// A value that is full of references, with its origin kept, compared with the same value without.
void OriginOfReferences(benchmark::State& state) {
    std::string value;
    for (auto i = state.range(0); i > 0; --i) value += "%reference%";
    setenv("reference", "text", 1);
    setenv("logfile", value.c_str(), 1);
    const auto retrieve = [](bool isKept) {
        XOption options;
        options.KeepOrigins(isKept);
        options.RetrieveOption(L"logfile");
    };
    CompareToFloor(
        state, 1, [&] { retrieve(false); }, [&] { retrieve(true); });
    unsetenv("logfile");
    unsetenv("reference");
}
BENCHMARK(OriginOfReferences)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);

}  // namespace
