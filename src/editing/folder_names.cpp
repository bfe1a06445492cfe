#include "editing/folder_names.h"

#include "platform/texts.h"

#include <QHash>

namespace tessellar {
namespace {

struct Word {
    QString text;
    QString folded;
};

/// The significant words of a name: at least two characters, one of them a letter.
QList<Word> wordsOf(const QString& name, const Locale& locale) {
    QList<Word> words;
    qsizetype start = 0;
    bool hasLetter = false;
    for (qsizetype i = 0; i <= name.size(); ++i) {
        const QChar c = i < name.size() ? name.at(i) : QChar(u' ');
        if (c.isLetterOrNumber() || c.isMark() || c.isSurrogate()) {
            hasLetter = hasLetter || c.isLetter() || c.isSurrogate();
            continue;
        }
        const QString text = name.sliced(start, i - start);
        if (hasLetter && characterCount(text) > 1)
            words.append({text, locale.folded(text)});
        start = i + 1;
        hasLetter = false;
    }
    return words;
}

std::optional<QString> majorityCategory(const QList<AppEntry>& apps) {
    QHash<QString, qsizetype> counts;
    for (const AppEntry& app : apps) {
        const auto category = app.category ? categoryDisplayName(*app.category) : std::nullopt;
        if (category && 2 * ++counts[*category] > apps.size())
            return category;
    }
    return std::nullopt;
}

std::optional<QString> commonWord(const QStringList& names, const Locale& locale) {
    if (names.size() < 2)
        return std::nullopt;
    QList<Word> candidates = wordsOf(names.first(), locale);
    for (const QString& name : names.sliced(1)) {
        const QList<Word> words = wordsOf(name, locale);
        candidates.removeIf([&](const Word& candidate) {
            return std::ranges::none_of(
                words, [&](const Word& word) { return word.folded == candidate.folded; });
        });
    }
    return candidates.isEmpty() ? std::nullopt : std::optional(candidates.first().text);
}

} // namespace

QString suggestedFolderName(const Page& tiles, const Locale& locale) {
    QList<AppEntry> apps;
    QStringList names;
    for (const LaunchpadItem& tile : tiles) {
        if (const AppEntry* app = tile.app()) {
            apps.append(*app);
            names.append(app->name);
        } else if (const FolderEntry* folder = tile.folder()) {
            apps += allApplications(*folder);
            names.append(folder->name);
        }
    }
    if (const auto category = majorityCategory(apps))
        return *category;
    if (const auto word = commonWord(names, locale))
        return *word;
    return Texts::tr("Folder");
}

} // namespace tessellar
