#include "editing/search_index.h"

#include "editing/arrangements.h"
#include "support/printers.h"

#include <QTextBoundaryFinder>

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;
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

const QStringList words =
    u"Calendar|Mail|İstanbul|ısı|Straße|Éclair|naïve|Ｆｕｌｌ|カレンダー|が行|日历|한글|किताब|שָׁלוֹם|"
    u"Почта|Ёлка|Ωmega|"
    u"👩‍👩‍👧 family|🇩🇪🇫🇷|e\u0301te\u0301|q\u0308x|C++|2.0-beta|.hidden|--|\r\n|I|a|\U0001F600|ﬁle"_s
        .split(u'|');

QString generatedName(test::Generator& generate) {
    QStringList parts;
    for (int n = 1 + generate.below(generate.chance(5) ? 60 : 4); n > 0; --n)
        parts += generate.pick(words);
    static const QStringList joints{u" "_s, u"-"_s, u"."_s, u""_s, u"  "_s};
    return (generate.chance(10) ? u" "_s : QString()) + parts.join(generate.pick(joints));
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
    if (generate.chance(40)) { // leave some out
        part = characters;
        part.removeIf([&](const QString&) { return !generate.chance(60); });
    }
    const QString query = part.join(QString());
    return generate.chance(30) ? query.toUpper() : query;
}

/// Gives the tiles generated names, categories, copies and aliases.
void populate(test::Generator& generate, Pages& pages, QStringList& names, QStringList& keys) {
    const auto name = [&] { return names.emplaceBack(generatedName(generate)); };
    static const QStringList categories{u"public.app-category.music"_s, u"other"_s,
                                        u"public.app-category.word-games"_s};
    for (Page& page : pages) {
        for (LaunchpadItem& item : page) {
            if (FolderEntry* inner = item.folder()) {
                populate(generate, inner->pages, names, keys);
                inner->name = name();
            }
            AppEntry* entry = item.app();
            if (!entry)
                continue;
            entry->name = name();
            entry->originalName = generate.chance(70) ? entry->name : name();
            if (generate.chance(20))
                entry->bundleIdentifier.reset();
            if (generate.chance(10))
                entry->bundleIdentifier = u"org.example.copied"_s;
            entry->isDuplicateBundleIdentifier = generate.chance(10);
            if (generate.chance(50))
                entry->category = generate.pick(categories);
            if (generate.chance(20))
                entry->alias = AppAliasReference{generate.pick(keys)};
            else
                keys += appKey(*entry);
        }
    }
}

TEST(SearchIndex, AgreesWithThePlainReading) {
    for (unsigned seed = 0; seed < 40; ++seed) {
        test::Generator generate(seed);
        const Locale locale(QStringList{u"en_US"_s, u"tr_TR"_s, u"de_DE"_s}[int(seed % 3)]);
        QStringList names, keys{u"org.example.none"_s};
        LayoutDocument layout{.pages = generate.pages(3, 5, 12, 2)};
        populate(generate, layout.pages, names, keys);
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

TEST(SearchIndex, ScoresWhatIsRareAmongGeneratedNames) {
    const struct {
        QString name;
        QString query;
        double score;
        QString locale = u"en_US"_s;
    } cases[] = {
        {u"Ünïcode"_s, u"  unicode\n"_s, 1000},
        {u"c"_s + QString(400, u'x') + u"al"_s, u"cal"_s, 1},
        {u"Calendar"_s, u" \n\t"_s, -1},
        // A family is one character, and half of one is none.
        {u"👩‍👩‍👧 ab"_s, u"👩‍👩‍👧"_s, 900 - 0.5 * 3},
        {u"👩‍👩‍👧 ab"_s, u"👩"_s, -1},
        // Words end at hyphens and full stops too; a negative score is a match all the same.
        {u"a--b.cal"_s, u"cal"_s, 780},
        {u"x "_s.repeated(95) + u"y"_s, u"y"_s, 800 - 950},
        // Dotted and dotless letters go by locale.
        {u"I"_s, u"i"_s, 1000},
        {u"Isparta"_s, u"\u0131sparta"_s, 1000, u"tr_TR"_s},
        {u"Isparta"_s, u"\u0131sparta"_s, -1},
    };
    for (const auto& c : cases) {
        AppEntry entry = app(1, c.name);
        entry.bundleIdentifier.reset();
        const auto hits = SearchIndex({.pages = {{entry}}}, Locale(c.locale)).search(c.query);
        EXPECT_EQ(hits.isEmpty() ? -1 : hits[0].score, c.score)
            << c.name.toStdString() << " by " << c.query.toStdString();
    }
}

TEST(SearchIndex, ALongRunInALesserNameBeatsAnEqualName) {
    const QString query = u"Interactive Data Viewer"_s;
    const SearchIndex index({.pages = {{folder(2, {{app(1, query)}}, u"Interactive Data Reviewer"_s)}}},
                            Locale(u"en_US"_s));
    const double inOrder = 300 + 12 * 17 * 18 / 2 - 2 * 2 + 12 * 5 * 6 / 2;
    EXPECT_EQ(index.search(query)[0].score, inOrder * 0.7);
}

TEST(SearchIndex, OneHitForEachApplicationWithItsBestName) {
    AppEntry renamed = app(1, u"Planner"_s);
    renamed.originalName = u"Agenda"_s;
    AppEntry alias = renamed;
    alias.id = test::tileID(2);
    alias.alias = AppAliasReference{appKey(renamed)};
    AppEntry lost = app(3, u"Agenda lost"_s);
    lost.alias = AppAliasReference{u"org.example.gone"_s};
    AppEntry hidden = app(4, u"Secret"_s);
    AppEntry game = app(5, u"Chess"_s);
    game.category = u"public.app-category.board-games"_s;
    AppEntry gamesApp = app(6, u"The Games"_s);
    const LayoutDocument layout{
        .pages = {{renamed, folder(20, {{alias, hidden, game}}, u"Games"_s), lost, gamesApp}},
        .hiddenKeys = {appKey(hidden)}};
    AppEntry scanned = renamed;
    scanned.name = scanned.originalName;
    const SearchIndex index(searchInput(layout, {scanned}, {{appKey(game), {u"Board"_s}}}),
                            Locale(u"en_US"_s));
    const auto found = [&](const QString& query) {
        QStringList hits;
        for (const auto& hit : index.search(query))
            hits += u"%1 %2"_s.arg(hit.entry->name).arg(hit.score);
        return hits.join(u", ");
    };
    EXPECT_EQ(found(u"agenda"_s), u"Planner 850");
    EXPECT_EQ(found(u"games"_s), u"The Games 790, Chess 700, Planner 700");
    EXPECT_EQ(found(u"board"_s), u"Chess 700");
    EXPECT_EQ(found(u"secret"_s), u"Secret 1000");
    EXPECT_EQ(found(u"org.example.6"_s), u"The Games 500");
    EXPECT_TRUE(SearchIndex().search(u"x"_s).isEmpty());
}

} // namespace
} // namespace tessellar
