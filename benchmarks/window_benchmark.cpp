// The launcher's start, from the making of its process to the end that follows its first whole frame,
// on a demonstration Mac of 300 applications with warm caches, drawn by software; beside a bare Qt
// Quick window that is measured the same way. The budgets: 80 ms and 100 MiB.

#include "platform/process.h"
#include "sample/demonstration_mac.h"

#include <QGuiApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>

using namespace tessellar;

namespace {

CommandResult runProgram(const char* program, QList<QByteArray> arguments) {
    ProcessRunner runner;
    return runner.run({.executable = program,
                       .arguments = std::move(arguments),
                       .environment = {{"QT_QPA_PLATFORM", "offscreen"},
                                       {"LC_ALL", "C.UTF-8"},
                                       {"HOME", "/nonexistent"},
                                       {"XDG_CACHE_HOME", qgetenv("XDG_CACHE_HOME")},
                                       {"XDG_RUNTIME_DIR", qgetenv("XDG_RUNTIME_DIR")}}},
                      {});
}

/// A number that the launcher printed after these words.
double figure(const QByteArray& output, const QByteArray& words) {
    const qsizetype at = output.indexOf(words);
    return at < 0 ? 0 : output.mid(at + words.size()).trimmed().split(' ').first().toDouble();
}

void launcherStart(benchmark::State& state, const QByteArray& root) {
    double firstFrame = 0;
    double wholeFrame = 0;
    double resident = 0;
    for (auto _ : state) {
        const CommandResult result =
            runProgram(LAUNCHER, {"--root", root, "--screen", "1440", "900", "--measure-start"});
        if (!result.succeeded()) {
            state.SkipWithError(result.standardError.constData());
            return;
        }
        firstFrame += figure(result.standardOutput, "first frame");
        wholeFrame += figure(result.standardOutput, "first whole frame");
        resident = std::max(resident, figure(result.standardOutput, "most resident"));
    }
    const auto runs = static_cast<double>(state.iterations());
    state.counters["first_frame_ms"] = firstFrame / runs;
    state.counters["first_whole_frame_ms"] = wholeFrame / runs;
    state.counters["most_resident_MiB"] = resident / 1024;
}

void bareWindowStart(benchmark::State& state) {
    for (auto _ : state)
        if (!runProgram(BARE_WINDOW, {}).succeeded())
            return state.SkipWithError("the bare window did not start");
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv); // the icons are drawn with it
    const QTemporaryDir folder;
    sample::MacBuilder mac(folder.path());
    sample::buildDemonstrationMac(mac, 300);
    if (mac.failure())
        return 1;
    const QByteArray root = folder.path().toLocal8Bit();
    (void)runProgram(LAUNCHER, {"--root", root, "--screen", "1440", "900", "--measure-start"}); // warm

    benchmark::Initialize(&argc, argv);
    benchmark::RegisterBenchmark("start of a bare window", bareWindowStart)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark("start of the launcher, 300 applications",
                                 [&](benchmark::State& state) { launcherStart(state, root); })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
