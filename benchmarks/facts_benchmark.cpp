// Facts of installed applications: from a scan to what 50 smart folders show first, a second start with
// nothing changed, and one application alone. Floor: both `stat` calls of each bundle, and the reading
// of its Info.plist.

#include "sample/mac_builder.h"
#include "smartfolders/smart_folder_evaluator.h"
#include "smartfolders/smart_folder_facts_catalog.h"
#include "smartfolders/smart_folder_facts_index.h"
#include "smartfolders/smart_folder_raw_values.h"
#include "tests/support/test_machine.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <ctime>
#include <map>

namespace tessellar {
namespace {

constexpr int definitionCount = 50;

struct Fixture {
    test::TestMachine machine;
    QList<AppEntry> apps;
    QList<SmartFolderDefinition> definitions;
    Calendar calendar{machine.locale, QStringLiteral("Europe/Oslo")};
    const QString cachePath = QStringLiteral("/Users/ada/Library/bundle-answers.json");

    explicit Fixture(int count) {
        sample::MacBuilder mac(machine.root.path());
        for (int i = 0; i < count; ++i) {
            const QString name = QStringLiteral("App %1").arg(i);
            AppEntry entry;
            entry.id = machine.uuids.next();
            entry.name = entry.originalName = name;
            entry.bundleIdentifier = QStringLiteral("com.example.app%1").arg(i);
            entry.path = mac.addApplication({.name = name, .identifier = *entry.bundleIdentifier});
            apps.append(entry);
        }
        machine.tool(QStringLiteral("/usr/bin/lipo"), test::exited(0, "arm64 x86_64\n"));
        machine.tool(QStringLiteral("/usr/bin/codesign"),
                     test::exited(0, {}, "TeamIdentifier=ABCDE12345\n"));
        const auto& templates = json::RawValues<SmartFolderTemplate>::values;
        for (int i = 0; i < definitionCount; ++i)
            definitions.append(templateDefinition(templates[i % templates.size()].first,
                                                  machine.uuids.next(), machine.time.now(),
                                                  machine.uuids));
    }

    /// Runs a request until its first result, or its last; the facts.
    SmartFolderFactsList gather(SmartFolderFactsCatalog& catalog, const QList<AppEntry>& which,
                                SmartFolderNeeds needs, bool untilComplete) {
        SmartFolderFactsList result;
        bool isDone = false;
        const Task task =
            catalog.facts({which, {}, needs}, [&](const SmartFolderFactsList& facts, bool isComplete) {
                result = facts;
                isDone = isDone || isComplete || !untilComplete;
            });
        while (!isDone)
            machine.mailbox.waitAndDrain();
        return result;
    }
};

/// What of an iteration the main thread pays: its processor time, in milliseconds.
class MainThreadTime {
public:
    explicit MainThreadTime(benchmark::State& state) : _state(state), _before(now()) {}
    ~MainThreadTime() {
        _state.counters["main_ms"] =
            benchmark::Counter(now() - _before, benchmark::Counter::kAvgIterations);
    }

private:
    static double now() {
        timespec time{};
        ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
    }

    benchmark::State& _state;
    double _before;
};

Fixture& fixture(const benchmark::State& state) {
    static std::map<int64_t, Fixture> fixtures;
    return fixtures.try_emplace(state.range(0), static_cast<int>(state.range(0))).first->second;
}

void floorStatAndRead(benchmark::State& state) {
    Fixture& f = fixture(state);
    for (auto _ : state) {
        for (const AppEntry& app : std::as_const(f.apps)) {
            benchmark::DoNotOptimize(f.machine.files.status(app.path));
            const QString info = app.path + QStringLiteral("/Contents/Info.plist");
            benchmark::DoNotOptimize(f.machine.files.status(info));
            benchmark::DoNotOptimize(f.machine.files.read(info, 1u << 20));
        }
    }
}

/// A first start: nothing is known, tools are asked.
void scanToFirstFolders(benchmark::State& state) {
    Fixture& f = fixture(state);
    const MainThreadTime time(state);
    for (auto _ : state) {
        SmartFolderFactsCatalog catalog(f.machine.machine);
        const SmartFolderFactsIndex index(f.gather(catalog, f.apps, needsOf(f.definitions), false),
                                          f.machine.locale, f.machine.files);
        benchmark::DoNotOptimize(
            SmartFolderEvaluator::evaluateAll(f.definitions, index, f.machine.time.now(), f.calendar));
    }
    f.machine.workers.waitIdle();
}

/// A later start: all is known that tools can tell.
void secondStart(benchmark::State& state) {
    Fixture& f = fixture(state);
    {
        SmartFolderFactsCatalog catalog(f.machine.machine, f.cachePath);
        f.gather(catalog, f.apps, allNeeds(), true);
        f.machine.workers.waitIdle();
    }
    const qsizetype before = f.machine.commands.commands().size();
    const MainThreadTime time(state);
    for (auto _ : state) {
        SmartFolderFactsCatalog catalog(f.machine.machine, f.cachePath);
        f.gather(catalog, f.apps, allNeeds(), true);
    }
    state.counters["tools"] = static_cast<double>(f.machine.commands.commands().size() - before);
}

/// A round while nothing has changed.
void unchangedRound(benchmark::State& state) {
    Fixture& f = fixture(state);
    SmartFolderFactsCatalog catalog(f.machine.machine, f.cachePath);
    f.gather(catalog, f.apps, allNeeds(), true);
    const MainThreadTime time(state);
    for (auto _ : state)
        f.gather(catalog, f.apps, allNeeds(), true);
}

void factsOfOne(benchmark::State& state) {
    Fixture& f = fixture(state);
    quint64 inspected = 0;
    for (auto _ : state) {
        SmartFolderFactsCatalog catalog(f.machine.machine);
        f.gather(catalog, {f.apps.first()}, allNeeds(), true);
        inspected = catalog.inspectionCount();
    }
    state.counters["inspected"] = static_cast<double>(inspected);
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(135)->Arg(5'000)->UseRealTime()->MeasureProcessCPUTime()->Unit(
        benchmark::kMillisecond);
}
BENCHMARK(floorStatAndRead)->Apply(sizes);
BENCHMARK(scanToFirstFolders)->Apply(sizes);
BENCHMARK(secondStart)->Apply(sizes);
BENCHMARK(unchangedRound)->Apply(sizes);
BENCHMARK(factsOfOne)->Apply(sizes);

} // namespace
} // namespace tessellar

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
