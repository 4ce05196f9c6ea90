// ReplaceName compared with the plain loop: find and replace each rule's text, with upper case prepared beforehand.
#include <benchmark/benchmark.h>

#include <chrono>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "veltrane/options/xnamingrules.h"

using namespace veltrane;
using namespace veltrane::detail;

namespace {

constexpr int RULES = 200;
constexpr int NAMES = 500;

// Names and rules are made of the same few words, as those of a schema are.
std::wstring Word(std::mt19937& random) {
    static const wchar_t* const words[] = {L"Orders", L"Customer", L"Item",  L"Price", L"Invoice", L"Archive",
                                           L"Tmp",    L"Descr",    L"State", L"Old",   L"Code",    L"Date"};
    return words[random() % std::size(words)];
}

std::wstring Text(std::mt19937& random, bool shared) {
    if (shared) return Word(random) + L'_' + std::to_wstring(random() % 100);
    std::wstring text(3 + random() % 10, L'_');
    for (wchar_t& element : text) element = static_cast<wchar_t>(L'a' + random() % 26);
    return text;
}

std::wstring Name(std::mt19937& random, bool shared) {
    std::wstring name = Text(random, shared);
    while (name.size() < 10) name += L'_' + Text(random, shared);
    return name.substr(0, 10 + random() % 21);
}

std::wstring Upper(const std::wstring& text) {
    return std::wstring{CString{text}.MakeUpper().View()};
}

void PlainLoop(std::wstring& name, const std::vector<std::pair<std::wstring, std::wstring>>& rules) {
    name = Upper(name);
    for (const auto& [oldText, newText] : rules) {
        for (std::size_t at = 0; (at = name.find(oldText, at)) != std::wstring::npos; at += newText.size()) {
            name.replace(at, oldText.size(), newText);
        }
    }
}

void NamingRules(benchmark::State& state) {
    const bool shared = state.range(0) != 0;
    std::mt19937 random{7};
    XNamingRules rules;
    std::vector<std::pair<std::wstring, std::wstring>> plainRules;
    for (int i = 0; i < RULES; ++i) {
        const std::wstring oldText = Text(random, shared);
        const std::wstring newText = Text(random, shared);
        rules.InsertRule(1, CString{oldText}, CString{newText});
        plainRules.emplace_back(Upper(oldText), Upper(newText));
    }
    std::vector<std::wstring> names;
    for (int i = 0; i < NAMES; ++i) names.push_back(Name(random, shared));
    const std::vector<CString> wideNames(names.begin(), names.end());

    using Clock = std::chrono::steady_clock;
    Clock::duration own{};
    Clock::duration plain{};
    for (auto _ : state) {
        const auto begin = Clock::now();
        for (CString name : wideNames) {
            rules.ReplaceName(name, 1, /*keepCase*/ false);
            benchmark::DoNotOptimize(name);
        }
        const auto middle = Clock::now();
        for (std::wstring name : names) {
            PlainLoop(name, plainRules);
            benchmark::DoNotOptimize(name);
        }
        own += middle - begin;
        plain += Clock::now() - middle;
    }
    using Nanoseconds = std::chrono::duration<double, std::nano>;
    const double rounds = static_cast<double>(state.iterations()) * NAMES;
    state.counters["ns/name"] = Nanoseconds(own).count() / rounds;
    state.counters["plain ns/name"] = Nanoseconds(plain).count() / rounds;
    state.counters["ratio"] = Nanoseconds(own).count() / Nanoseconds(plain).count();
}

BENCHMARK(NamingRules)->ArgName("shared words")->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

}  // namespace
