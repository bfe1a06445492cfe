// 50 smart folders over 5,000 applications. Floor: each name, developer, category and path folded once,
// and one search through the folded names for each rule; no versions, dates, sorting or results.

#include "smartfolders/smart_folder_evaluator.h"
#include "smartfolders/smart_folder_facts_index.h"
#include "smartfolders/smart_folder_rule.h"
#include "tests/support/sequential_uuids.h"

#include <benchmark/benchmark.h>

#include <random>

namespace tessellar {
namespace {

constexpr int applicationCount = 5'000;
constexpr int definitionCount = 50;
const Instant now = *Instant::fromIso8601(u"2026-11-14T12:00:00Z");

struct Fixture {
    std::mt19937 engine{1};
    test::SequentialUuids uuids;
    FileSystem files{QStringLiteral("/nonexistent")};
    Locale locale{QStringLiteral("en_US")};
    Calendar calendar{locale, QStringLiteral("Europe/Oslo")};
    SmartFolderFactsList facts;
    QList<SmartFolderDefinition> definitions;
    int rules = 0;

    int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(engine); }
    QString word() {
        static const QStringList syllables{
            QStringLiteral("pi"),  QStringLiteral("xel"), QStringLiteral("mar"),  QStringLiteral("to"),
            QStringLiteral("né"),  QStringLiteral("gra"), QStringLiteral("soft"), QStringLiteral("ly"),
            QStringLiteral("cut"), QStringLiteral("ver"), QStringLiteral("Ta"),   QStringLiteral("Bo")};
        QString result;
        for (int i = 2 + below(2); i > 0; --i)
            result += syllables.at(below(static_cast<int>(syllables.size())));
        return result;
    }
    template <typename E>
    E oneOf() {
        const auto& values = json::RawValues<E>::values;
        return values[below(static_cast<int>(values.size()))].first;
    }
    Instant date() { return now - std::chrono::hours(below(24 * 900)); }

    Fixture() {
        QStringList vendors;
        for (int i = 0; i < 400; ++i)
            vendors += word() + u' ' + word();
        vendors[0] = QStringLiteral("Microsoft Corporation");
        for (int i = 0; i < applicationCount; ++i) {
            SmartFolderAppFacts f;
            f.entry.id = uuids.next();
            f.entry.name = f.entry.originalName =
                word() + u' ' + word() + u' ' + QString::number(below(30));
            f.entry.bundleIdentifier = QStringLiteral("com.%1.app%2").arg(word()).arg(i);
            f.entry.path = QStringLiteral("/Applications/%1.app").arg(f.entry.name);
            f.entry.category = QStringLiteral("public.app-category.%1%2")
                                   .arg(below(25))
                                   .arg(below(4) ? QString() : QStringLiteral("-games"));
            if (below(10))
                f.developer = f.publisher = vendors.at(below(400));
            f.version = QStringLiteral("%1.%2.%3").arg(below(20)).arg(below(20)).arg(below(10));
            f.build = QString::number(below(9'000));
            f.installedDate = date();
            f.firstSeenDate = date();
            if (below(3)) {
                f.lastUsedDate = date();
                f.launchCount = below(400);
            }
            f.applicationLocation = oneOf<SmartFolderApplicationLocation>();
            f.installSource = oneOf<SmartFolderInstallSource>();
            f.distributionChannel = oneOf<SmartFolderDistributionChannel>();
            f.platform = SmartFolderPlatform::macOS;
            f.architectures = QStringList{QStringLiteral("x86_64"), QStringLiteral("arm64")};
            f.minimumMacOSVersion = QStringLiteral("1%1.%2").arg(below(5)).arg(below(8));
            f.updateStatus = oneOf<SmartFolderUpdateState>();
            f.hasCustomIcon = below(20) == 0;
            facts.append(std::make_shared<const SmartFolderAppFacts>(std::move(f)));
        }

        const auto sorts = SmartFolderSortField::all();
        for (int i = 0; i < definitionCount; ++i) {
            auto d = templateDefinition(oneOf<SmartFolderTemplate>(), uuids.next(), now, uuids);
            if (i >= 6) {
                d.sort = {sorts[i % sorts.size()], oneOf<SmartFolderSortDirection>()};
                d.matchMode = oneOf<SmartFolderMatchMode>();
                using namespace predicate;
                d.rules += SmartFolderTextRule{uuids.next(), "displayName", Contains(word().left(3))};
                d.rules += SmartFolderVersionRule{uuids.next(), "version",
                                                  IsAbove<QString>(QString::number(below(20)))};
                d.rules += SmartFolderTextRule{uuids.next(), "path",
                                               BeginsWith(QStringLiteral("/Applications"))};
            }
            rules += static_cast<int>(d.rules.size());
            definitions.append(d);
        }
    }
};

Fixture& fixture() {
    static Fixture instance;
    return instance;
}

void floorFoldAndSearch(benchmark::State& state) {
    Fixture& f = fixture();
    for (auto _ : state) {
        QStringList names;
        for (const auto& app : std::as_const(f.facts)) {
            names += f.locale.folded(app->entry.name);
            benchmark::DoNotOptimize(f.locale.folded(app->entry.path));
            benchmark::DoNotOptimize(f.locale.folded(*app->entry.category));
            if (app->developer)
                benchmark::DoNotOptimize(f.locale.folded(*app->developer));
        }
        const QString operand = QStringLiteral("microsoft");
        qsizetype found = 0;
        for (int rule = 0; rule < f.rules; ++rule)
            for (const QString& name : std::as_const(names))
                found += name.contains(operand);
        benchmark::DoNotOptimize(found);
    }
}
BENCHMARK(floorFoldAndSearch)->Unit(benchmark::kMillisecond);

/// As after a scan: nothing of the list is ready.
void evaluateFreshFacts(benchmark::State& state) {
    Fixture& f = fixture();
    qsizetype matches = 0;
    for (auto _ : state) {
        const SmartFolderFactsIndex index(f.facts, f.locale, f.files);
        matches = 0;
        for (const auto& evaluation :
             SmartFolderEvaluator::evaluateAll(f.definitions, index, now, f.calendar))
            matches += evaluation.matches.size();
    }
    state.counters["rules"] = f.rules;
    state.counters["matches"] = static_cast<double>(matches);
}
BENCHMARK(evaluateFreshFacts)->UseRealTime()->Unit(benchmark::kMillisecond);

/// As after a definition was edited: the list is ready.
void evaluateReadyFacts(benchmark::State& state) {
    Fixture& f = fixture();
    const SmartFolderFactsIndex index(f.facts, f.locale, f.files);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            SmartFolderEvaluator::evaluateAll(f.definitions, index, now, f.calendar));
}
BENCHMARK(evaluateReadyFacts)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessellar

BENCHMARK_MAIN();
