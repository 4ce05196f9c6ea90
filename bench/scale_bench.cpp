// The cost of many questions to one file while a snapshot keeps it, compared with one question. A start asks about 70
// times.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "support/benchfile.h"
#include "support/ratio.h"
#include "veltrane/platform/sources/internal/snapshot.h"
#include "veltrane/platform/sources/profile.h"
#include "veltrane/platform/sources/winreg.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr int QUESTIONS = 70;

/// 2 MiB for 20,000 keys.
std::string Export(int keys) {
    std::string bytes = "Windows Registry Editor Version 5.00\r\n\r\n";
    for (int key = 0; key < keys; ++key) {
        const std::string number = std::to_string(10'000 + key);
        bytes += "[HKEY_LOCAL_MACHINE\\SOFTWARE\\VORNAK\\tool\\section " + number + "]\r\n\"value " + number +
                 "\"=\"text of the value\"\r\n\r\n";
    }
    return bytes;
}

void AskRegistry(int section) {
    const std::wstring number = std::to_wstring(10'000 + section);
    const std::wstring path = L"SOFTWARE\\VORNAK\\tool\\section " + number;
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_READ, &key) != ERROR_SUCCESS) std::abort();
    std::uint32_t size = 0;
    const std::wstring name = L"value " + number;
    if (RegQueryValueExW(key, name.c_str(), nullptr, nullptr, nullptr, &size) != ERROR_SUCCESS) std::abort();
    RegCloseKey(key);
}

/// Bar: 3.
void RegistryQuestions(benchmark::State& state) {
    const auto keys = static_cast<int>(state.range(0));
    const BenchFile file{Export(keys)};
    SetRegistryFile(file.Wide());
    CompareToFloor(
        state, 1, [&] { AskRegistry(keys / 2); },
        [&] {
            const SourceSnapshot snapshot;
            for (int i = 0; i < QUESTIONS; ++i) AskRegistry(i * (keys / QUESTIONS));
        });
    SetRegistryFile({});
}
BENCHMARK(RegistryQuestions)->Arg(200)->Arg(2'000)->Arg(20'000)->Unit(benchmark::kMicrosecond);

void ProfileQuestions(benchmark::State& state) {
    const auto values = static_cast<int>(state.range(0));
    std::string bytes;
    for (int value = 0; value < values; ++value) {
        if (value % 100 == 0) bytes += "[section " + std::to_string(value / 100) + "]\n";
        bytes += "key " + std::to_string(value) + "=a value of the usual length, a path or a name, most of the time\n";
    }
    const BenchFile file{bytes};
    const auto ask = [&](int value) {
        wchar_t buffer[2048];
        const std::wstring section = L"section " + std::to_wstring(value / 100);
        const std::wstring key = L"key " + std::to_wstring(value);
        if (GetPrivateProfileStringW(section.c_str(), key.c_str(), L"", buffer, 2048, file.Wide()) == 0) std::abort();
    };
    CompareToFloor(
        state, 1, [&] { ask(values / 2); },
        [&] {
            const SourceSnapshot snapshot;
            for (int i = 0; i < QUESTIONS; ++i) ask(i * (values / QUESTIONS));
        });
}
BENCHMARK(ProfileQuestions)->Arg(80)->Arg(640)->Arg(6'400)->Arg(100'000)->Unit(benchmark::kMicrosecond);

}  // namespace
