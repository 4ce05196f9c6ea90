#include "veltrane/options/xoptiondefinition.h"

#include <string>
#include <unordered_map>

#include "support/ratio.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

const std::unordered_map<std::wstring, int>& Names() {
    static const auto names = [] {
        std::unordered_map<std::wstring, int> map;
        for (int i = 0; const auto* row = GetOptionDefinitionAt(i); ++i) map.emplace(row->szLongName, i);
        return map;
    }();
    return names;
}

// Both look up prepared strings, one after the other through a list of names.
void FindNames(benchmark::State& state, const std::vector<std::wstring>& names) {
    const std::unordered_map<std::wstring, int>& map = Names();
    const std::vector<CString> texts(names.begin(), names.end());
    std::size_t i = 0;
    std::size_t j = 0;
    CompareToFloor(
        state, 1000,
        [&] {
            benchmark::DoNotOptimize(map.find(names[i]));
            i = i + 1 < names.size() ? i + 1 : 0;
        },
        [&] {
            benchmark::DoNotOptimize(FindOptionDefinition(texts[j]));
            j = j + 1 < texts.size() ? j + 1 : 0;
        });
}

void FindPresentOption(benchmark::State& state) {
    std::vector<std::wstring> names;
    for (const auto& [name, row] : Names()) names.push_back(name);
    FindNames(state, names);
}
BENCHMARK(FindPresentOption)->Iterations(300);

void FindUnknownOption(benchmark::State& state) {
    std::vector<std::wstring> names;
    for (const auto& [name, row] : Names()) names.push_back(name.substr(1) + L"x");
    FindNames(state, names);
}
BENCHMARK(FindUnknownOption)->Iterations(300);

}  // namespace
