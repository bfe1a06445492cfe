#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <map>

namespace tessellar {

/// Folding of case, diacritics and width by one look-up a character; `Locale` says what the folding is.
/// There are two, made on first use and kept: for Turkic languages, and for all others.
class FoldingTable {
public:
    static const FoldingTable& forLanguage(const QString& languageCode);

    QString folded(QStringView text) const;
    QString caseFolded(QStringView text) const;

private:
    explicit FoldingTable(std::uint32_t caseOptions);

    QString foldedInFull(QStringView text) const;
    void fill();

    std::uint32_t _caseOptions;
    /// What a code unit of text in NFC becomes, or one of the escapes, which are surrogates and so
    /// nothing that a character could become.
    std::array<char16_t, 0x10000> _units;
    std::map<char16_t, QString> _expansions; ///< ß to ss, ligatures
};

} // namespace tessellar
