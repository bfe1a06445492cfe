#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <ctime>
#include <vector>

namespace tessellar {

/// Measures work and its floor, in turns, so that whatever else the machine does weighs on both. The
/// time shown is the work's; the counters are the medians in milliseconds, their ratio, what the ratio
/// may be, and the ratio of the processors' time: on a busy machine, work on several threads loses more
/// of its time than its floor on one, and the truth lies between the two.
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
    const auto processorSeconds = [] {
        timespec time{};
        ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
    };
    double processorFloor = 0;
    double processorWork = 0;
    std::vector<double> floors;
    std::vector<double> works;
    for (auto _ : state) {
        const double start = processorSeconds();
        floors.push_back(seconds(floor));
        const double between = processorSeconds();
        works.push_back(seconds(work));
        processorFloor += between - start;
        processorWork += processorSeconds() - between;
        state.SetIterationTime(works.back());
    }
    state.counters["floor_ms"] = median(floors) * 1e3;
    state.counters["work_ms"] = median(works) * 1e3;
    state.counters["ratio"] = median(works) / median(floors);
    state.counters["cpu_ratio"] = processorWork / processorFloor;
    state.counters["budget"] = budget;
}

} // namespace tessellar
