#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace tessellar {

/// Measures work and its floor, in turns, so that whatever else the machine does weighs on both. The
/// time shown is the work's; the counters are the medians in milliseconds, their ratio and what the
/// ratio may be.
template <typename Work, typename Floor>
void measureBesideFloor(benchmark::State& state, double budget, const Work& work, const Floor& floor) {
    using Clock = std::chrono::steady_clock;
    const auto seconds = [](const auto& call) {
        const auto start = Clock::now();
        call();
        return std::chrono::duration<double>(Clock::now() - start).count();
    };
    const auto median = [](std::vector<double> times) {
        std::ranges::nth_element(times, times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2));
        return times[times.size() / 2];
    };
    std::vector<double> floors;
    std::vector<double> works;
    for (auto _ : state) {
        floors.push_back(seconds(floor));
        works.push_back(seconds(work));
        state.SetIterationTime(works.back());
    }
    state.counters["floor_ms"] = median(floors) * 1e3;
    state.counters["work_ms"] = median(works) * 1e3;
    state.counters["ratio"] = median(works) / median(floors);
    state.counters["budget"] = budget;
}

} // namespace tessellar
