#include "editing/search_index.h"

#include "editing/search_text.h"

#include <algorithm>

namespace tessellar {
namespace {

constexpr double nameWeight = 1.0;
constexpr double originalNameWeight = 0.85;
constexpr double folderNameWeight = 0.7;
constexpr double additionalNameWeight = 0.7;
constexpr double bundleIdentifierWeight = 0.5;
constexpr double categoryWeight = 0.4;

/// One name of an application, or a list of names, and the weight of its matches.
struct WeightedName {
    std::uint32_t number = 0; ///< of the text or list
    double weight = 0;
    bool isList = false;
};

/// Lists of names, without duplicates: thousands of applications are in the same few smart folders.
using NameLists = std::vector<std::vector<std::uint32_t>>;

/// An application found in one place. Its names are sorted by descending weight.
struct Found {
    std::shared_ptr<const AppEntry> entry;
    std::uint32_t app = 0; ///< the application's number, in the order found
    std::uint32_t namesBegin = 0;
    std::uint32_t namesEnd = 0;
    std::uint32_t rank = 0; ///< in the order of all names
};

struct Ranked {
    double score = SearchTexts::noMatch;
    std::uint32_t rank = 0;
    std::uint32_t found = 0;
};

} // namespace

struct SearchIndex::Data {
    explicit Data(const Locale& locale) : texts(locale) {}

    SearchTexts texts;
    std::vector<WeightedName> names;
    NameLists lists;
    std::vector<Found> found; ///< grouped by application, in the order found
};

namespace {

/// Collects the applications and the folders that they are found in.
class Builder {
public:
    Builder(const SearchIndex::Input& input, std::vector<WeightedName>& names, NameLists& lists,
            SearchTexts& texts)
        : _input(input), _names(names), _lists(lists), _texts(texts) {}

    void walk(const Pages& pages, const QString* folderName) {
        for (const Page& page : pages) {
            for (const LaunchpadItem& item : page) {
                if (const FolderEntry* folder = item.folder())
                    walk(folder->pages, &folder->name);
                else if (const AppEntry* app = item.app())
                    addTile(*app, folderName);
            }
        }
    }

    void add(const AppEntry& entry, const QString* folderName) {
        const QString key = appKey(entry);
        Found found;
        found.entry = std::make_shared<const AppEntry>(entry);
        found.app = numberOf(key, _apps);
        found.namesBegin = static_cast<std::uint32_t>(_names.size());
        addName(entry.name, nameWeight);
        if (entry.originalName != entry.name)
            addName(entry.originalName, originalNameWeight);
        if (folderName)
            addName(*folderName, folderNameWeight);
        if (const QStringList names = _input.additionalNames.value(key); !names.isEmpty())
            _names.push_back({listOf(names), additionalNameWeight, true});
        if (entry.bundleIdentifier)
            addName(*entry.bundleIdentifier, bundleIdentifierWeight);
        if (const auto title = entry.category ? categoryDisplayName(*entry.category) : std::nullopt)
            addName(*title, categoryWeight);
        found.namesEnd = static_cast<std::uint32_t>(_names.size());
        _found.push_back(std::move(found));
    }

    std::vector<Found> finished(const Locale& locale) {
        std::ranges::stable_sort(_found, {}, &Found::app);
        std::vector<std::pair<QByteArray, std::uint32_t>> order;
        order.reserve(_found.size());
        for (std::uint32_t i = 0; i < _found.size(); ++i)
            order.emplace_back(locale.nameSortKey(_found[i].entry->name), i);
        std::ranges::sort(order);
        for (std::uint32_t rank = 0; rank < order.size(); ++rank)
            _found[order[rank].second].rank = rank;
        return std::move(_found);
    }

private:
    void addTile(const AppEntry& tile, const QString* folderName) {
        if (_input.hiddenKeys.contains(appKey(tile)))
            return;
        if (!tile.alias) {
            add(tile, folderName);
            return;
        }
        const auto target = _input.catalogue.constFind(tile.alias->appKey);
        if (target != _input.catalogue.constEnd())
            add(*target, folderName);
    }

    void addName(const QString& name, double weight) { _names.push_back({_texts.add(name), weight}); }

    std::uint32_t listOf(const QStringList& names) {
        if (const auto known = _listNumbers.constFind(names); known != _listNumbers.constEnd())
            return *known;
        std::vector<std::uint32_t>& list = _lists.emplace_back();
        for (const QString& name : names)
            list.push_back(_texts.add(name));
        return *_listNumbers.insert(names, static_cast<std::uint32_t>(_lists.size() - 1));
    }

    const SearchIndex::Input& _input;
    std::vector<WeightedName>& _names;
    NameLists& _lists;
    QHash<QStringList, std::uint32_t> _listNumbers;
    SearchTexts& _texts;
    QHash<QString, std::uint32_t> _apps;
    std::vector<Found> _found;
};

} // namespace

SearchIndex::SearchIndex(const Input& input, const Locale& locale) {
    auto data = std::make_shared<Data>(locale);
    Builder builder(input, data->names, data->lists, data->texts);
    builder.walk(input.pages, nullptr);
    for (const AppEntry& entry : input.hiddenApps)
        builder.add(entry, nullptr);
    data->found = builder.finished(locale);
    _data = std::move(data);
}

QList<SearchIndex::Hit> SearchIndex::search(const QString& text) const {
    const auto query = _data ? _data->texts.query(text) : std::nullopt;
    if (!query)
        return {};
    const double bestScore = query->bestScore();
    std::vector<std::optional<double>> listScores(_data->lists.size());
    const auto scoreOf = [&](const WeightedName& name) {
        if (!name.isList)
            return _data->texts.score(name.number, *query);
        std::optional<double>& score = listScores[name.number];
        if (!score) {
            score = SearchTexts::noMatch;
            for (const std::uint32_t each : _data->lists[name.number])
                score = std::max(*score, _data->texts.score(each, *query));
        }
        return *score;
    };
    std::vector<Ranked> ranked;
    std::uint32_t lastApp = std::numeric_limits<std::uint32_t>::max();
    for (std::uint32_t number = 0; number < _data->found.size(); ++number) {
        const Found& found = _data->found[number];
        double best = SearchTexts::noMatch;
        for (std::uint32_t i = found.namesBegin; i < found.namesEnd; ++i) {
            const WeightedName& name = _data->names[i];
            if (best >= bestScore * name.weight)
                break; // neither this nor a later name can be better
            const double score = scoreOf(name);
            if (score != SearchTexts::noMatch)
                best = std::max(best, score * name.weight);
        }
        if (best == SearchTexts::noMatch)
            continue;
        if (std::exchange(lastApp, found.app) != found.app)
            ranked.push_back({best, found.rank, number});
        else if (best > ranked.back().score)
            ranked.back() = {best, found.rank, number};
    }
    std::ranges::sort(ranked, [](const Ranked& a, const Ranked& b) {
        return a.score != b.score ? a.score > b.score : a.rank < b.rank;
    });
    QList<Hit> hits;
    hits.reserve(static_cast<qsizetype>(ranked.size()));
    for (const Ranked& hit : ranked)
        hits.append({_data->found[hit.found].entry, hit.score});
    return hits;
}

SearchIndex::Input searchInput(const LayoutDocument& layout, const QList<AppEntry>& scannedApps,
                               const QHash<QString, QStringList>& additionalNames) {
    SearchIndex::Input input{layout.pages, layout.hiddenKeys, {}, {}, additionalNames};
    const auto add = [&](const AppEntry& entry) {
        const QString key = appKey(entry);
        if (entry.alias || input.catalogue.contains(key))
            return;
        input.catalogue.insert(key, entry);
        if (layout.hiddenKeys.contains(key))
            input.hiddenApps.append(entry);
    };
    forEachItem(layout.pages, [&](const LaunchpadItem& item) {
        if (const AppEntry* entry = item.app())
            add(*entry);
        return true;
    });
    for (const AppEntry& entry : scannedApps)
        add(entry);
    return input;
}

} // namespace tessellar
