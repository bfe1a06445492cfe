#pragma once

#include "platform/character_bits.h"
#include "platform/file_system.h"
#include "platform/text.h"
#include "smartfolders/smart_folder_fields.h"

#include <cstring>
#include <mutex>
#include <vector>

namespace tessellar {

/// A normalized text with the set of its characters.
struct ComparableText {
    QString text;
    CharacterBits characters;

    explicit ComparableText(QString normalized)
        : text(std::move(normalized)), characters(QStringView(text)) {}
    bool contains(const ComparableText& other) const {
        return characters.containsAll(other.characters) && text.contains(other.text);
    }
    bool beginsWith(const ComparableText& other) const { return hasAt(0, other.text); }
    bool endsWith(const ComparableText& other) const {
        return hasAt(text.size() - other.text.size(), other.text);
    }

private:
    bool hasAt(qsizetype at, const QString& part) const {
        return at >= 0 && part.size() <= text.size() - at &&
               std::memcmp(text.utf16() + at, part.utf16(),
                           static_cast<std::size_t>(part.size()) * sizeof(char16_t)) == 0;
    }
};

/// What predicates compare: normalized texts, versions by sort key, anything else unchanged.
template <typename Kind>
using SmartFolderComparable =
    std::conditional_t<std::same_as<Kind, SmartFolderTextKind>, ComparableText,
                       std::conditional_t<std::same_as<Kind, SmartFolderVersionKind>, std::u16string,
                                          typename Kind::Fact>>;

/// A list of facts prepared for many definitions: each field is read and normalized once, when a rule
/// first needs it, and each sort order is computed once. Thread-safe; concurrent requests for the same
/// value wait for it.
class SmartFolderFactsIndex {
public:
    SmartFolderFactsIndex(SmartFolderFactsList facts, const Locale& locale, const FileSystem& files);

    const SmartFolderFactsList& facts() const { return _facts; }
    /// Whether this index is still valid for these facts; never with entries of a legacy import, whose
    /// facts depend on the disk.
    bool isGoodFor(const SmartFolderFactsList& facts, const Locale& locale) const;
    /// Trimmed, then case, diacritics and width folded.
    QString normalized(QStringView text) const { return _locale.folded(text.trimmed()); }
    /// A key that sorts like `compareNumeric`, but is cheaper to compare.
    static std::u16string versionSortKey(QStringView version);

    /// Slots of missing facts: for good, or until gathered.
    static constexpr int missing = -1;
    static constexpr int pending = -2;
    /// One field of all applications.
    template <typename Kind>
    struct Column {
        QList<typename Kind::Fact> raw; ///< mostly distinct: many applications share a category
        std::vector<SmartFolderComparable<Kind>> values; ///< the same, in comparable form
        bool hasMissing = false;
        bool hasPending = false;
        std::vector<int> slots; ///< per application: an index into both, or one of the constants above
    };
    template <typename Kind>
    const Column<Kind>& column(SmartFolderField<Kind> field) const;

    /// The indices of all applications, sorted. A smart folder shows the matching subset in this order.
    const std::vector<int>& order(SmartFolderSortField field, SmartFolderSortDirection direction) const;

private:
    /// Computed on first use.
    template <typename Value>
    class Lazy {
    public:
        const Value& value(const auto& make) const {
            std::call_once(_once, [&] { _value = make(); });
            return _value;
        }

    private:
        mutable std::once_flag _once;
        mutable Value _value;
    };
    template <typename Kind>
    using Columns = std::array<Lazy<Column<Kind>>, Kind::fields.size()>;
    struct Names {
        std::vector<QByteArray> keys;
        std::vector<double> ranks;
        std::vector<int> order; ///< indices, sorted by name, then app key
    };
    using Orders = std::array<std::vector<int>, 2>; ///< ascending, descending

    template <typename Kind>
    Column<Kind> read(SmartFolderField<Kind> field) const;
    const Column<SmartFolderTextKind>& nameColumn() const;
    const Names& names() const;
    Names sortedNames() const;
    std::vector<QByteArray> looseSortKeys(const Column<SmartFolderTextKind>& column,
                                          const std::vector<QByteArray>& nameKeys) const;
    template <typename Kind>
    std::vector<double> magnitudes(SmartFolderField<Kind> field) const;
    template <typename Kind>
    Orders bothOrders(SmartFolderField<Kind> source) const;
    SmartFolderSubject subject(qsizetype place) const { return {*_facts.at(place), _files}; }

    SmartFolderFactsList _facts;
    Locale _locale;
    const FileSystem& _files;
    std::tuple<Columns<SmartFolderTextKind>, Columns<SmartFolderChoiceKind>,
               Columns<SmartFolderNumberKind>, Columns<SmartFolderVersionKind>,
               Columns<SmartFolderDateKind>, Columns<SmartFolderBooleanKind>>
        _columns;
    Lazy<Names> _names;
    std::array<Lazy<Orders>, SmartFolderSortKind::fields.size()> _orders;
};

} // namespace tessellar
