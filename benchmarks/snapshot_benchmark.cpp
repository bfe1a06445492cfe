// An undo snapshot of 5,000 tiles, and what 100 of them hold after as many edits. Floor: copying one
// reference-counted pointer for each part of a state.

#include "editing/layout_undo.h"

#include <benchmark/benchmark.h>

#include <malloc.h>

namespace tessellar {
namespace {

constexpr unsigned tileCount = 5'000;
constexpr unsigned pageLength = 40;

QUuid tileID(unsigned number) { return QUuid(number, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0); }

LayoutUndoState bigState() {
    LayoutUndoState state;
    for (unsigned i = 0; i < tileCount; ++i) {
        if (i % pageLength == 0)
            state.document.pages.append(Page());
        AppEntry entry;
        entry.id = tileID(i);
        entry.name = entry.originalName = u"Application %1"_qs.arg(i);
        entry.bundleIdentifier = u"com.example.app%1"_qs.arg(i);
        entry.path = u"/Applications/Application %1.app"_qs.arg(i);
        state.document.pages.last().append(entry);
        if (i % 10 == 0)
            state.document.hiddenKeys.insert(appKey(entry));
    }
    state.otherDocument = state.document;
    for (unsigned i = 0; i < 50; ++i)
        state.smartFolderDefinitions.append(
            SmartFolderDefinition{.id = tileID(i), .name = u"Smart"_qs});
    state.navigation.selectedItemIDs = {tileID(1), tileID(2)};
    return state;
}

void snapshotFloorPointers(benchmark::State& state) {
    const auto pointer = std::make_shared<int>(1);
    for (auto _ : state) {
        const std::array copies{pointer, pointer, pointer, pointer, pointer, pointer, pointer};
        benchmark::DoNotOptimize(copies);
    }
}
BENCHMARK(snapshotFloorPointers);

void snapshot(benchmark::State& state) {
    const LayoutUndoState live = bigState();
    for (auto _ : state) {
        LayoutUndoState copy = live;
        benchmark::DoNotOptimize(copy);
    }
}
BENCHMARK(snapshot);

/// Each edit moves a tile to another page, and back pages overflow on the way.
void hundredSnapshotsInMemory(benchmark::State& state) {
    double bytes = 0;
    for (auto _ : state) {
        LayoutUndoState live = bigState();
        const auto before = mallinfo2().uordblks;
        QList<LayoutUndoState> snapshots;
        for (unsigned i = 0; i < 50; ++i) {
            snapshots.append(live);
            const qsizetype page = live.document.pages.size() - 3;
            live.document = *moveTiles(live.document, {tileID(i * 97 % tileCount)}, {{}, page, 0}, {});
            snapshots.append(live);
        }
        bytes = static_cast<double>(mallinfo2().uordblks - before);
        benchmark::DoNotOptimize(snapshots);
    }
    state.counters["MiB"] = bytes / (1 << 20);
}
BENCHMARK(hundredSnapshotsInMemory)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessellar

BENCHMARK_MAIN();
