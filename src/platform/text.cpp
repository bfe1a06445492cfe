#include "platform/text.h"

#include "platform/folding_table.h"

#include <QLocale>
#include <QTextBoundaryFinder>
#include <QVarLengthArray>

#include <unicode/ucol.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <array>

namespace tessellar {

namespace {

bool isDigit(QChar c) { return c >= u'0' && c <= u'9'; }

/// Consumes the run of digits at `position` and returns it without leading zeros.
QStringView takeDigits(QStringView text, qsizetype& position) {
    while (position < text.size() && text[position] == u'0')
        ++position;
    const qsizetype start = position;
    while (position < text.size() && isDigit(text[position]))
        ++position;
    return text.sliced(start, position - start);
}

struct CollatorCloser {
    void operator()(UCollator* collator) const { ucol_close(collator); }
};
using Collator = std::unique_ptr<UCollator, CollatorCloser>;

Collator openCollator(const QByteArray& identifier, UColAttributeValue strength,
                      UColAttributeValue numeric) {
    UErrorCode status = U_ZERO_ERROR;
    Collator collator(ucol_open(identifier.constData(), &status));
    if (U_FAILURE(status)) {
        status = U_ZERO_ERROR;
        collator.reset(ucol_open("", &status));
    }
    if (U_FAILURE(status))
        qFatal("The collation data of ICU is missing: %s", u_errorName(status));
    ucol_setAttribute(collator.get(), UCOL_STRENGTH, strength, &status);
    ucol_setAttribute(collator.get(), UCOL_NUMERIC_COLLATION, numeric, &status);
    // Names come from disks and downloads, so they may not be normalized.
    ucol_setAttribute(collator.get(), UCOL_NORMALIZATION_MODE, UCOL_ON, &status);
    return collator;
}

std::strong_ordering compare(const UCollator* collator, QStringView a, QStringView b) {
    return ucol_strcoll(collator, a.utf16(), static_cast<int32_t>(a.size()), b.utf16(),
                        static_cast<int32_t>(b.size())) <=> UCOL_EQUAL;
}

QByteArray sortKey(const UCollator* collator, QStringView text) {
    std::array<uint8_t, 256> buffer; // NOLINT: filled by ICU
    const auto length = static_cast<int32_t>(text.size());
    const int32_t size = ucol_getSortKey(collator, text.utf16(), length, buffer.data(),
                                         static_cast<int32_t>(buffer.size()));
    // The size includes a terminating zero, which takes no part in the order.
    if (static_cast<std::size_t>(size) <= buffer.size())
        return {reinterpret_cast<const char*>(buffer.data()), size - 1};
    QByteArray key(size, Qt::Uninitialized);
    ucol_getSortKey(collator, text.utf16(), length, reinterpret_cast<uint8_t*>(key.data()), size);
    key.chop(1);
    return key;
}

/// ICU's form of an identifier: "tr-TR", "tr_TR.UTF-8" and "tr_TR" all become "tr_TR". Invalid ones
/// become "", the root locale, and so do "C" and "POSIX", whose order by code points suits no reader.
QByteArray canonicalIdentifier(const QString& identifier) {
    const QByteArray given = identifier.toUtf8();
    std::array<char, ULOC_FULLNAME_CAPACITY> buffer{};
    constexpr auto capacity = static_cast<int32_t>(buffer.size());
    UErrorCode status = U_ZERO_ERROR;
    if (given.contains('-') && !given.contains('.')) { // a dot begins a character set: "UTF-8"
        int32_t parsed = 0;
        uloc_forLanguageTag(given.constData(), buffer.data(), capacity, &parsed, &status);
        if (parsed != given.size())
            return {};
    } else {
        uloc_canonicalize(given.constData(), buffer.data(), capacity, &status);
    }
    if (U_FAILURE(status) || status == U_STRING_NOT_TERMINATED_WARNING)
        return {};

    const QByteArray canonical(buffer.data());
    const QByteArray language =
        canonical.left(std::distance(canonical.begin(), std::ranges::find_if_not(canonical, [](char c) {
                                         return c >= 'a' && c <= 'z';
                                     })));
    const bool understood = (language.size() == 2 || language.size() == 3) &&
                            (canonical.size() == language.size() || canonical[language.size()] == '_' ||
                             canonical[language.size()] == '@');
    return understood && !canonical.endsWith("_POSIX") ? canonical : QByteArray();
}

template <typename Read>
QString part(const QByteArray& identifier, Read read) {
    std::array<char, ULOC_FULLNAME_CAPACITY> buffer{};
    UErrorCode status = U_ZERO_ERROR;
    read(identifier.constData(), buffer.data(), static_cast<int32_t>(buffer.size()), &status);
    return U_FAILURE(status) ? QString() : QString::fromLatin1(buffer.data());
}

} // namespace

QString trimmed(QStringView text) { return text.trimmed().toString(); }

qsizetype characterCount(QStringView text) {
    // No code unit below U+0300 combines with another, except a line feed after a carriage return.
    if (std::ranges::none_of(text, [](QChar c) { return c.unicode() >= 0x300 || c == u'\r'; }))
        return text.size();
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    qsizetype count = 0;
    while (finder.toNextBoundary() != -1)
        ++count;
    return count;
}

std::strong_ordering compareNumeric(QStringView a, QStringView b) {
    qsizetype i = 0;
    qsizetype j = 0;
    while (i < a.size() && j < b.size()) {
        if (isDigit(a[i]) && isDigit(b[j])) {
            const QStringView left = takeDigits(a, i);
            const QStringView right = takeDigits(b, j);
            if (left.size() != right.size())
                return left.size() <=> right.size();
            if (const int order = left.compare(right); order != 0)
                return order <=> 0;
        } else {
            if (a[i] != b[j])
                return a[i].unicode() <=> b[j].unicode();
            ++i;
            ++j;
        }
    }
    return a.size() - i <=> b.size() - j;
}

struct Locale::Data {
    Data(QByteArray id, QStringList tags)
        : identifier(std::move(id))
        , languages(std::move(tags))
        , names(openCollator(identifier, UCOL_SECONDARY, UCOL_OFF))
        , loose(openCollator(identifier, UCOL_PRIMARY, UCOL_ON))
        , folding(FoldingTable::forLanguage(part(identifier, uloc_getLanguage))) {}

    QByteArray identifier;
    QStringList languages;
    // Immutable once constructed, so that threads can share them.
    Collator names;
    Collator loose;
    const FoldingTable& folding;
};

static QStringList tagOf(const QByteArray& identifier) {
    // Drops keywords: "de_DE@collation=phonebook".
    const QByteArray name = identifier.split('@').first();
    return name.isEmpty() ? QStringList() : QStringList(QString::fromLatin1(name).replace(u'_', u'-'));
}

Locale::Locale(const QString& identifier) {
    const QByteArray canonical = canonicalIdentifier(identifier);
    _data = std::make_shared<Data>(canonical, tagOf(canonical));
}

// Qt knows where each system keeps the user's choice; ICU alone would only see a shell's variables.
Locale Locale::system() {
    const QLocale system = QLocale::system();
    Locale result(system.name());
    QStringList languages;
    for (const QString& language : system.uiLanguages())
        if (language != u"C" && !languages.contains(language))
            languages.append(language);
    if (!languages.isEmpty())
        result._data = std::make_shared<Data>(result._data->identifier, languages + result.languages());
    return result;
}

QString Locale::identifier() const { return QString::fromLatin1(_data->identifier); }
QStringList Locale::languages() const { return _data->languages; }
QString Locale::languageCode() const { return part(_data->identifier, uloc_getLanguage); }
QString Locale::region() const { return part(_data->identifier, uloc_getCountry); }

QString Locale::folded(QStringView text) const { return _data->folding.folded(text); }
QString Locale::lowercased(QStringView text) const { return _data->folding.caseFolded(text); }

std::strong_ordering Locale::compareNames(QStringView a, QStringView b) const {
    return compare(_data->names.get(), a, b);
}

QByteArray Locale::nameSortKey(QStringView text) const { return sortKey(_data->names.get(), text); }

std::strong_ordering Locale::compareLoosely(QStringView a, QStringView b) const {
    return compare(_data->loose.get(), a, b);
}

QByteArray Locale::looseSortKey(QStringView text) const { return sortKey(_data->loose.get(), text); }

} // namespace tessellar
