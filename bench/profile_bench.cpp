#include "veltrane/platform/sources/profile.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "support/benchfile.h"
#include "veltrane/platform/text/encoding.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

/// What every reader has to do: open, read, close.
void Floor(const BenchFile& file, std::size_t size, char* buffer) {
    const int handle = ::open(file.Name(), O_RDONLY | O_CLOEXEC);
    if (::read(handle, buffer, size) != static_cast<ssize_t>(size)) std::abort();
    ::close(handle);
    benchmark::DoNotOptimize(buffer);
}

/// Sections "section<n>" with keys "key<n>", of the given size.
std::string Sections(std::size_t size, int count) {
    std::string bytes;
    for (int section = 1; section <= count; ++section) {
        bytes += "[section" + std::to_string(section) + "]\n";
        const std::size_t end = size * static_cast<std::size_t>(section) / static_cast<std::size_t>(count);
        for (int key = 1; bytes.size() < end; ++key) bytes += "key" + std::to_string(key) + "=some value of it\n";
    }
    return bytes + "last=found\n";
}

double Median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

/// Reads and asks in turn, so that both run under the same load, and reports the ratio of the medians, which leaves out
/// interrupted turns.
template <class Question>
void CompareWithFloor(benchmark::State& state, const BenchFile& file, std::size_t size, Question&& question) {
    using Clock = std::chrono::steady_clock;
    using Seconds = std::chrono::duration<double>;
    const auto buffer = std::make_unique_for_overwrite<char[]>(size);
    std::vector<double> floor;
    std::vector<double> asked;
    while (state.KeepRunning()) {
        const auto start = Clock::now();
        Floor(file, size, buffer.get());
        const auto middle = Clock::now();
        question();
        const auto end = Clock::now();
        floor.push_back(Seconds{middle - start}.count());
        asked.push_back(Seconds{end - middle}.count());
        state.SetIterationTime(asked.back());
    }
    state.counters["floor_us"] = Median(floor) * 1e6;
    state.counters["asked_us"] = Median(asked) * 1e6;
    state.counters["ratio"] = Median(asked) / Median(floor);
}

void LastKey(benchmark::State& state, std::size_t size, int sections) {
    const std::string bytes = Sections(size, sections);
    const BenchFile file{bytes};
    const std::wstring section = L"section" + std::to_wstring(sections);
    CompareWithFloor(state, file, bytes.size(), [&] {
        wchar_t buffer[2048];
        if (GetPrivateProfileStringW(section.c_str(), L"last", L"", buffer, 2048, file.Wide()) != 5) std::abort();
        benchmark::DoNotOptimize(buffer);
    });
}

BENCHMARK_CAPTURE(LastKey, SmallFile, 10 << 10, 8)->UseManualTime();
BENCHMARK_CAPTURE(LastKey, SmallFileOfOneSection, 10 << 10, 1)->UseManualTime();
BENCHMARK_CAPTURE(LastKey, LargeFileOf200Sections, 1 << 20, 200)->UseManualTime();
BENCHMARK_CAPTURE(LastKey, LargeFileOfOneSection, 1 << 20, 1)->UseManualTime();

/// Shapes of a file that could make a reader look at the same bytes again and again.
std::string Shape(const std::string& piece, std::size_t size) {
    std::string bytes = "[A]\n";
    while (bytes.size() + piece.size() < size) bytes += piece;
    return bytes;
}

struct Question {
    const wchar_t* section;
    const wchar_t* key;
};
constexpr Question SECTIONS{nullptr, nullptr};
constexpr Question KEYS{L"A", nullptr};
constexpr Question VALUE{L"A", L"last"};
constexpr Question ABSENT_SECTION{L"absent", L"last"};

/// Time by size: it must not grow faster than the file, whatever is in it and whatever is asked.
void Growth(benchmark::State& state, const std::string& piece, Question question) {
    const auto size = static_cast<std::size_t>(state.range(0));
    const BenchFile file{Shape(piece, size)};
    std::wstring buffer(2 * size, L'\0');  // no list is cut
    while (state.KeepRunning()) {
        benchmark::DoNotOptimize(GetPrivateProfileStringW(question.section, question.key, L"", buffer.data(),
                                                          static_cast<unsigned>(buffer.size()), file.Wide()));
    }
    state.SetComplexityN(state.range(0));
}

#define GROWTH(name, piece, question)                \
    BENCHMARK_CAPTURE(Growth, name, piece, question) \
        ->RangeMultiplier(4)                         \
        ->Range(1 << 18, 1 << 22)                    \
        ->Unit(benchmark::kMicrosecond)              \
        ->Complexity(benchmark::oN)

GROWTH(SectionList, "[section]\nkey=value\n", SECTIONS);
GROWTH(SectionListOfBrackets, "  [", SECTIONS);
GROWTH(SectionListOfBlanks, "                [x", SECTIONS);
GROWTH(KeyList, "key=value\n", KEYS);
GROWTH(KeyListOfCarriageReturns, "k=\r", KEYS);
GROWTH(KeyListWithoutEquals, "key\n", KEYS);
GROWTH(Value, "key=value\n", VALUE);
GROWTH(ValueOfCarriageReturns, "\r", VALUE);
GROWTH(ValueWithoutLineEnd, "last ", VALUE);
GROWTH(ValueInLinesThatEndAlike, "xlast = last\r\n", VALUE);
GROWTH(ValueOfHighBytes, "\xFF=\xFF ", VALUE);
GROWTH(AbsentSection, "[abseny]\nlast=1\n", ABSENT_SECTION);
GROWTH(AbsentSectionOfBrackets, "[", ABSENT_SECTION);

}  // namespace
