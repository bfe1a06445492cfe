#include "editing/search_index.h"

#include "editing/arrangements.h"
#include "editing/page_tree.h"
#include "support/printers.h"

#include <QTextBoundaryFinder>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessellar {
namespace {

using test::app;
using test::folder;

// ---- the rules of ranking written plainly, over lists of user-perceived characters

using Text = QStringList;

Text charactersOf(const QString& text) {
    Text result;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype start = 0, end; (end = finder.toNextBoundary()) > start; start = end)
        result += text.sliced(start, end - start);
    return result;
}

bool startsWith(const Text& text, const Text& prefix) { return text.mid(0, prefix.size()) == prefix; }

std::optional<double> plainScore(const Text& name, const Text& query) {
    if (name.isEmpty() || query.isEmpty())
        return std::nullopt;
    if (name == query)
        return 1000;
    if (startsWith(name, query))
        return 900 - 0.5 * double(name.size() - query.size());
    QList<Text> words{{}};
    for (const QString& character : name) {
        if (character == u" " || character == u"-" || character == u".")
            words.append(Text());
        else
            words.last().append(character);
    }
    words.removeAll({});
    for (int i = 0; i < words.size(); ++i)
        if (startsWith(words[i], query))
            return 800 - 10.0 * i;
    for (int i = 0; i < name.size(); ++i)
        if (startsWith(name.mid(i), query))
            return 600 - 0.2 * double(name.size());
    double score = 300;
    int run = 0;
    qsizetype position = 0;
    for (const QString& character : query) {
        const qsizetype found = name.indexOf(character, position);
        if (found < 0)
            return std::nullopt;
        if (found > position) {
            score -= 2 * double(found - position);
            run = 0;
        } else {
            score += 12 * ++run;
        }
        position = found + 1;
    }
    return std::max(score, 1.0);
}

struct PlainHit {
    AppEntry entry;
    std::optional<double> score;
};

class PlainSearch {
public:
    PlainSearch(const SearchIndex::Input& input, const Locale& locale)
        : _input(input), _locale(locale) {}

    QList<PlainHit> operator()(const QString& query) {
        _query = charactersOf(trimmed(_locale.folded(query)));
        _hits.clear();
        walk(_input.pages, {});
        for (const AppEntry& entry : _input.hiddenApps)
            score(entry, {});
        _hits.removeIf([](const PlainHit& hit) { return !hit.score; });
        std::ranges::stable_sort(_hits, [&](const PlainHit& a, const PlainHit& b) {
            if (a.score != b.score)
                return a.score > b.score;
            return _locale.compareNames(a.entry.name, b.entry.name) < 0;
        });
        return _hits;
    }

private:
    void walk(const Pages& pages, const QString& folderName) {
        for (const Page& page : pages) {
            for (const LaunchpadItem& item : page) {
                if (item.folder()) {
                    walk(item.folder()->pages, item.folder()->name);
                } else if (const AppEntry* entry = item.app();
                           entry && !_input.hiddenKeys.contains(appKey(*entry))) {
                    if (!entry->alias)
                        score(*entry, folderName);
                    else if (_input.catalogue.contains(entry->alias->appKey))
                        score(_input.catalogue[entry->alias->appKey], folderName);
                }
            }
        }
    }

    void score(const AppEntry& entry, const QString& folderName) {
        std::optional<double> best;
        const auto consider = [&](const QString& name, double weight) {
            const auto value = plainScore(normalised(name), _query);
            if (value && (!best || *value * weight > *best))
                best = *value * weight;
        };
        consider(entry.name, 1);
        if (entry.originalName != entry.name)
            consider(entry.originalName, 0.85);
        consider(folderName, 0.7);
        for (const QString& name : _input.additionalNames.value(appKey(entry)))
            consider(name, 0.7);
        consider(entry.bundleIdentifier.value_or(QString()), 0.5);
        consider(categoryDisplayName(entry.category.value_or(QString())).value_or(QString()), 0.4);
        // One that does not match keeps its place all the same, so that ties are ordered by what was
        // found first.
        const auto known = std::ranges::find_if(
            _hits, [&](const PlainHit& hit) { return appKey(hit.entry) == appKey(entry); });
        if (known == _hits.end())
            _hits.append({entry, best});
        else if (best > known->score)
            *known = {entry, best};
    }

    const Text& normalised(const QString& name) {
        if (!_normalised.contains(name))
            _normalised.insert(name, charactersOf(trimmed(_locale.folded(name))));
        return *_normalised.constFind(name);
    }

    SearchIndex::Input _input;
    Locale _locale;
    QHash<QString, Text> _normalised;
    Text _query;
    QList<PlainHit> _hits;
};

// ---- generated names and queries

const QStringList words{u"Calendar"_qs,   u"Mail"_qs,
                        u"İstanbul"_qs,   u"ısı"_qs,
                        u"Straße"_qs,     u"Éclair"_qs,
                        u"naïve"_qs,      u"Ｆｕｌｌ"_qs,
                        u"カレンダー"_qs, u"が行"_qs,
                        u"日历"_qs,       u"한글"_qs,
                        u"किताब"_qs,      u"שָׁלוֹם"_qs,
                        u"Почта"_qs,      u"Ёлка"_qs,
                        u"Ωmega"_qs,      u"👩‍👩‍👧 family"_qs,
                        u"🇩🇪🇫🇷"_qs,       u"e\u0301te\u0301"_qs,
                        u"q\u0308x"_qs,   u"C++"_qs,
                        u"2.0-beta"_qs,   u".hidden"_qs,
                        u"--"_qs,         u"\r\n"_qs,
                        u"I"_qs,          u"a"_qs,
                        u"\U0001F600"_qs, u"ﬁle"_qs};

QString generatedName(test::Generator& generate) {
    QStringList parts;
    for (int n = 1 + generate.below(generate.chance(5) ? 60 : 4); n > 0; --n)
        parts += generate.pick(words);
    static const QStringList joints{u" "_qs, u"-"_qs, u"."_qs, u""_qs, u"  "_qs};
    return (generate.chance(10) ? u" "_qs : QString()) + parts.join(generate.pick(joints));
}

QString generatedQuery(test::Generator& generate, const QStringList& names) {
    QString name = generate.pick(names);
    if (generate.chance(30))
        return name;
    if (generate.chance(15))
        return generatedName(generate);
    const Text characters = charactersOf(name);
    const int start = generate.below(int(characters.size()));
    Text part = characters.mid(start, 1 + generate.below(6));
    if (generate.chance(40)) // leave some out
        part = [&] {
            Text rest;
            for (const QString& character : characters)
                if (generate.chance(60))
                    rest += character;
            return rest;
        }();
    const QString query = part.join(QString());
    return generate.chance(30) ? query.toUpper() : query;
}

/// The same tiles with generated names, categories, copies and aliases.
Pages populated(test::Generator& generate, const Pages& pages, QStringList& names) {
    QStringList keys{u"org.example.none"_qs};
    const TreeRewriter rewriter{
        .enter = [&](const LaunchpadItem& item) -> std::optional<Page> {
            if (!item.app())
                return std::nullopt;
            AppEntry entry = *item.app();
            entry.name = generatedName(generate);
            entry.originalName = generate.chance(70) ? entry.name : generatedName(generate);
            names += {entry.name, entry.originalName};
            if (generate.chance(20))
                entry.bundleIdentifier.reset();
            if (generate.chance(10))
                entry.bundleIdentifier = u"org.example.copied"_qs;
            entry.isDuplicateBundleIdentifier = generate.chance(10);
            static const QStringList categories{u"public.app-category.music"_qs, u"other"_qs,
                                                u"public.app-category.word-games"_qs};
            if (generate.chance(50))
                entry.category = generate.pick(categories);
            if (generate.chance(20))
                entry.alias = AppAliasReference{generate.pick(keys)};
            else
                keys += appKey(entry);
            return Page{entry};
        },
        .leave = [&](const LaunchpadItem& item) -> std::optional<Page> {
            FolderEntry entry = *item.folder();
            entry.name = generatedName(generate);
            names += entry.name;
            return Page{entry};
        }};
    return rewriter.rewritten(pages);
}

TEST(SearchIndex, AgreesWithThePlainReading) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        test::Generator generate(seed);
        const Locale locale(QStringList{u"en_US"_qs, u"tr_TR"_qs, u"de_DE"_qs}[int(seed % 3)]);
        QStringList names;
        LayoutDocument layout{.pages = populated(generate, generate.pages(3, 5, 12, 2), names)};
        layout.hiddenKeys = generate.hiddenKeys(layout.pages, 15);
        QHash<QString, QStringList> additional;
        forEachItem(layout.pages, [&](const LaunchpadItem& item) {
            if (item.app() && generate.chance(20))
                additional[appKey(*item.app())] += generatedName(generate);
            return true;
        });
        const auto input = searchInput(layout, {}, additional);
        const SearchIndex index(input, locale);
        PlainSearch plain(input, locale);
        for (int i = 0; i < 25; ++i) {
            const QString query = generatedQuery(generate, names);
            SCOPED_TRACE(QStringLiteral("%1: \"%2\"").arg(seed).arg(query).toStdString());
            const auto hits = index.search(query);
            const auto expected = plain(query);
            ASSERT_EQ(hits.size(), expected.size());
            for (qsizetype n = 0; n < hits.size(); ++n) {
                ASSERT_EQ(hits[n].score, expected[n].score) << n;
                ASSERT_EQ(*hits[n].entry, expected[n].entry) << n;
            }
        }
    }
}

double onlyScore(const QString& name, const QString& query, const QString& locale = u"en_US"_qs) {
    AppEntry entry = app(1, name);
    entry.bundleIdentifier.reset();
    const SearchIndex index({.pages = {{entry}}}, Locale(locale));
    const auto hits = index.search(query);
    return hits.isEmpty() ? -1 : hits[0].score;
}

TEST(SearchIndex, ScoresEachKindOfMatch) {
    EXPECT_EQ(onlyScore(u"Ünïcode"_qs, u"  unicode\n"_qs), 1000);
    EXPECT_EQ(onlyScore(u"Calendar"_qs, u"cal"_qs), 897.5);
    EXPECT_EQ(onlyScore(u"My Calendar"_qs, u"cal"_qs), 790);
    EXPECT_EQ(onlyScore(u"Local Notes"_qs, u"cal"_qs), 597.8);
    EXPECT_EQ(onlyScore(u"abxcd"_qs, u"abcd"_qs), 300 + 12 + 24 - 2 + 12);
    EXPECT_EQ(onlyScore(u"c"_qs + QString(400, u'x') + u"al"_qs, u"cal"_qs), 1);
    EXPECT_EQ(onlyScore(u"Calendar"_qs, u"calx"_qs), -1);
    EXPECT_EQ(onlyScore(u"Calendar"_qs, u" \n\t"_qs), -1);
    // A family is one character, and half of one is none.
    EXPECT_EQ(onlyScore(u"👩‍👩‍👧 ab"_qs, u"👩‍👩‍👧"_qs), 900 - 0.5 * 3);
    EXPECT_EQ(onlyScore(u"👩‍👩‍👧 ab"_qs, u"👩"_qs), -1);
    // Words end at hyphens and full stops too; a negative score is a match all the same.
    EXPECT_EQ(onlyScore(u"a--b.cal"_qs, u"cal"_qs), 780);
    EXPECT_EQ(onlyScore(QString(u"x "_qs).repeated(95) + u"y"_qs, u"y"_qs), 800 - 950);
}

TEST(SearchIndex, ALongRunInALesserNameBeatsAnEqualName) {
    const QString query = u"Interactive Data Viewer"_qs;
    const SearchIndex index(
        {.pages = {{folder(2, {{app(1, query)}}, u"Interactive Data Reviewer"_qs)}}},
        Locale(u"en_US"_qs));
    const double inOrder = 300 + 12 * 17 * 18 / 2 - 2 * 2 + 12 * 5 * 6 / 2;
    EXPECT_EQ(index.search(query)[0].score, inOrder * 0.7);
}

TEST(SearchIndex, DottedAndDotlessLettersByLocale) {
    EXPECT_EQ(onlyScore(u"I"_qs, u"i"_qs), 1000);
    EXPECT_EQ(onlyScore(u"Isparta"_qs, u"\u0131sparta"_qs, u"tr_TR"_qs), 1000);
    EXPECT_EQ(onlyScore(u"Isparta"_qs, u"\u0131sparta"_qs), -1);
}

TEST(SearchIndex, OneHitForEachApplicationWithItsBestName) {
    AppEntry renamed = app(1, u"Planner"_qs);
    renamed.originalName = u"Agenda"_qs;
    AppEntry alias = renamed;
    alias.id = test::tileID(2);
    alias.alias = AppAliasReference{appKey(renamed)};
    AppEntry lost = app(3, u"Agenda lost"_qs);
    lost.alias = AppAliasReference{u"org.example.gone"_qs};
    AppEntry hidden = app(4, u"Secret"_qs);
    AppEntry game = app(5, u"Chess"_qs);
    game.category = u"public.app-category.board-games"_qs;
    AppEntry gamesApp = app(6, u"The Games"_qs);
    const LayoutDocument layout{
        .pages = {{renamed, folder(20, {{alias, hidden, game}}, u"Games"_qs), lost, gamesApp}},
        .hiddenKeys = {appKey(hidden)}};
    AppEntry scanned = renamed;
    scanned.name = scanned.originalName;
    const SearchIndex index(searchInput(layout, {scanned}, {{appKey(game), {u"Board"_qs}}}),
                            Locale(u"en_US"_qs));
    const auto found = [&](const QString& query) {
        QStringList lines;
        for (const auto& hit : index.search(query))
            lines += u"%1 %2"_qs.arg(hit.entry->name).arg(hit.score);
        return lines;
    };
    EXPECT_EQ(found(u"agenda"_qs), QStringList{u"Planner 850"_qs});
    EXPECT_EQ(found(u"games"_qs),
              (QStringList{u"The Games 790"_qs, u"Chess 700"_qs, u"Planner 700"_qs}));
    EXPECT_EQ(found(u"board"_qs), QStringList{u"Chess 700"_qs});
    EXPECT_EQ(found(u"secret"_qs), QStringList{u"Secret 1000"_qs});
    EXPECT_EQ(found(u"org.example.app6"_qs), QStringList{u"The Games 500"_qs});
    EXPECT_TRUE(SearchIndex().search(u"x"_qs).isEmpty());
}

} // namespace
} // namespace tessellar
