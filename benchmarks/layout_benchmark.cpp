// Loading, merging and saving a layout of 2,000 tiles. Floors: reading and parsing the same bytes, and
// encoding the same document and writing it as safely. And what a save of 5,000 tiles takes of the main
// thread.

#include "model/layout_store.h"
#include "model/reconciliation.h"
#include "platform/atomic_file.h"
#include "platform/file_system.h"
#include "tests/support/items.h"
#include "tests/support/test_machine.h"

#include <QFile>
#include <QJsonDocument>
#include <QTemporaryDir>

#include <QCoreApplication>

#include <benchmark/benchmark.h>

namespace tessellar {
namespace {

constexpr int tileCount = 2'000;

/// A disk with the layout on it, the scan that it merges with, and the document as Qt parses it.
struct Fixture {
    QTemporaryDir directory;
    FileSystem files{directory.path()};
    const QString path = QStringLiteral("/layout.json");
    QByteArray hostPath = files.hostPath(path);
    LayoutDocument document;
    MergeContext context;
    QJsonDocument parsed;
    Locale locale{QStringLiteral("en_US")};

    Fixture() {
        for (int i = 0; i < tileCount; ++i) {
            AppEntry app = test::app(QStringLiteral("Application %1").arg(i));
            app.category = QStringLiteral("public.app-category.utilities");
            context.scannedApps.append(app);
            if (i % 40 == 0)
                document.pages.append(Page());
            if (i % 40 < 8 && i % 40 > 0) { // eight of a page's tiles are in a folder
                std::get<FolderEntry>(document.pages.last().first()).pages.first().append(app);
            } else if (i % 40 == 0) {
                document.pages.last().append(test::folder(QStringLiteral("Folder %1").arg(i), {{app}}));
            } else {
                document.pages.last().append(app);
            }
        }
        const QByteArray bytes = json::write(json::encode(document));
        parsed = QJsonDocument::fromJson(bytes);
        (void)files.writeAtomically(path, bytes);
    }
};

Fixture& fixture() {
    static Fixture instance;
    return instance;
}

void loadFloorReadAndParse(benchmark::State& state) {
    Fixture& f = fixture();
    for (auto _ : state) {
        QFile file(QString::fromUtf8(f.hostPath));
        (void)file.open(QIODevice::ReadOnly);
        benchmark::DoNotOptimize(QJsonDocument::fromJson(file.readAll()));
    }
}
BENCHMARK(loadFloorReadAndParse)->Unit(benchmark::kMillisecond);

void loadAndMerge(benchmark::State& state) {
    Fixture& f = fixture();
    for (auto _ : state) {
        const auto document =
            json::decodeDocument<LayoutDocument>(*f.files.read(f.path, maximumLayoutBytes));
        benchmark::DoNotOptimize(
            mergeLayout(document->pages, document->hiddenKeys, f.context, f.locale));
    }
}
BENCHMARK(loadAndMerge)->Unit(benchmark::kMillisecond);

void saveFloorEncodeAndWrite(benchmark::State& state) {
    Fixture& f = fixture();
    for (auto _ : state)
        benchmark::DoNotOptimize(replaceFile(f.hostPath, f.parsed.toJson(QJsonDocument::Indented)));
}
BENCHMARK(saveFloorEncodeAndWrite)->Unit(benchmark::kMillisecond)->UseRealTime();

void save(benchmark::State& state) {
    Fixture& f = fixture();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            f.files.writeAtomically(f.path, json::write(json::encode(f.document))));
}
BENCHMARK(save)->Unit(benchmark::kMillisecond)->UseRealTime();

/// From the edit's hand-over to its return, while the one before is on the disk.
void saveOnTheMainThread(benchmark::State& state) {
    test::TestMachine mac;
    LayoutStore store(mac.machine, LayoutStore::defaultDirectory(mac.machine.places));
    LayoutDocument document;
    for (int i = 0; i < 5'000; ++i) {
        if (i % 40 == 0)
            document.pages.append(Page());
        document.pages.last().append(test::app(QStringLiteral("Application %1").arg(i)));
    }
    for (auto _ : state) {
        std::get<AppEntry>(document.pages.first().first()).name += u'x';
        store.scheduleSave(LauncherWindowMode::fullScreen, document);
        store.startPendingSave(LauncherWindowMode::fullScreen);
        state.PauseTiming();
        if (!store.flush())
            return state.SkipWithError("the layout was not saved");
        mac.settle();
        state.ResumeTiming();
    }
}
BENCHMARK(saveOnTheMainThread)->Unit(benchmark::kMicrosecond)->Iterations(50);

} // namespace
} // namespace tessellar

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
