#include "smartfolders/smart_folder_facts_index.h"

#include <bit>
#include <numeric>

namespace tessellar {

namespace {

double magnitude(double fact) { return fact; }
double magnitude(Instant fact) { return fact.secondsSince2001; }

template <typename Kind>
SmartFolderComparable<Kind> prepared(const typename Kind::Fact& fact,
                                     const SmartFolderFactsIndex& index) {
    if constexpr (std::same_as<Kind, SmartFolderTextKind>) {
        return ComparableText(index.normalized(fact));
    } else if constexpr (std::same_as<Kind, SmartFolderChoiceKind>) {
        QStringList values;
        for (const QString& value : fact)
            values.append(index.normalized(value));
        return values;
    } else if constexpr (std::same_as<Kind, SmartFolderVersionKind>) {
        return SmartFolderFactsIndex::versionSortKey(QStringView(fact).trimmed());
    } else {
        return fact;
    }
}

/// Whether equal facts share a slot. Dates and counts mostly differ, so looking them up does not pay.
template <typename Kind>
constexpr bool isInterned =
    !std::same_as<Kind, SmartFolderDateKind> && !std::same_as<Kind, SmartFolderNumberKind>;

std::size_t hashOf(bool fact) { return fact; }
std::size_t hashOf(const QString& fact) {
    const QStringView text = fact;
    return std::hash<std::u16string_view>()({text.utf16(), static_cast<std::size_t>(text.size())});
}
std::size_t hashOf(const QStringList& fact) {
    std::size_t hash = 0;
    for (const QString& value : fact)
        hash = hash * 31 + hashOf(value);
    return hash;
}

/// Deduplicates facts. Its keys are the facts that are stored already; QHash, which would copy them and
/// hashes with AES, took a quarter of the time of building an index.
template <typename Fact>
class Interner {
public:
    explicit Interner(QList<Fact>& facts, qsizetype mostFacts)
        : _facts(facts), _places(std::bit_ceil(static_cast<std::size_t>(mostFacts) * 2 + 1)) {}

    int slotOf(const Fact& fact) {
        const std::size_t hash = hashOf(fact);
        for (std::size_t at = hash;; ++at) {
            Place& place = _places[at & (_places.size() - 1)];
            if (place.slot < 0) {
                place = {static_cast<int>(_facts.size()), static_cast<unsigned>(hash)};
                _facts.append(fact);
                return place.slot;
            }
            if (place.hash == static_cast<unsigned>(hash) && _facts.at(place.slot) == fact)
                return place.slot;
        }
    }

private:
    struct Place {
        int slot = -1;
        unsigned hash = 0;
    };

    QList<Fact>& _facts;
    std::vector<Place> _places; ///< at least half of them are free
};

/// The first bytes of a key as a number with the same order: it decides most comparisons.
quint64 prefix(const QByteArray& key) {
    quint64 result = 0;
    for (qsizetype i = 0; i < 8; ++i)
        result = result << 8 | (i < key.size() ? static_cast<quint8>(key[i]) : 0);
    return result;
}
quint64 prefix(const std::u16string& key) {
    quint64 result = 0;
    for (std::size_t i = 0; i < 4; ++i)
        result = result << 16 | (i < key.size() ? key[i] : 0);
    return result;
}

/// The rank of each key; equal keys have the same rank.
template <typename Key>
std::vector<double> ranks(const std::vector<Key>& keys) {
    struct Item {
        quint64 prefix;
        std::size_t place;
    };
    std::vector<Item> items;
    items.reserve(keys.size());
    for (const Key& key : keys)
        items.push_back({prefix(key), items.size()});
    const auto less = [&](const Item& a, const Item& b) {
        return a.prefix != b.prefix ? a.prefix < b.prefix : keys[a.place] < keys[b.place];
    };
    std::ranges::sort(items, less);
    std::vector<double> result(keys.size());
    for (std::size_t i = 1; i < items.size(); ++i)
        result[items[i].place] = result[items[i - 1].place] + less(items[i - 1], items[i]);
    return result;
}

} // namespace

SmartFolderFactsIndex::SmartFolderFactsIndex(SmartFolderFactsList facts, const Locale& locale,
                                             const FileSystem& files)
    : _facts(std::move(facts)), _locale(locale), _files(files) {}

std::u16string SmartFolderFactsIndex::versionSortKey(QStringView version) {
    std::u16string key;
    for (qsizetype i = 0; i < version.size();) {
        const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
        if (!isDigit(version[i])) {
            key += version[i++].unicode();
            continue;
        }
        // A run of digits becomes a zero, its length and its value, without leading zeros.
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

bool SmartFolderFactsIndex::isGoodFor(const SmartFolderFactsList& facts, const Locale& locale) const {
    return facts == _facts && locale.identifier() == _locale.identifier() &&
           std::ranges::none_of(facts, [](const auto& record) {
               return record->entry.source == AppSource::legacyImport;
           });
}

template <typename Kind>
auto SmartFolderFactsIndex::column(SmartFolderField<Kind> field) const -> const Column<Kind>& {
    return std::get<Columns<Kind>>(_columns)[field.index()].value([&] { return read(field); });
}

template <typename Kind>
auto SmartFolderFactsIndex::read(SmartFolderField<Kind> field) const -> Column<Kind> {
    Column<Kind> column;
    column.slots.reserve(_facts.size());
    Interner interner(column.raw, isInterned<Kind> ? _facts.size() : 0);
    for (qsizetype place = 0; place < _facts.size(); ++place) {
        const auto fact = field.row().read(subject(place));
        if (!fact) {
            const bool isPending(_facts.at(place)->pending & field.row().needs);
            column.slots.push_back(isPending ? pending : missing);
            (isPending ? column.hasPending : column.hasMissing) = true;
        } else if constexpr (isInterned<Kind>) {
            column.slots.push_back(interner.slotOf(*fact));
        } else {
            column.slots.push_back(static_cast<int>(column.raw.size()));
            column.raw.append(*fact);
        }
    }
    column.values.reserve(static_cast<std::size_t>(column.raw.size()));
    for (const auto& fact : std::as_const(column.raw))
        column.values.push_back(prepared<Kind>(fact, *this));
    return column;
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

/// The sort values of a field's distinct facts; for texts, the rank.
template <typename Kind>
std::vector<double> SmartFolderFactsIndex::magnitudes(SmartFolderField<Kind> field) const {
    const Column<Kind>& column = this->column(field);
    if constexpr (std::same_as<Kind, SmartFolderTextKind>) {
        return ranks(looseSortKeys(column, names().keys));
    } else if constexpr (std::same_as<Kind, SmartFolderVersionKind>) {
        std::vector<std::u16string> keys;
        for (const QString& version : column.raw)
            keys.push_back(versionSortKey(version));
        return ranks(keys);
    } else {
        std::vector<double> result;
        for (const auto& fact : column.raw) {
            if constexpr (std::same_as<Kind, SmartFolderChoiceKind>)
                result.push_back(field.row().rank ? field.row().rank(fact.value(0)) : 0);
            else
                result.push_back(magnitude(fact));
        }
        return result;
    }
}

/// Most other texts equal the name, whose key is reused, unless the name keys themselves are being
/// built.
std::vector<QByteArray>
SmartFolderFactsIndex::looseSortKeys(const Column<SmartFolderTextKind>& column,
                                     const std::vector<QByteArray>& nameKeys) const {
    const auto& names = nameColumn();
    std::vector<QByteArray> keys(static_cast<std::size_t>(column.raw.size()));
    for (std::size_t place = 0; place < column.slots.size(); ++place) {
        const int slot = column.slots[place];
        if (slot < 0 || !keys[slot].isNull())
            continue;
        const QString& text = column.raw.at(slot);
        const int name = names.slots[place];
        const bool isTheName = !nameKeys.empty() && name >= 0 && names.raw.at(name) == text;
        keys[slot] = isTheName ? nameKeys[name] : _locale.looseSortKey(text);
    }
    return keys;
}

auto SmartFolderFactsIndex::nameColumn() const -> const Column<SmartFolderTextKind>& {
    return column(SmartFolderTextField("displayName"));
}

auto SmartFolderFactsIndex::names() const -> const Names& {
    return _names.value([this] { return sortedNames(); });
}

auto SmartFolderFactsIndex::sortedNames() const -> Names {
    const auto& column = nameColumn();
    Names names{.keys = looseSortKeys(column, {})};
    names.ranks = ranks(names.keys);
    const auto rank = [&](int place) { return names.ranks[column.slots[place]]; };
    const auto key = [this](int place) { return normalized(appKey(_facts.at(place)->entry)); };
    names.order.resize(_facts.size());
    std::iota(names.order.begin(), names.order.end(), 0);
    std::ranges::stable_sort(names.order, [&](int a, int b) {
        return rank(a) != rank(b) ? rank(a) < rank(b) : key(a) < key(b);
    });
    return names;
}

const std::vector<int>& SmartFolderFactsIndex::order(SmartFolderSortField field,
                                                     SmartFolderSortDirection direction) const {
    const auto& orders = _orders[field.index()].value([&] {
        return std::visit([this](auto source) { return bothOrders(source); }, field.row().source);
    });
    return orders[static_cast<std::size_t>(direction)];
}

template <typename Kind>
auto SmartFolderFactsIndex::bothOrders(SmartFolderField<Kind> source) const -> Orders {
    const auto& column = this->column(source);
    const bool isName = std::same_as<Kind, SmartFolderTextKind> && source.rawValue() == u"displayName";
    const std::vector<double> values = isName ? names().ranks : magnitudes(source);

    // In the order of names first, which the stable sort by value keeps for ties.
    struct Item {
        double magnitude;
        int place;
    };
    std::vector<Item> known;
    std::vector<int> unknown;
    known.reserve(_facts.size());
    for (const int place : names().order) {
        if (const int slot = column.slots[place]; slot >= 0)
            known.push_back({values[slot], place});
        else
            unknown.push_back(place);
    }
    std::ranges::stable_sort(known, {}, &Item::magnitude);

    Orders orders;
    for (auto& order : orders)
        order.reserve(_facts.size());
    auto& [ascending, descending] = orders;
    for (const Item& item : known)
        ascending.push_back(item.place);
    // Descending reverses the values, but not the order of ties.
    for (auto end = known.cend(); end != known.cbegin();) {
        auto begin = end - 1;
        while (begin != known.cbegin() && (begin - 1)->magnitude == begin->magnitude)
            --begin;
        for (auto item = begin; item != end; ++item)
            descending.push_back(item->place);
        end = begin;
    }
    for (auto& order : orders)
        order.insert(order.end(), unknown.begin(), unknown.end());
    return orders;
}

} // namespace tessellar
