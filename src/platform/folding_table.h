#pragma once

#include <QString>

#include <array>
#include <cstdint>
#include <map>

namespace tessellar {

/// Folds case, diacritics and width with one table look-up per character; `Locale` defines the folding.
/// Two tables, built on first use: one for Turkic languages, one for all others.
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
    /// Maps each code unit of NFC text to its folding, or to an escape: a surrogate, which no character
    /// folds to.
    std::array<char16_t, 0x10000> _units;
    std::map<char16_t, QString> _expansions; ///< ß to ss, ligatures
};

} // namespace tessellar
