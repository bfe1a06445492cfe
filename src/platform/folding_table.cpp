#include "platform/folding_table.h"

#include <unicode/uchar.h>
#include <unicode/unorm2.h>
#include <unicode/ustring.h>

namespace tessellar {

namespace {

constexpr char16_t isMark = 0xD800;
constexpr char16_t isExpansion = 0xD801;
constexpr char16_t isSurrogate = 0xD802;
constexpr char16_t isUnsettled = 0xD803; ///< a width form, or NFC may change it; stands for itself
                                         ///< after that
constexpr bool isEscape(char16_t unit) { return (unit & 0xF800) == 0xD800; }

/// The end of Latin, Greek and Cyrillic.
constexpr char32_t firstThatKeepsMarks = 0x510;
constexpr bool isWidthForm(char16_t unit) { return unit >= 0xFF00 && unit <= 0xFFEF; }

const UNormalizer2* normalizer(const UNormalizer2* (*get)(UErrorCode*)) {
    UErrorCode status = U_ZERO_ERROR;
    const UNormalizer2* instance = get(&status);
    if (U_FAILURE(status))
        qFatal("The normalisation data of ICU is missing: %s", u_errorName(status));
    return instance;
}

bool isCombining(char32_t c) { return (U_GET_GC_MASK(static_cast<UChar32>(c)) & U_GC_M_MASK) != 0; }

QString normalized(const QString& text) {
    static const UNormalizer2* const nfc = normalizer(unorm2_getNFCInstance);
    const auto size = static_cast<int32_t>(text.size());
    const auto* units = reinterpret_cast<const UChar*>(text.utf16());
    UErrorCode status = U_ZERO_ERROR;
    const int32_t good = unorm2_spanQuickCheckYes(nfc, units, size, &status);
    if (U_SUCCESS(status) && good == size)
        return text;
    // Composing at most triples the number of units.
    QString result(3 * text.size(), Qt::Uninitialized);
    status = U_ZERO_ERROR;
    const int32_t length = unorm2_normalize(nfc, units, size, reinterpret_cast<UChar*>(result.data()),
                                            static_cast<int32_t>(result.size()), &status);
    if (U_FAILURE(status))
        return text;
    result.truncate(length);
    return result;
}

/// The normal form of a full-width or half-width character; one step only, so that ￣ stays a macron.
char16_t usualWidth(char16_t unit) {
    static const UNormalizer2* const nfkc = normalizer(unorm2_getNFKCInstance);
    UErrorCode status = U_ZERO_ERROR;
    UChar mapped[4];
    return unorm2_getRawDecomposition(nfkc, unit, mapped, 4, &status) == 1 && U_SUCCESS(status)
               ? static_cast<char16_t>(mapped[0])
               : unit;
}

QString caseFolding(QStringView text, std::uint32_t options) {
    QString result(text.size() + 8, Qt::Uninitialized);
    for (;;) {
        UErrorCode status = U_ZERO_ERROR;
        const int32_t length =
            u_strFoldCase(reinterpret_cast<UChar*>(result.data()), static_cast<int32_t>(result.size()),
                          reinterpret_cast<const UChar*>(text.utf16()),
                          static_cast<int32_t>(text.size()), options, &status);
        if (U_SUCCESS(status)) {
            result.truncate(length);
            return result;
        }
        if (status != U_BUFFER_OVERFLOW_ERROR)
            return text.toString();
        result.resize(length);
    }
}

} // namespace

const FoldingTable& FoldingTable::forLanguage(const QString& languageCode) {
    if (languageCode == u"tr" || languageCode == u"az") {
        static const FoldingTable turkic(U_FOLD_CASE_EXCLUDE_SPECIAL_I);
        return turkic;
    }
    static const FoldingTable usual(U_FOLD_CASE_DEFAULT);
    return usual;
}

FoldingTable::FoldingTable(std::uint32_t caseOptions) : _caseOptions(caseOptions) { fill(); }

void FoldingTable::fill() {
    const UNormalizer2* const nfc = normalizer(unorm2_getNFCInstance);
    for (char32_t unit = 0; unit < _units.size(); ++unit) {
        char16_t& entry = _units[unit];
        entry = static_cast<char16_t>(unit);
        if (isEscape(entry)) {
            entry = isSurrogate;
            continue;
        }
        if (isCombining(unit)) {
            entry = isMark;
            continue;
        }
        if (isWidthForm(entry) ||
            u_getIntPropertyValue(static_cast<UChar32>(unit), UCHAR_NFC_QUICK_CHECK) != UNORM_YES) {
            entry = isUnsettled;
            continue;
        }
        UErrorCode status = U_ZERO_ERROR;
        UChar parts[32];
        const int32_t count =
            unorm2_getDecomposition(nfc, static_cast<UChar32>(unit), parts, 32, &status);
        const QChar base = count > 0 ? QChar(parts[0]) : QChar(entry);
        const bool dropsMarks = count > 0 && base.unicode() < firstThatKeepsMarks;
        const QString folding =
            caseFolding(dropsMarks ? QStringView(&base, 1) : QStringView(&entry, 1), _caseOptions);
        if (folding.size() == 1) {
            entry = folding[0].unicode();
        } else {
            _expansions.emplace(entry, folding);
            entry = isExpansion;
        }
    }
}

QString FoldingTable::folded(QStringView text) const {
    QString result(text.size(), Qt::Uninitialized);
    auto* out = reinterpret_cast<char16_t*>(result.data());
    for (const QChar c : text) {
        const char16_t unit = _units[c.unicode()];
        if (isEscape(unit))
            return foldedInFull(text);
        *out++ = unit;
    }
    return result;
}

QString FoldingTable::foldedInFull(QStringView text) const {
    QString composed = text.toString();
    for (QChar& c : composed)
        if (isWidthForm(c.unicode()))
            c = QChar(usualWidth(c.unicode()));
    composed = normalized(composed);

    QString result;
    result.reserve(composed.size() + 8);
    bool dropsMarks = false; // a leading mark without a base is kept
    for (qsizetype i = 0; i < composed.size(); ++i) {
        const char16_t original = composed[i].unicode();
        const char16_t unit = _units[original];
        if (!isEscape(unit)) {
            result.append(QChar(unit));
            dropsMarks = unit < firstThatKeepsMarks;
        } else if (unit == isMark) {
            if (!dropsMarks)
                result.append(caseFolding(QStringView(&original, 1), _caseOptions));
        } else if (unit == isExpansion) {
            result.append(_expansions.at(original));
            dropsMarks = result.back().unicode() < firstThatKeepsMarks;
        } else if (i + 1 < composed.size() && composed[i].isHighSurrogate() &&
                   composed[i + 1].isLowSurrogate()) {
            const char32_t point = QChar::surrogateToUcs4(composed[i], composed[i + 1]);
            ++i;
            if (isCombining(point)) {
                if (dropsMarks)
                    continue;
            } else {
                dropsMarks = false;
            }
            const auto folding =
                static_cast<char32_t>(u_foldCase(static_cast<UChar32>(point), _caseOptions));
            result.append(QStringView(QChar::fromUcs4(folding)));
        } else {
            result.append(composed[i]); // unpaired surrogates are kept, too
            dropsMarks = false;
        }
    }
    return result;
}

QString FoldingTable::caseFolded(QStringView text) const { return caseFolding(text, _caseOptions); }

} // namespace tessellar
