// Walking, looking at, listing, reading and saving files. Floors: the same system calls with nothing
// around them; for the walk, on two threads as well; for a save, a write in place and fsync.

#include "benchmarks/plain_walk.h"
#include "platform/atomic_file.h"
#include "platform/directory_walker.h"

#include <QDir>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <condition_variable>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <thread>
#include <vector>

namespace tessellar {
namespace {

namespace fs = std::filesystem;

/// 100,000 files in 5,050 folders.
class Tree {
public:
    static const Tree& shared() {
        static const Tree tree;
        return tree;
    }

    std::string path() const { return _folder.path().toStdString(); }
    FileSystem host;
    static constexpr std::int64_t entries = 50 + 5'000 + 100'000;

private:
    Tree() {
        for (int i = 0; i < 50; ++i) {
            for (int j = 0; j < 100; ++j) {
                const fs::path folder = fs::path(path()) / ("Vendor " + std::to_string(i)) /
                                        ("com.example.app" + std::to_string(j));
                fs::create_directories(folder);
                for (int k = 0; k < 20; ++k)
                    std::ofstream(folder / ("com.example.file." + std::to_string(k) + ".plist"));
            }
        }
    }

    QTemporaryDir _folder;
};

void walkFloor(benchmark::State& state) {
    const Tree& tree = Tree::shared();
    for (auto _ : state) {
        if (plainWalk(tree.path()) != Tree::entries)
            state.SkipWithError("the walk missed entries");
    }
    state.SetItemsProcessed(state.iterations() * Tree::entries);
}
BENCHMARK(walkFloor)->UseRealTime()->Unit(benchmark::kMillisecond)->MinTime(2);

void walk(benchmark::State& state) {
    const Tree& tree = Tree::shared();
    const QString path = QString::fromStdString(tree.path());
    for (auto _ : state) {
        const WalkResult result =
            walkDirectory(tree.host, path, {}, {}, [](const WalkEntry&) { return WalkStep::descend; });
        if (result.entries != Tree::entries)
            state.SkipWithError("the walk missed entries");
    }
    state.SetItemsProcessed(state.iterations() * Tree::entries);
}
BENCHMARK(walk)->UseRealTime()->Unit(benchmark::kMillisecond)->MinTime(2);

void statusFloor(benchmark::State& state) {
    const std::string path =
        Tree::shared().path() + "/Vendor 1/com.example.app1/com.example.file.1.plist";
    for (auto _ : state) {
        struct stat status {};
        benchmark::DoNotOptimize(::stat(path.c_str(), &status));
    }
}
BENCHMARK(statusFloor);

/// With argument 0 on the host's own root, with 1 under a folder as root.
void status(benchmark::State& state) {
    const Tree& tree = Tree::shared();
    const QString below = QStringLiteral("/Vendor 1/com.example.app1/com.example.file.1.plist");
    const QString root = QString::fromStdString(tree.path());
    const FileSystem files(state.range(0) ? root : QStringLiteral("/"));
    const QString path = state.range(0) ? below : root + below;
    for (auto _ : state)
        benchmark::DoNotOptimize(files.status(path));
}
BENCHMARK(status)->Arg(0)->Arg(1);

void listFloor(benchmark::State& state) {
    const std::string path = Tree::shared().path() + "/Vendor 1";
    alignas(dirent64) static std::array<char, 64 * 1024> buffer;
    for (auto _ : state) {
        const int folder = ::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        while (::getdents64(folder, buffer.data(), buffer.size()) > 0) {
        }
        ::close(folder);
    }
}
BENCHMARK(listFloor);

void list(benchmark::State& state) {
    const Tree& tree = Tree::shared();
    const QString path = QString::fromStdString(tree.path()) + QStringLiteral("/Vendor 1");
    for (auto _ : state)
        benchmark::DoNotOptimize(tree.host.entries(path));
}
BENCHMARK(list);

/// Opens, looks at, reads and closes a file of 4 kB.
void readFloor(benchmark::State& state) {
    const std::string path = Tree::shared().path() + "/plist";
    std::ofstream(path) << std::string(4096, 'p');
    for (auto _ : state) {
        const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        struct stat status {};
        ::fstat(file, &status);
        QByteArray bytes(static_cast<qsizetype>(status.st_size), Qt::Uninitialized);
        benchmark::DoNotOptimize(::read(file, bytes.data(), static_cast<std::size_t>(bytes.size())));
        ::close(file);
    }
    fs::remove(path);
}
BENCHMARK(readFloor);

void read(benchmark::State& state) {
    const Tree& tree = Tree::shared();
    const std::string path = tree.path() + "/plist";
    std::ofstream(path) << std::string(4096, 'p');
    for (auto _ : state)
        benchmark::DoNotOptimize(tree.host.read(QString::fromStdString(path), 1 << 20));
    fs::remove(path);
}
BENCHMARK(read);

/// A layout of 2,000 tiles, as large as it is on the disk.
const QByteArray layout(960'000, 'l');

void saveFloor(benchmark::State& state) {
    const QTemporaryDir folder;
    const std::string path = folder.path().toStdString() + "/layout.json";
    for (auto _ : state) {
        const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        benchmark::DoNotOptimize(
            ::write(file, layout.constData(), static_cast<std::size_t>(layout.size())));
        ::fsync(file);
        ::close(file);
    }
}
BENCHMARK(saveFloor)->UseRealTime()->Unit(benchmark::kMillisecond)->MinTime(2);

void save(benchmark::State& state) {
    const QTemporaryDir folder;
    const QByteArray path = folder.path().toUtf8() + "/layout.json";
    for (auto _ : state) {
        if (!replaceFile(path, layout))
            state.SkipWithError("the save failed");
    }
}
BENCHMARK(save)->UseRealTime()->Unit(benchmark::kMillisecond)->MinTime(2);

} // namespace
} // namespace tessellar

BENCHMARK_MAIN();
