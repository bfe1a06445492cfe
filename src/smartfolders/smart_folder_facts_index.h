#pragma once

#include "platform/file_system.h"
#include "platform/text.h"
#include "smartfolders/smart_folder_fields.h"

#include <vector>

namespace tessellar {

/// A list of facts made ready for many definitions: each fact is read and normalised once for the list,
/// when the first rule asks for its field, and each sort order is worked out once.
///
/// Fills itself while it is read: one thread at a time.
class SmartFolderFactsIndex {
public:
    SmartFolderFactsIndex(SmartFolderFactsList facts, const Locale& locale, const FileSystem& files);

    const SmartFolderFactsList& facts() const { return _facts; }
    const Locale& locale() const { return _locale; }
    /// White space off both ends, then case, diacritics and width folded.
    QString normalized(QStringView text) const { return _locale.folded(text.trimmed()); }

    /// A fact as it is compared: normalised texts, trimmed versions, all else as it is.
    template <typename Kind>
    struct Column {
        static constexpr int missing = -1;
        QList<typename Kind::Fact> values; ///< the different ones; many applications share a category
        std::vector<int> slots;            ///< for each application the place in `values`, or `missing`
    };
    template <typename Kind>
    const Column<Kind>& column(SmartFolderField<Kind> field) const;

    /// The places of all applications, sorted. A smart folder's order is this one with those left out
    /// that do not match.
    const std::vector<int>& order(SmartFolderSortField field, SmartFolderSortDirection direction) const;

private:
    struct SortKey {
        bool known = false;
        double magnitude = 0; ///< of a text: its rank among those of all applications
    };
    using SortKeys = std::vector<SortKey>;

    template <typename Kind>
    using Columns = std::array<std::optional<Column<Kind>>, Kind::fields.size()>;

    const SortKeys& sortKeys(SmartFolderSortField field) const;
    SortKeys readSortKeys(SmartFolderSortField field) const;
    SmartFolderSubject subject(qsizetype place) const { return {*_facts.at(place), _files}; }

    SmartFolderFactsList _facts;
    Locale _locale;
    const FileSystem& _files;
    mutable std::tuple<Columns<SmartFolderTextKind>, Columns<SmartFolderChoiceKind>,
                       Columns<SmartFolderNumberKind>, Columns<SmartFolderVersionKind>,
                       Columns<SmartFolderDateKind>, Columns<SmartFolderBooleanKind>>
        _columns;
    mutable std::array<std::optional<SortKeys>, SmartFolderSortKind::fields.size()> _sortKeys;
    mutable std::array<std::array<std::optional<std::vector<int>>, 2>,
                       SmartFolderSortKind::fields.size()>
        _orders;
};

} // namespace tessellar
