// The search for an application's files in a Library of 100,000, beside a walk of the same folders by
// bare system calls on as many threads.

#include "benchmarks/beside_floor.h"
#include "benchmarks/plain_walk.h"
#include "cleanup/app_related_files_scanner.h"

#include <QTemporaryDir>

#include <filesystem>
#include <fstream>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
namespace fs = std::filesystem;

/// Vendors' folders with products' folders with files, as far down as the search looks.
struct LargeLibrary {
    LargeLibrary() {
        for (int i = 0; i < 50; ++i) {
            for (int j = 0; j < 100; ++j) {
                const fs::path folder = fs::path(support()) / ("Vendor " + std::to_string(i)) /
                                        ("com.example.app" + std::to_string(j));
                fs::create_directories(folder);
                for (int k = 0; k < 20; ++k)
                    std::ofstream(folder / ("com.example.file." + std::to_string(k) + ".plist"));
            }
        }
    }
    std::string support() const {
        return root.path().toStdString() + "/Users/ada/Library/Application Support";
    }

    QTemporaryDir root;
};

void relatedFiles(benchmark::State& state) {
    const LargeLibrary library;
    const FileSystem files(library.root.path());
    const AppRelatedFilesScanner scanner(files, u"/Users/ada"_s);
    const CleanupApplication quill{.names = {u"Quill Writer Professional"_s},
                                   .bundleIdentifier = u"com.example.quill"_s,
                                   .path = u"/Applications/Quill.app"_s};
    QList<CleanupApplication> others;
    for (int i = 0; i < 300; ++i)
        others.append({.names = {u"Tool Number%1"_s.arg(i)},
                       .bundleIdentifier = u"org.acme.tool%1"_s.arg(i),
                       .path = u"/Applications/Tool%1.app"_s.arg(i)});
    measureBesideFloor(
        state, 1.2, [&] { benchmark::DoNotOptimize(scanner.scan(quill, others, {})); },
        [&] { benchmark::DoNotOptimize(plainWalk(library.support())); });
}
BENCHMARK(relatedFiles)->UseManualTime()->Unit(benchmark::kMillisecond)->MinTime(2);

} // namespace
} // namespace tessellar

BENCHMARK_MAIN();
