// A database of 2,000 applications in pages and folders, all of them installed: located, copied, read,
// rebuilt and resolved, beside reading the same rows by the plain C API. Budget: one second.

#include "benchmarks/beside_floor.h"
#include "discovery/launchpad_import.h"
#include "sample/launchpad_database.h"
#include "support/items.h"
#include "support/test_machine.h"

#include <sqlite3.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;

constexpr int applicationCount = 2'000;
constexpr int tilesOfAPage = 35;

/// The machine, and an arrangement in which every fifth tile is a folder of five.
class OldMac {
public:
    OldMac() {
        sample::OldLaunchpad old;
        const auto tile = [](int number) {
            const QString name = u"App %1"_s.arg(number);
            return sample::OldTile{name, u"org.example.app %1"_s.arg(number)};
        };
        for (int next = 0; next < applicationCount;) {
            if (old.pages.isEmpty() || old.pages.last().size() == tilesOfAPage)
                old.pages.append(QList<sample::OldItem>());
            if (old.pages.last().size() % 5 == 4 && next + 5 <= applicationCount) {
                sample::OldFolder folder{u"Folder %1"_s.arg(next), {{}}};
                for (int i = 0; i < 5; ++i)
                    folder.pages.first().append(tile(next++));
                old.pages.last().append(folder);
            } else {
                old.pages.last().append(tile(next++));
            }
        }
        sample::MacBuilder builder(machine.root.path());
        builder.addStandardFolders();
        path = sample::addOldLaunchpad(builder, old);
        for (int i = 0; i < applicationCount; ++i)
            installed.append(test::app(u"App %1"_s.arg(i)));
        if (builder.failure())
            throw std::runtime_error(builder.failure()->toStdString());
    }

    test::TestMachine machine;
    QString path;
    QList<AppEntry> installed;
};

int plainRows(const QByteArray& path) {
    sqlite3* database = nullptr;
    sqlite3_open_v2(path.constData(), &database, SQLITE_OPEN_READONLY, nullptr);
    int rows = 0;
    for (const char* query :
         {"SELECT item_id, title, bundleid, storeid FROM apps", "SELECT item_id, title FROM groups",
          "SELECT rowid, uuid, flags, type, parent_id, ordering FROM items"}) {
        sqlite3_stmt* statement = nullptr;
        sqlite3_prepare_v2(database, query, -1, &statement, nullptr);
        while (sqlite3_step(statement) == SQLITE_ROW) {
            benchmark::DoNotOptimize(sqlite3_column_text(statement, 1));
            ++rows;
        }
        sqlite3_finalize(statement);
    }
    sqlite3_close(database);
    return rows;
}

void importOldLaunchpad(benchmark::State& state) {
    OldMac mac;
    const QByteArray path = mac.machine.hostPath(mac.path).toUtf8();
    bool isWhole = true;
    measureBesideFloor(
        state, 0,
        [&] {
            const auto context = LaunchpadImportContext::of(mac.machine.machine, mac.installed);
            const auto result = NativeLaunchpadImporter(context).run(mac.path);
            isWhole = isWhole && result && result->importedApps.size() == applicationCount;
        },
        [&] { isWhole = isWhole && plainRows(path) > 2 * applicationCount; });
    state.counters.erase("budget");
    state.counters["budget_ms"] = 1'000;
    if (!isWhole)
        state.SkipWithError("The import failed.");
}
BENCHMARK(importOldLaunchpad)->Unit(benchmark::kMillisecond)->UseManualTime();

} // namespace
} // namespace tessellar

BENCHMARK_MAIN();
