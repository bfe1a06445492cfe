#include "app/tile_search.h"

#include "app/matched_letters.h"
#include "launcher/launcher_search.h"
#include "launcher/live_layout.h"
#include "platform/machine.h"
#include "platform/uuid_source.h"

#include <algorithm>

namespace tessellar {

/// The lowest score of a contiguous match in one of the better names. Scattered letters score less.
static constexpr double wholeMatch = 300;

TileSearch::TileSearch(LauncherViewModel& viewModel, const TileFacts& facts, const Machine& machine)
    : _viewModel(viewModel), _machine(machine), _results(facts) {
    connect(&_results, &GridModel::turned, this, &TileSearch::turnTo);
    _results.setAnnotate([this](qsizetype page, QList<TileView>& views) { annotate(page, views); });
}

void TileSearch::setText(const QString& text) {
    // Spaces alone are no query: they would only hide the grid.
    const QString now = trimmed(text).isEmpty() ? QString() : text;
    if (now == _text) {
        if (text != now)
            Q_EMIT changed();
        return;
    }
    _text = now;
    _selected.reset();
    _results.setPage(0);
    find();
    Q_EMIT changed();
}

void TileSearch::refresh() {
    _folders.reset();
    if (isActive())
        find();
}

void TileSearch::find() {
    if (!isActive()) {
        _hits.clear();
        _results.setPages({});
        return Q_EMIT selectionChanged();
    }
    _hits = _viewModel.search().search(_viewModel.shown().mode(), _text);
    const qsizetype capacity = pageGeometry(_viewModel.shown().settings()).capacity();
    _results.setPages(
        {(_hits.size() + capacity - 1) / capacity, [hits = _hits, capacity](qsizetype page) {
             Page tiles;
             for (const SearchIndex::Hit& hit : hits.mid(page * capacity, capacity))
                 tiles.append(*hit.entry);
             return tiles;
         }});
    turnTo(_results.page());
    const bool isThere = _selected && std::ranges::any_of(_hits, [this](const SearchIndex::Hit& hit) {
                             return hit.entry->id == *_selected;
                         });
    if (isThere)
        return;
    _selected = _hits.isEmpty() ? std::nullopt : std::optional(_hits.first().entry->id);
    Q_EMIT selectionChanged();
}

static void collectFolders(const Pages& pages, const QString& folder, QHash<QString, QString>& found) {
    for (const Page& page : pages)
        for (const LaunchpadItem& item : page) {
            if (const FolderEntry* inner = item.folder())
                collectFolders(inner->pages, inner->name, found);
            else if (const AppEntry* app = item.app(); app && !app->alias && !folder.isEmpty())
                found.insert(appKey(*app), folder);
        }
}

void TileSearch::prepare() {
    if (!_folders)
        collectFolders(_viewModel.shown().pages(), {}, _folders.emplace());
}

void TileSearch::annotate(qsizetype page, QList<TileView>& views) {
    const qsizetype first = page * pageGeometry(_viewModel.shown().settings()).capacity();
    prepare();
    for (qsizetype i = 0; i < views.size() && first + i < _hits.size(); ++i) {
        TileView& view = views[i];
        const QString key = view.icons.isEmpty() ? QString() : view.icons.first().appKey;
        view.markedLabel = markedLabel(view.label, _text, _machine.locale);
        view.isWeakMatch = _hits[first + i].score < wholeMatch;
        view.place =
            _viewModel.shown().hiddenKeys().contains(key) ? tr("Hidden") : _folders->value(key);
    }
}

void TileSearch::turnTo(int page) {
    _results.setPage(std::clamp(page, 0, std::max(0, _results.pageCount() - 1)));
}

void TileSearch::select(const QUuid& tile) {
    _selected = tile;
    Q_EMIT selectionChanged();
}

QString TileSearch::colored(const QString& marked, const QColor& color) {
    QString text = marked;
    return text
        .replace(QStringLiteral("<b>"), QStringLiteral("<font color=\"%1\"><b>").arg(color.name()))
        .replace(QStringLiteral("</b>"), QStringLiteral("</b></font>"));
}

std::optional<QUuid> TileSearch::resultAt(int slot) const {
    const qsizetype capacity = pageGeometry(_viewModel.shown().settings()).capacity();
    const qsizetype hit = _results.page() * capacity + slot;
    return slot >= 0 && slot < capacity && hit < _hits.size() ? std::optional(_hits[hit].entry->id)
                                                              : std::nullopt;
}

} // namespace tessellar
