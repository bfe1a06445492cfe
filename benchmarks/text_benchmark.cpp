// Folding and sorting 5,000 names. Floors: ICU's own case folding of the same names into a buffer that
// is there already, and its folding by a transliterator, which is what the table stands in for; sorting
// by comparing units.

#include "platform/text.h"

#include <QList>

#include <benchmark/benchmark.h>
#include <unicode/translit.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <array>

namespace tessellar {
namespace {

constexpr int nameCount = 5'000;

enum Script { ascii, accented, cyrillic, japanese };

QList<QString> names(int script) {
    using Words = std::array<const char16_t*, 3>;
    static constexpr std::array<Words, 4> words{{{u"Text", u"Photo Booth", u"System"},
                                                 {u"Übung", u"Café Noir", u"Éditeur"},
                                                 {u"Почта", u"Ёлка Мир", u"Заметки"},
                                                 {u"メモ", u"写真がいい", u"設定"}}};
    QList<QString> result;
    for (unsigned i = 0; i < nameCount; ++i) {
        const auto word = [&](unsigned n) {
            return QString::fromUtf16(words[static_cast<std::size_t>(script)][n % 3]);
        };
        result.append(QStringLiteral("%1 %2 %3").arg(word(i), word(i / 3)).arg(i * 7919 % nameCount));
    }
    return result;
}

void perName(benchmark::State& state) { state.SetItemsProcessed(state.iterations() * nameCount); }

void foldFloorCaseOnly(benchmark::State& state) {
    const QList<QString> all = names(static_cast<int>(state.range(0)));
    std::array<UChar, 256> buffer;
    for (auto _ : state)
        for (const QString& name : all) {
            UErrorCode status = U_ZERO_ERROR;
            benchmark::DoNotOptimize(u_strFoldCase(
                buffer.data(), static_cast<int32_t>(buffer.size()), QStringView(name).utf16(),
                static_cast<int32_t>(name.size()), U_FOLD_CASE_DEFAULT, &status));
        }
    perName(state);
}
BENCHMARK(foldFloorCaseOnly)->ArgName("script")->DenseRange(ascii, japanese);

void foldByTransliterator(benchmark::State& state) {
    const QList<QString> all = names(static_cast<int>(state.range(0)));
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Transliterator> rules(icu::Transliterator::createInstance(
        "NFD; [:M:] Remove; Lower; Fullwidth-Halfwidth; NFC", UTRANS_FORWARD, status));
    for (auto _ : state)
        for (const QString& name : all) {
            icu::UnicodeString text(QStringView(name).utf16(), static_cast<int32_t>(name.size()));
            rules->transliterate(text);
            benchmark::DoNotOptimize(text.length());
        }
    perName(state);
}
BENCHMARK(foldByTransliterator)->ArgName("script")->DenseRange(ascii, japanese);

void fold(benchmark::State& state) {
    const QList<QString> all = names(static_cast<int>(state.range(0)));
    const Locale locale(QStringLiteral("en_US"));
    for (auto _ : state)
        for (const QString& name : all)
            benchmark::DoNotOptimize(locale.folded(name));
    perName(state);
}
BENCHMARK(fold)->ArgName("script")->DenseRange(ascii, japanese);

/// What has marks of its own takes the long way.
void foldDecomposed(benchmark::State& state) {
    QList<QString> all = names(accented);
    for (QString& name : all)
        name = name.normalized(QString::NormalizationForm_D) + QChar(0x301);
    const Locale locale(QStringLiteral("en_US"));
    for (auto _ : state)
        for (const QString& name : std::as_const(all))
            benchmark::DoNotOptimize(locale.folded(name));
    perName(state);
}
BENCHMARK(foldDecomposed);

void firstLocaleOfTheProgram(benchmark::State& state) {
    // Makes the folding table and loads ICU's data; only the first of a program does, so this is one
    // measurement and not a mean.
    for (auto _ : state)
        benchmark::DoNotOptimize(Locale(QStringLiteral("tr_TR")).folded(u"Caf\u00E9"));
}
BENCHMARK(firstLocaleOfTheProgram)->Iterations(1)->Unit(benchmark::kMillisecond);

void anotherLocale(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(Locale(QStringLiteral("tr_TR")));
}
BENCHMARK(anotherLocale)->Unit(benchmark::kMicrosecond);

void sortFloorByUnits(benchmark::State& state) {
    const QList<QString> all = names(accented);
    for (auto _ : state) {
        QList<QString> sorted = all;
        std::ranges::sort(sorted);
        benchmark::DoNotOptimize(sorted.data());
    }
}
BENCHMARK(sortFloorByUnits)->Unit(benchmark::kMillisecond);

void sortByComparing(benchmark::State& state) {
    const QList<QString> all = names(accented);
    const Locale locale(QStringLiteral("en_US"));
    for (auto _ : state) {
        QList<QString> sorted = all;
        std::ranges::sort(
            sorted, [&](const QString& a, const QString& b) { return locale.compareNames(a, b) < 0; });
        benchmark::DoNotOptimize(sorted.data());
    }
}
BENCHMARK(sortByComparing)->Unit(benchmark::kMillisecond);

void sortByKeys(benchmark::State& state) {
    const QList<QString> all = names(accented);
    const Locale locale(QStringLiteral("en_US"));
    for (auto _ : state) {
        QList<std::pair<QByteArray, QString>> sorted;
        sorted.reserve(all.size());
        for (const QString& name : all)
            sorted.emplaceBack(locale.nameSortKey(name), name);
        std::ranges::sort(sorted, {}, &std::pair<QByteArray, QString>::first);
        benchmark::DoNotOptimize(sorted.data());
    }
}
BENCHMARK(sortByKeys)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace tessellar

BENCHMARK_MAIN();
