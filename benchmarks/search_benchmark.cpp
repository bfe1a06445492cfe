// One keystroke over 5,000 applications, and over 50,000. Floor: looking for the same text in each
// folded name and bundle identifier, unranked.

#include "editing/search_index.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <map>

namespace tessellar {
namespace {

const QStringList words{u"Maple"_qs,  u"Studio"_qs, u"Photo"_qs,    u"Calendar"_qs, u"Editor"_qs,
                        u"Éclair"_qs, u"Note"_qs,   u"Terminal"_qs, u"Cloud"_qs,    u"Mail"_qs,
                        u"Музыка"_qs, u"Player"_qs, u"日历"_qs,     u"Sync"_qs,     u"Draw"_qs,
                        u"Reader"_qs, u"Chess"_qs,  u"Font"_qs,     u"Garden"_qs,   u"Weather"_qs};

/// A person types these; each beginning of one is a keystroke.
const QStringList typed{u"calendar"_qs,   u"maple studio"_qs, u"phed"_qs,
                        u"weather 47"_qs, u"муз"_qs,          u"xq"_qs};

AppEntry application(int number) {
    AppEntry entry;
    entry.id = QUuid(static_cast<uint>(number), 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    const QString first = words[number % words.size()];
    const QString second = words[(number / 7) % words.size()];
    entry.name = u"%1 %2 %3"_qs.arg(first, second).arg(number);
    entry.originalName = number % 20 == 0 ? u"%1 Original"_qs.arg(second) : entry.name;
    entry.bundleIdentifier =
        u"com.example%1.%2.app%3"_qs.arg(number % 300).arg(second.toLower()).arg(number);
    entry.path = u"/Applications/%1.app"_qs.arg(entry.name);
    entry.category = number % 3 ? u"public.app-category.utilities"_qs : u"public.app-category.music"_qs;
    return entry;
}

struct Fixture {
    Locale locale{u"en_US"_qs};
    SearchIndex::Input input;
    QStringList folded;
    QStringList keystrokes;

    explicit Fixture(int appCount) {
        Page page;
        for (int i = 0; i < appCount; ++i) {
            const AppEntry entry = application(i);
            if (i % 10 == 0)
                input.additionalNames.insert(appKey(entry), {u"Recently Used"_qs});
            folded += {locale.folded(entry.name), locale.folded(*entry.bundleIdentifier)};
            if (i % 10 == 0)
                page.append(FolderEntry{entry.id, u"Folder %1"_qs.arg(i), std::nullopt, {{}}});
            if (i % 10 < 4)
                std::get<FolderEntry>(page.last()).pages[0].append(entry);
            else
                page.prepend(entry);
            if (page.size() == 35)
                input.pages.append(std::exchange(page, Page()));
        }
        input.pages.append(page);
        for (const QString& text : typed)
            for (qsizetype length = 1; length <= text.size(); ++length)
                keystrokes += text.first(length);
    }
};

const Fixture& fixture(benchmark::State& state) {
    static std::map<int64_t, Fixture> instances;
    return instances.try_emplace(state.range(0), static_cast<int>(state.range(0))).first->second;
}

/// Times each keystroke by itself: what counts is the median, and the slowest.
template <typename Search>
void eachKeystroke(benchmark::State& state, Search search) {
    std::vector<double> times;
    const QStringList& keystrokes = fixture(state).keystrokes;
    qsizetype next = 0;
    for (auto _ : state) {
        const QString& query = keystrokes[next++ % keystrokes.size()];
        const auto start = std::chrono::steady_clock::now();
        search(query);
        const double time =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        times.push_back(time);
        state.SetIterationTime(time);
    }
    std::ranges::sort(times);
    state.counters["median_ms"] = times[times.size() / 2] * 1e3;
    state.counters["p99_ms"] = times[times.size() * 99 / 100] * 1e3;
}

void searchFloorPlainContains(benchmark::State& state) {
    eachKeystroke(state, [&](const QString& query) {
        qsizetype count = 0;
        for (const QString& name : fixture(state).folded)
            count += name.contains(query);
        benchmark::DoNotOptimize(count);
    });
}
BENCHMARK(searchFloorPlainContains)->Arg(5'000)->Unit(benchmark::kMillisecond)->UseManualTime();

void searchKeystroke(benchmark::State& state) {
    const SearchIndex index(fixture(state).input, fixture(state).locale);
    eachKeystroke(state, [&](const QString& query) { benchmark::DoNotOptimize(index.search(query)); });
}
BENCHMARK(searchKeystroke)->Arg(5'000)->Arg(50'000)->Unit(benchmark::kMillisecond)->UseManualTime();

void searchMakeIndex(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(SearchIndex(fixture(state).input, fixture(state).locale));
}
BENCHMARK(searchMakeIndex)->Arg(5'000)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessellar

BENCHMARK_MAIN();
