// Sets compared with what the standard library offers for the same job: a sorted vector and std::set, in the same run.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "veltrane/collections/xsetint.h"
#include "veltrane/collections/xsetstring.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr int COUNT = 100'000;

template <class T>
T Make(std::mt19937& random);

template <>
int Make<int>(std::mt19937& random) {
    return static_cast<int>(random() >> 1);
}

template <>
CString Make<CString>(std::mt19937& random) {
    std::wstring text(10 + random() % 21, L'_');
    for (wchar_t& element : text) element = static_cast<wchar_t>(L'A' + random() % 26);
    return CString{std::move(text)};
}

template <class T>
std::vector<T> Values(unsigned seed, int count = COUNT) {
    std::mt19937 random{seed};
    std::vector<T> values;
    for (int i = 0; i < count; ++i) values.push_back(Make<T>(random));
    return values;
}

// Two lists that share half of their values.
template <class T>
std::vector<T> Overlapping(int count = COUNT) {
    std::vector<T> values = Values<T>(2, count);
    const std::vector<T> other = Values<T>(1, count);
    std::copy(other.begin(), other.begin() + count / 2, values.begin());
    std::shuffle(values.begin(), values.end(), std::mt19937{3});
    return values;
}

template <class T>
void Fill(XSet<T>& set, const std::vector<T>& values) {
    set.Clear();
    for (const T& value : values) set.Insert(value, /*unique*/ false);
}

template <class T>
std::vector<T> Sorted(std::vector<T> values) {
    std::sort(values.begin(), values.end());
    return values;
}

template <class T>
void FillAndSort(benchmark::State& state) {
    const std::vector<T> values = Values<T>(1);
    for (auto _ : state) {
        XSet<T> set;
        Fill(set, values);
        set.Sort(nullptr);
        benchmark::DoNotOptimize(set.GetAt(0));
    }
}

template <class T>
void FillAndSortVector(benchmark::State& state) {
    const std::vector<T> values = Values<T>(1);
    for (auto _ : state) {
        std::vector<T> set;
        for (const T& value : values) set.push_back(value);
        std::sort(set.begin(), set.end());
        benchmark::DoNotOptimize(set.data());
    }
}

template <class T>
void FillStdSet(benchmark::State& state) {
    const std::vector<T> values = Values<T>(1);
    for (auto _ : state) {
        std::set<T> set(values.begin(), values.end());
        benchmark::DoNotOptimize(set.size());
    }
}

template <class T>
void LookUp(benchmark::State& state) {
    const std::vector<T> values = Values<T>(1);
    const std::vector<T> probes = Overlapping<T>();
    XSet<T> set;
    Fill(set, values);
    set.Sort(nullptr);
    for (auto _ : state) {
        int found = 0;
        for (const T& probe : probes) found += set.Find(probe, XSet<T>::Comp) >= 0;
        benchmark::DoNotOptimize(found);
    }
}

template <class T>
void LookUpVector(benchmark::State& state) {
    const std::vector<T> values = Sorted(Values<T>(1));
    const std::vector<T> probes = Overlapping<T>();
    for (auto _ : state) {
        int found = 0;
        for (const T& probe : probes) found += std::binary_search(values.begin(), values.end(), probe);
        benchmark::DoNotOptimize(found);
    }
}

template <class T>
void LookUpStdSet(benchmark::State& state) {
    const std::vector<T> values = Values<T>(1);
    const std::set<T> set(values.begin(), values.end());
    const std::vector<T> probes = Overlapping<T>();
    for (auto _ : state) {
        int found = 0;
        for (const T& probe : probes) found += set.contains(probe);
        benchmark::DoNotOptimize(found);
    }
}

template <class T>
void Union(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    XSet<T> a;
    XSet<T> b;
    Fill(a, Values<T>(1, count));
    Fill(b, Overlapping<T>(count));
    for (auto _ : state) {
        XSet<T> result;
        result.Union(a, b, XSet<T>::Comp);
        benchmark::DoNotOptimize(result.GetAt(0));
    }
}

template <class T>
void UnionVector(benchmark::State& state) {
    const int count = static_cast<int>(state.range(0));
    const std::vector<T> a = Values<T>(1, count);
    const std::vector<T> b = Overlapping<T>(count);
    for (auto _ : state) {
        const std::vector<T> first = Sorted(a);
        const std::vector<T> second = Sorted(b);
        std::vector<T> result;
        std::set_union(first.begin(), first.end(), second.begin(), second.end(), std::back_inserter(result));
        benchmark::DoNotOptimize(result.data());
    }
}

// Difference and intersection: the sets are unsorted at the start of each round, as hosts pass them.
template <void (XSetString::*Operation)(XSetString&, XSetString&)>
void Arithmetic(benchmark::State& state) {
    XSetString a;
    XSetString b;
    Fill(a, Values<CString>(1));
    Fill(b, Overlapping<CString>());
    for (auto _ : state) {
        XSetString first = a;
        XSetString second = b;
        XSetString result;
        (result.*Operation)(first, second);
        benchmark::DoNotOptimize(result.GetAt(0));
    }
}

template <bool Difference>
void ArithmeticVector(benchmark::State& state) {
    const std::vector<CString> a = Values<CString>(1);
    const std::vector<CString> b = Overlapping<CString>();
    for (auto _ : state) {
        const std::vector<CString> first = Sorted(a);
        const std::vector<CString> second = Sorted(b);
        std::vector<CString> result;
        if (Difference) {
            std::set_difference(first.begin(), first.end(), second.begin(), second.end(), std::back_inserter(result));
        } else {
            std::set_intersection(first.begin(), first.end(), second.begin(), second.end(), std::back_inserter(result));
        }
        benchmark::DoNotOptimize(result.data());
    }
}

void InsertList(benchmark::State& state) {
    std::wstring list;
    for (const CString& piece : Values<CString>(1, static_cast<int>(state.range(0)))) {
        list.append(piece.View()).append(L", ");
    }
    const CString text{std::move(list)};
    for (auto _ : state) {
        XSetString set;
        set.InsertList(text, /*sort*/ true, L",");
        benchmark::DoNotOptimize(set.GetAt(0));
    }
}

// The operations of XSetInt at growing sizes. Time for each element: constant, because each element is handled once;
// from 256 elements on numbers are sorted by a radix sort, which is linear, too.
template <class Operation>
void IntOperation(benchmark::State& state, Operation operation) {
    const std::vector<int> values = Values<int>(1, static_cast<int>(state.range(0)));
    XSetInt filled;
    for (const int value : values) filled.Insert(value);
    for (auto _ : state) {
        XSetInt set{filled};
        operation(set);
        benchmark::DoNotOptimize(set.GetAt(0));
    }
    state.counters["element"] =
        benchmark::Counter(static_cast<double>(state.range(0)),
                           benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

CString ListOf(const XSetInt& set) {
    std::wstring list;
    for (int i = 0; i < set.Size(); ++i) list.append(std::to_wstring(set.GetConstRefAt(i))).append(L", ");
    return CString{std::move(list)};
}

// Every other number is free.
void FreeNumbers(XSetInt& set) {
    XSetInt even, free;
    for (int i = 1; i <= set.Size(); ++i) even.Insert(2 * i);
    even.GetFreeNumbers(free);
    benchmark::DoNotOptimize(free.GetAt(0));
}

const auto Sort = [](XSetInt& set) { set.Sort(); };
const auto UnionWithItself = [](XSetInt& set) { set.Union(set); };
const auto BuildSet = [](XSetInt& set) { set.BuildSet(ListOf(set)); };
const auto CalcMax = [](XSetInt& set) { set.CalcMax(); };
BENCHMARK_CAPTURE(IntOperation, Copy, [](XSetInt&) {})->RangeMultiplier(10)->Range(1'000, 100'000);
BENCHMARK_CAPTURE(IntOperation, Sort, Sort)->RangeMultiplier(10)->Range(1'000, 100'000);
BENCHMARK_CAPTURE(IntOperation, Union, UnionWithItself)->RangeMultiplier(10)->Range(1'000, 100'000);
BENCHMARK_CAPTURE(IntOperation, BuildSet, BuildSet)->RangeMultiplier(10)->Range(1'000, 100'000);
BENCHMARK_CAPTURE(IntOperation, CalcMax, CalcMax)->RangeMultiplier(10)->Range(1'000, 100'000);
BENCHMARK_CAPTURE(IntOperation, GetFreeNumbers, FreeNumbers)->RangeMultiplier(10)->Range(1'000, 100'000);
BENCHMARK(FillAndSort<int>)->Unit(benchmark::kMillisecond);
BENCHMARK(FillAndSortVector<int>)->Unit(benchmark::kMillisecond);
BENCHMARK(FillStdSet<int>)->Unit(benchmark::kMillisecond);
BENCHMARK(FillAndSort<CString>)->Unit(benchmark::kMillisecond);
BENCHMARK(FillAndSortVector<CString>)->Unit(benchmark::kMillisecond);
BENCHMARK(FillStdSet<CString>)->Unit(benchmark::kMillisecond);
BENCHMARK(LookUp<int>)->Unit(benchmark::kMillisecond);
BENCHMARK(LookUpVector<int>)->Unit(benchmark::kMillisecond);
BENCHMARK(LookUpStdSet<int>)->Unit(benchmark::kMillisecond);
BENCHMARK(LookUp<CString>)->Unit(benchmark::kMillisecond);
BENCHMARK(LookUpVector<CString>)->Unit(benchmark::kMillisecond);
BENCHMARK(LookUpStdSet<CString>)->Unit(benchmark::kMillisecond);
BENCHMARK(Union<int>)->Arg(50'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(UnionVector<int>)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(Union<CString>)->Arg(50'000)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(UnionVector<CString>)->Arg(100'000)->Unit(benchmark::kMillisecond);
BENCHMARK(Arithmetic<&XSetString::Sub>)->Unit(benchmark::kMillisecond);
BENCHMARK(ArithmeticVector<true>)->Unit(benchmark::kMillisecond);
BENCHMARK(Arithmetic<&XSetString::Intersection>)->Unit(benchmark::kMillisecond);
BENCHMARK(ArithmeticVector<false>)->Unit(benchmark::kMillisecond);
BENCHMARK(InsertList)->Arg(50'000)->Unit(benchmark::kMillisecond);

}  // namespace
