#pragma once

#include <QtGlobal>

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <vector>

namespace tessellar {

/// Calls `work` for each index below `count`, on this thread and helpers, in batches of `share`: choose
/// it large enough to be worth starting a thread. Blocks until all are done. `work` must not throw.
template <typename Work>
void forEachIndex(qsizetype count, unsigned threads, qsizetype share, const Work& work) {
    std::atomic<qsizetype> next{0};
    const auto run = [&] {
        for (qsizetype begin = 0; (begin = next.fetch_add(share)) < count;)
            for (qsizetype i = begin; i < std::min(begin + share, count); ++i)
                work(i);
    };
    const qsizetype shares = (count + share - 1) / share;
    std::vector<std::jthread> helpers;
    try {
        for (qsizetype i = 1; i < std::min<qsizetype>(threads, shares); ++i)
            helpers.emplace_back(run);
    } catch (const std::system_error&) {
        // Out of threads: the existing ones do all the work.
    }
    run();
}

} // namespace tessellar
