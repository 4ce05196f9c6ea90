#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

/// Times an action against a floor, alternating between both in small batches so that other load affects both alike.
/// Reports the median times of one run in nanoseconds and their ratio.
template <class Floor, class Action>
void CompareToFloor(benchmark::State& state, int batch, Floor floor, Action action) {
    using Clock = std::chrono::steady_clock;
    const auto timed = [batch](auto& run) {
        const auto begin = Clock::now();
        for (int i = 0; i < batch; ++i) run();
        return std::chrono::duration<double, std::nano>(Clock::now() - begin).count() / batch;
    };
    std::vector<double> floors;
    std::vector<double> actions;
    for (auto _ : state) {
        floors.push_back(timed(floor));
        actions.push_back(timed(action));
    }
    const auto median = [](std::vector<double>& times) {
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    };
    state.counters["floor_ns"] = median(floors);
    state.counters["time_ns"] = median(actions);
    state.counters["ratio"] = median(actions) / median(floors);
}
