// A scan of 1,000 bundles beside the plain C calls that read the same folders and property lists, and a
// scan of an unchanged machine beside its stat calls alone. The caches of the disk are warm.

#include "benchmarks/beside_floor.h"
#include "discovery/app_scanner.h"
#include "sample/mac_builder.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
using sample::Plist;

constexpr int bundleCount = 1'000;

/// An Info.plist of about 7 kB in its XML form.
Plist::Dictionary furtherInfo() {
    Plist::Dictionary info;
    for (int i = 0; i < 12; ++i) {
        info[u"UTExportedTypeDeclarations%1"_s.arg(i)] =
            Plist::Array{Plist::Dictionary{{u"UTTypeIdentifier"_s, u"com.example.type.%1"_s.arg(i)},
                                           {u"UTTypeDescription"_s, u"A document of kind %1"_s.arg(i)},
                                           {u"UTTypeConformsTo"_s, sample::texts({u"public.data"_s})}}};
        info[u"NSUsageDescription%1"_s.arg(i)] =
            u"Needed for what you asked it to do, and that is all."_s;
    }
    return info;
}

/// Built once; gone at the end.
class Machine {
public:
    Machine() {
        mac.addStandardFolders();
        for (int i = 0; i < bundleCount; ++i) {
            const QString name = u"Application %1"_s.arg(i);
            const QString group = i % 5 ? QString() : u"/Group %1"_s.arg(i % 20);
            const bool isLocalised = i % 8 == 0;
            mac.addApplication(
                {.name = name,
                 .folder = u"/Applications"_s + group,
                 .identifier = u"com.example.application%1"_s.arg(i),
                 .category = u"public.app-category.utilities"_s,
                 .displayName = isLocalised ? std::optional(name) : std::nullopt,
                 .localizedNames = isLocalised ? QMap<QString, QString>{{u"de"_s, name + u" (de)"_s}}
                                               : QMap<QString, QString>(),
                 .plistForm = i % 4 ? sample::PlistForm::xml : sample::PlistForm::binary,
                 .info = furtherInfo()});
        }
    }

    /// As on a Mac: the root is "/", and the folder's own path leads to the applications.
    AppScanner scanner() {
        const auto status = files.status(root.path());
        return AppScanner({.files = files,
                           .settings = {{root.path() + u"/Applications"_s}},
                           .home = root.path() + u"/Users/ada"_s,
                           .languages = {u"de"_s, u"en"_s},
                           .locale = Locale(u"en_US"_s),
                           .uuids = uuids,
                           // As if the machine had been at rest for an hour.
                           .now = status->changed + std::chrono::hours(1)});
    }

    QTemporaryDir root;
    sample::MacBuilder mac{root.path()};
    FileSystem files;
    RandomUuidSource uuids;
};

Machine& machine() {
    static Machine instance;
    return instance;
}

void check(benchmark::State& state, bool holds) {
    if (!holds)
        state.SkipWithError("the scan did not do what it is measured for");
}

void scanFromNothing(benchmark::State& state) {
    ScanCache cache;
    const auto first = machine().scanner().scan(cache);
    check(state, first->apps.size() == bundleCount);
    std::vector<QByteArray> folders;
    std::vector<QByteArray> lists;
    for (const QString& folder : first->watchableDirectories)
        folders.push_back(folder.toUtf8());
    for (const AppEntry& entry : first->apps)
        lists.push_back(entry.path.toUtf8() + "/Contents/Info.plist");

    std::array<char, 64 * 1024> buffer;
    measureBesideFloor(
        state, 2,
        [&] {
            ScanCache empty;
            benchmark::DoNotOptimize(machine().scanner().scan(empty));
        },
        [&] {
            for (const QByteArray& folder : folders) {
                DIR* directory = ::opendir(folder.constData());
                while (const dirent* entry = ::readdir(directory))
                    benchmark::DoNotOptimize(entry);
                ::closedir(directory);
            }
            for (const QByteArray& list : lists) {
                const int file = ::open(list.constData(), O_RDONLY | O_CLOEXEC);
                struct stat status {};
                benchmark::DoNotOptimize(::fstat(file, &status));
                benchmark::DoNotOptimize(::read(file, buffer.data(), buffer.size()));
                ::close(file);
            }
        });
}

void scanUnchanged(benchmark::State& state) {
    ScanCache cache;
    const AppScanner scanner = machine().scanner();
    (void)scanner.scan(cache);
    std::vector<QByteArray> paths;
    for (const QString& path : cache.observedPaths())
        paths.push_back(path.toUtf8());
    measureBesideFloor(
        state, 1.2, [&] { benchmark::DoNotOptimize(scanner.scan(cache)); },
        [&] {
            struct stat status {};
            for (const QByteArray& path : paths)
                benchmark::DoNotOptimize(::stat(path.constData(), &status));
        });
    check(state, cache.work.reusedResult && cache.work.bundlesRead == 0);
    state.counters["stats"] = static_cast<double>(paths.size());
}

BENCHMARK(scanFromNothing)->UseManualTime()->Unit(benchmark::kMillisecond);
BENCHMARK(scanUnchanged)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessellar

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
