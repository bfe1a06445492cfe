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

/// Whether equal facts share a slot. Dates and counts are told apart sooner than looked up.
template <typename Kind>
constexpr bool isInterned =
    !std::same_as<Kind, SmartFolderDateKind> && !std::same_as<Kind, SmartFolderNumberKind>;

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

/// A key whose order is that of `compareNumeric`, and cheaper to compare: a run of digits becomes a
/// zero, the length of its value and the value.
std::u16string versionSortKey(QStringView version) {
    std::u16string key;
    for (qsizetype i = 0; i < version.size();) {
        const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
        if (!isDigit(version[i])) {
            key += version[i++].unicode();
            continue;
        }
        while (i < version.size() && version[i] == u'0')
            ++i;
        qsizetype length = 0;
        while (i + length < version.size() && isDigit(version[i + length]))
            ++length;
        key += u'0';
        key += static_cast<char16_t>(length >> 16);
        key += static_cast<char16_t>(length);
        for (; length > 0; --length)
            key += version[i++].unicode();
    }
    return key;
}

/// The rank of each key, equal ones the same.
template <typename Key>
std::vector<double> ranks(const std::vector<Key>& keys) {
    std::vector<int> places(keys.size());
    std::iota(places.begin(), places.end(), 0);
    std::ranges::sort(places, [&](int a, int b) { return keys[a] < keys[b]; });
    std::vector<double> result(keys.size());
    for (std::size_t i = 1; i < places.size(); ++i)
        result[places[i]] = result[places[i - 1]] + (keys[places[i - 1]] < keys[places[i]]);
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
    if constexpr (isInterned<Kind>)
        seen.reserve(_facts.size());
    for (qsizetype place = 0; place < _facts.size(); ++place) {
        const auto fact = field.row().read(subject(place));
        if (!fact) {
            column->slots.push_back(Column<Kind>::missing);
            continue;
        }
        if constexpr (!isInterned<Kind>) {
            column->slots.push_back(static_cast<int>(column->raw.size()));
            column->raw.append(*fact);
            continue;
        }
        const auto [slot, isNew] = slotOf(seen, hashable(*fact));
        if (isNew)
            column->raw.append(*fact);
        column->slots.push_back(slot);
    }
    for (const auto& fact : std::as_const(column->raw))
        column->values.append(prepared<Kind>(fact, *this));
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

/// What the different facts of a field sort by; of a text, its rank among them.
template <typename Kind>
std::vector<double> SmartFolderFactsIndex::magnitudes(const Column<Kind>& column) const {
    if constexpr (std::same_as<Kind, SmartFolderTextKind>) {
        std::vector<QByteArray> keys;
        for (const QString& text : column.raw)
            keys.push_back(looseSortKey(text));
        return ranks(keys);
    } else if constexpr (std::same_as<Kind, SmartFolderVersionKind>) {
        std::vector<std::u16string> keys;
        for (const QString& version : column.raw)
            keys.push_back(versionSortKey(version));
        return ranks(keys);
    } else {
        std::vector<double> result;
        for (const auto& fact : column.raw) {
            if constexpr (std::same_as<Kind, SmartFolderChoiceKind>)
                result.push_back(sortRank(*json::fromRawValue<SmartFolderUpdateState>(fact.first())));
            else
                result.push_back(hashable(fact));
        }
        return result;
    }
}

const QByteArray& SmartFolderFactsIndex::looseSortKey(const QString& text) const {
    QByteArray& key = _looseSortKeys[text];
    if (key.isNull())
        key = _locale.looseSortKey(text);
    return key;
}

const std::vector<int>& SmartFolderFactsIndex::nameOrder() const {
    if (!_nameOrder.empty() || _facts.isEmpty())
        return _nameOrder;
    const auto& names = column(SmartFolderTextField("displayName"));
    const std::vector<double> ranks = magnitudes(names);
    const auto rank = [&](int place) { return ranks[names.slots[place]]; };
    const auto key = [this](int place) { return normalized(appKey(_facts.at(place)->entry)); };
    _nameOrder.resize(_facts.size());
    std::iota(_nameOrder.begin(), _nameOrder.end(), 0);
    std::ranges::stable_sort(_nameOrder, [&](int a, int b) {
        return rank(a) != rank(b) ? rank(a) < rank(b) : key(a) < key(b);
    });
    return _nameOrder;
}

const std::vector<int>& SmartFolderFactsIndex::order(SmartFolderSortField field,
                                                     SmartFolderSortDirection direction) const {
    auto& order = _orders[field.index()][static_cast<std::size_t>(direction)];
    if (order)
        return *order;
    // By name and key first; a stable sort by the value then leaves ties as they are.
    struct Item {
        double magnitude;
        int place;
    };
    const double sign = direction == SmartFolderSortDirection::descending ? -1 : 1;
    std::vector<Item> known;
    std::vector<int> unknown;
    known.reserve(_facts.size());
    std::visit(
        [&](auto source) {
            const auto& column = this->column(source);
            const std::vector<double> values = magnitudes(column);
            for (const int place : nameOrder()) {
                if (const int slot = column.slots[place]; slot >= 0)
                    known.push_back({sign * values[slot], place});
                else
                    unknown.push_back(place);
            }
        },
        field.row().source);
    std::ranges::stable_sort(known, {}, &Item::magnitude);
    order.emplace();
    order->reserve(_facts.size());
    for (const Item& item : known)
        order->push_back(item.place);
    order->insert(order->end(), unknown.begin(), unknown.end());
    return *order;
}

} // namespace tessellar
