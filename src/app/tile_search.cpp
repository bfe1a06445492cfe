#include "app/tile_search.h"

#include "launcher/launcher_search.h"
#include "launcher/live_layout.h"

#include <algorithm>

namespace tessellar {

TileSearch::TileSearch(LauncherViewModel& viewModel, const TileFacts& facts)
    : _viewModel(viewModel), _results(facts) {
    connect(&_results, &GridModel::turned, this, &TileSearch::turnTo);
}

void TileSearch::setText(const QString& text) {
    // Blanks alone are no query; typed first, they would only hide the grid.
    const QString now = trimmed(text).isEmpty() ? QString() : text;
    if (now == _text) {
        if (text != now)
            Q_EMIT changed();
        return;
    }
    _text = now;
    _selected.reset();
    _results.setPage(0);
    refresh();
    Q_EMIT changed();
}

void TileSearch::refresh() {
    if (!isActive()) {
        _results.setPages({});
        return Q_EMIT selectionChanged();
    }
    const auto hits = _viewModel.search().search(_viewModel.shown().mode(), _text);
    const qsizetype capacity = pageGeometry(_viewModel.shown().settings()).capacity();
    _results.setPages({(hits.size() + capacity - 1) / capacity, [hits, capacity](qsizetype page) {
                           Page tiles;
                           for (const SearchIndex::Hit& hit : hits.mid(page * capacity, capacity))
                               tiles.append(*hit.entry);
                           return tiles;
                       }});
    turnTo(_results.page());
    if (_selected)
        return;
    if (!hits.isEmpty())
        _selected = hits.first().entry->id;
    Q_EMIT selectionChanged();
}

void TileSearch::turnTo(int page) {
    _results.setPage(std::clamp(page, 0, std::max(0, _results.pageCount() - 1)));
}

void TileSearch::select(const QUuid& tile) {
    _selected = tile;
    Q_EMIT selectionChanged();
}

} // namespace tessellar
