#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <compare>
#include <memory>

namespace tessellar {

/// White space and line breaks taken off both ends.
QString trimmed(QStringView text);

/// The number of user-perceived characters (extended grapheme clusters).
qsizetype characterCount(QStringView text);

/// Numeric string comparison: runs of ASCII digits compare by value, whatever their length, all else
/// by character; a prefix is smaller. Used for versions; knows no locale and no white space.
std::strong_ordering compareNumeric(QStringView a, QStringView b);

/// How a user's language folds, compares and writes text. A cheap value; any thread may use a copy.
///
/// Folding follows the Mac's own: to NFC; full-width forms to their usual ones (U+FF00 to U+FFEF);
/// full case folding (ß becomes ss), with dotless and dotted i kept apart under Turkic languages;
/// diacritics dropped only where the base lies below U+0510, so that kana, Hangul and Hebrew keep
/// theirs; ø, ł and æ stay. It runs through a table made once from ICU: some 25 ns a name where a
/// transliterator takes more than a microsecond.
class Locale {
public:
    /// An ICU or BCP 47 identifier ("en_US", "tr-TR"); what is not understood acts as the root locale.
    explicit Locale(const QString& identifier);
    /// The user's own, from the environment.
    static Locale system();

    QString identifier() const;
    QString languageCode() const; ///< "en"
    QString region() const;       ///< "US"; empty when it has none
    /// All that the user reads, in order of preference, as tags: "zh-Hant-HK", "en". For other locales
    /// than the user's own, its language alone.
    QStringList languages() const;

    /// Case, diacritics and width folded; not trimmed.
    QString folded(QStringView text) const;
    /// Case folded alone, for file extensions and the like.
    QString lowercased(QStringView text) const;

    /// Localised case-insensitive comparison of names: accents count, case does not.
    std::strong_ordering compareNames(QStringView a, QStringView b) const;
    /// A key whose byte order is the order of `compareNames`; worth making for a few hundred names.
    QByteArray nameSortKey(QStringView text) const;
    /// Case, diacritics and width ignored, digit runs by value.
    std::strong_ordering compareLoosely(QStringView a, QStringView b) const;
    QByteArray looseSortKey(QStringView text) const;

private:
    struct Data;
    std::shared_ptr<const Data> _data;
};

} // namespace tessellar
