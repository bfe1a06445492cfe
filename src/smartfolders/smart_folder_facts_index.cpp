#include "smartfolders/smart_folder_facts_index.h"

#include <QHash>

#include <numeric>

namespace tessellar {

namespace {

/// What facts are told apart by.
template <typename T>
const T& hashable(const T& fact) {
    return fact;
}
double hashable(Instant instant) { return instant.secondsSince2001; }

template <typename Kind>
typename Kind::Fact prepared(const typename Kind::Fact& fact, const SmartFolderFactsIndex& index) {
    if constexpr (std::same_as<Kind, SmartFolderTextKind>) {
        return index.normalized(fact);
    } else if constexpr (std::same_as<Kind, SmartFolderChoiceKind>) {
        QStringList values;
        for (const QString& value : fact)
            values.append(index.normalized(value));
        return values;
    } else if constexpr (std::same_as<Kind, SmartFolderVersionKind>) {
        return trimmed(fact);
    } else {
        return fact;
    }
}

/// The slot of a key, and whether it is a new one: slots count up from 0.
template <typename Key>
std::pair<int, bool> slotOf(QHash<Key, int>& seen, const Key& key) {
    const auto known = static_cast<int>(seen.size());
    int& slot = seen[key];
    const bool isNew = seen.size() > known;
    if (isNew)
        slot = known;
    return {slot, isNew};
}

/// Sorts places by `less` and gives each the rank of its value, equal values the same.
template <typename Less>
std::vector<double> ranks(std::size_t count, Less less) {
    std::vector<int> places(count);
    std::iota(places.begin(), places.end(), 0);
    std::ranges::sort(places, less);
    std::vector<double> result(count);
    double rank = 0;
    for (std::size_t i = 1; i < count; ++i) {
        if (less(places[i - 1], places[i]))
            ++rank;
        result[places[i]] = rank;
    }
    return result;
}

} // namespace

SmartFolderFactsIndex::SmartFolderFactsIndex(SmartFolderFactsList facts, const Locale& locale,
                                             const FileSystem& files)
    : _facts(std::move(facts)), _locale(locale), _files(files) {}

template <typename Kind>
auto SmartFolderFactsIndex::column(SmartFolderField<Kind> field) const -> const Column<Kind>& {
    auto& column = std::get<Columns<Kind>>(_columns)[field.index()];
    if (column)
        return *column;
    column.emplace();
    column->slots.reserve(_facts.size());
    using Key = std::decay_t<decltype(hashable(std::declval<typename Kind::Fact>()))>;
    QHash<Key, int> seen;
    for (qsizetype place = 0; place < _facts.size(); ++place) {
        const auto fact = field.row().read(subject(place));
        if (!fact) {
            column->slots.push_back(Column<Kind>::missing);
            continue;
        }
        const auto [slot, isNew] = slotOf(seen, hashable(*fact));
        if (isNew)
            column->values.append(prepared<Kind>(*fact, *this));
        column->slots.push_back(slot);
    }
    return *column;
}

template auto SmartFolderFactsIndex::column(SmartFolderTextField) const
    -> const Column<SmartFolderTextKind>&;
template auto SmartFolderFactsIndex::column(SmartFolderChoiceField) const
    -> const Column<SmartFolderChoiceKind>&;
template auto SmartFolderFactsIndex::column(SmartFolderNumberField) const
    -> const Column<SmartFolderNumberKind>&;
template auto SmartFolderFactsIndex::column(SmartFolderVersionField) const
    -> const Column<SmartFolderVersionKind>&;
template auto SmartFolderFactsIndex::column(SmartFolderDateField) const
    -> const Column<SmartFolderDateKind>&;
template auto SmartFolderFactsIndex::column(SmartFolderBooleanField) const
    -> const Column<SmartFolderBooleanKind>&;

auto SmartFolderFactsIndex::sortKeys(SmartFolderSortField field) const -> const SortKeys& {
    auto& keys = _sortKeys[field.index()];
    if (!keys)
        keys = readSortKeys(field);
    return *keys;
}

auto SmartFolderFactsIndex::readSortKeys(SmartFolderSortField field) const -> SortKeys {
    SortKeys keys(_facts.size());
    // The different texts of the field, in the order in which they were met, and who has which.
    QHash<QString, int> seen;
    QList<QString> texts;
    std::vector<std::pair<qsizetype, int>> owners;
    bool isVersion = false;
    for (qsizetype place = 0; place < _facts.size(); ++place) {
        const auto value = field.row().read(subject(place));
        keys[place].known = value.has_value();
        if (!value)
            continue;
        if (const auto* number = std::get_if<double>(&*value)) {
            keys[place].magnitude = *number;
            continue;
        }
        isVersion = std::holds_alternative<SmartFolderSortVersion>(*value);
        const QString& text = isVersion ? std::get<SmartFolderSortVersion>(*value).text
                                        : std::get<SmartFolderSortText>(*value).text;
        const auto [slot, isNew] = slotOf(seen, text);
        if (isNew)
            texts.append(text);
        owners.emplace_back(place, slot);
    }

    std::vector<double> rankOf;
    if (isVersion) {
        rankOf = ranks(texts.size(),
                       [&](int a, int b) { return compareNumeric(texts.at(a), texts.at(b)) < 0; });
    } else {
        std::vector<QByteArray> sortable;
        sortable.reserve(texts.size());
        for (const QString& text : std::as_const(texts))
            sortable.push_back(_locale.looseSortKey(text));
        rankOf = ranks(sortable.size(), [&](int a, int b) { return sortable[a] < sortable[b]; });
    }
    for (const auto& [place, slot] : owners)
        keys[place].magnitude = rankOf[slot];
    return keys;
}

const std::vector<int>& SmartFolderFactsIndex::order(SmartFolderSortField field,
                                                     SmartFolderSortDirection direction) const {
    auto& order = _orders[field.index()][static_cast<std::size_t>(direction)];
    if (order)
        return *order;
    const SortKeys& keys = sortKeys(field);
    const SortKeys& names = sortKeys("name");
    const bool descending = direction == SmartFolderSortDirection::descending;
    const auto key = [this](int place) { return normalized(appKey(_facts.at(place)->entry)); };
    order.emplace(_facts.size());
    std::iota(order->begin(), order->end(), 0);
    std::ranges::stable_sort(*order, [&](int a, int b) {
        if (keys[a].known != keys[b].known)
            return keys[a].known;
        if (keys[a].magnitude != keys[b].magnitude)
            return (keys[a].magnitude < keys[b].magnitude) != descending;
        if (names[a].magnitude != names[b].magnitude)
            return names[a].magnitude < names[b].magnitude;
        return key(a) < key(b);
    });
    return *order;
}

} // namespace tessellar
