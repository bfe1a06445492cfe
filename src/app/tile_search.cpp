#include "app/tile_search.h"

#include "launcher/launcher_search.h"
#include "launcher/launcher_updates.h"

#include <algorithm>

namespace tessellar {

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
    _page = 0;
    refresh();
    if (const Page best = shown().tiles(0); !best.isEmpty())
        _selected = best.first().id();
    Q_EMIT changed();
    Q_EMIT pageChanged();
    Q_EMIT selectionChanged();
}

void TileSearch::refresh() {
    Pages pages;
    if (isActive()) {
        Page found;
        for (const SearchIndex::Hit& hit : _viewModel.search().search(_viewModel.shown().mode(), _text))
            found.append(*hit.entry);
        const int capacity = pageGeometry(_viewModel.shown().settings()).capacity();
        for (qsizetype first = 0; first < found.size(); first += capacity)
            pages.append(found.mid(first, capacity));
        _results.setPages(ShownPages(pages, {}, capacity), _viewModel.shown().unavailableAppKeys(), {},
                          [this](const QString& key) { return _viewModel.updates().badge(key); });
    } else if (_results.pageCount() > 0) {
        _results.setPages({}, {}, {}, {});
    }
    setPage(_page);
}

void TileSearch::setPage(int page) {
    page = std::clamp(page, 0, std::max(0, _results.pageCount() - 1));
    if (std::exchange(_page, page) != page)
        Q_EMIT pageChanged();
}

void TileSearch::select(const QUuid& tile) {
    _selected = tile;
    Q_EMIT selectionChanged();
}

} // namespace tessellar
