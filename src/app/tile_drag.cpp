#include "app/tile_drag.h"

#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

#include <algorithm>
#include <cmath>
#include <iterator>

namespace tessellar {

/// Pages turn within this distance from a side of the window.
static constexpr double edge = 36;

TileDrag::TileDrag(LauncherViewModel& viewModel, Scheduler& scheduler, AreaNow area)
    : _viewModel(viewModel), _scheduler(scheduler), _area(std::move(area)) {}

QString TileDrag::heldId() const { return _isHeld && _pressed ? toText(*_pressed) : QString(); }

QStringList TileDrag::tileIds() const {
    QStringList ids;
    for (const QUuid& id : _tiles)
        ids.append(toText(id));
    return ids;
}

QString TileDrag::targetId() const {
    return _drop.kind == Drop::Kind::onto ? toText(_drop.target) : QString();
}

// ---- pressing

void TileDrag::press(const QString& tileId, QPointF point, QPointF picture) {
    const QUuid id = QUuid::fromString(tileId);
    if (isActive() || !_viewModel.shown().item(id))
        return;
    _pressed = id;
    _isHeld = false;
    _pressPoint = _pointer = point;
    _grip = point - picture;
    _hold = _scheduler.after(holdDelay, [this] {
        _isHeld = true;
        Q_EMIT pressedChanged();
    });
    Q_EMIT pressedChanged();
}

void TileDrag::release() {
    _hold.cancel();
    _isHeld = false;
    if (std::exchange(_pressed, std::nullopt))
        Q_EMIT pressedChanged();
}

void TileDrag::move(QPointF point) {
    if (!isPressed() && !isActive())
        return;
    _pointer = point;
    if (!isActive()) {
        const int distance = QGuiApplication::styleHints()->startDragDistance();
        if (!_isHeld && (point - _pressPoint).manhattanLength() < distance)
            return;
        return begin();
    }
    Q_EMIT moved();
    updateDrop();
}

void TileDrag::begin() {
    const Area area = _area();
    // A smart folder's contents are determined by its rules, and a blocked arrangement cannot be
    // edited.
    const auto guard = _viewModel.history().guard(_viewModel.shown().mode());
    if (!guard || area.rulesDecide) {
        release();
        Q_EMIT refused(guard ? launcherError(EditRefusal::rulesDecide) : guard.error());
        return;
    }
    const QUuid tile = *_pressed;
    _heldTile = tile;
    _before = navigation().position();
    const QSet<QUuid>& selected = navigation().selectedItemIDs();
    _tileSet = selected.contains(tile) ? selected : QSet<QUuid>{tile};
    _tiles.clear();
    forEachItem(_viewModel.shown().pages(), [&](const LaunchpadItem& item) {
        if (_tileSet.contains(item.id()))
            _tiles.append(item.id());
        return true;
    });
    _home = {};
    if (const auto at = area.pages.placeOf(tile); at && at->page == area.page) {
        int before = 0;
        const Page tiles = area.pages.tiles(at->page);
        for (qsizetype slot = 0; slot < at->slot; ++slot)
            before += _tileSet.contains(tiles.at(slot).id()) ? 0 : 1;
        _home = {area.folder, area.page, before};
    }
    _gap = _home;
    _drop = {};
    Q_EMIT began(); // before the press is released
    release();
    ++_revision;
    Q_EMIT changed();
    Q_EMIT dropChanged();
    Q_EMIT moved();
    updateDrop();
}

// ---- moving

TileDrag::Gap TileDrag::gapIn(const Area& area) const {
    if (_gap.isIn(area))
        return _gap;
    return _home.isIn(area) ? _home : Gap{area.folder, area.page, {}};
}

bool TileDrag::isPointerNear(QPointF point) const {
    return (_pointer - point).manhattanLength() <= dragThreshold;
}

Drop TileDrag::dropOn(const Area& area, const std::optional<int>& gap) const {
    if (_sprung && area.folder == _sprung->first && isPointerNear(_sprung->second))
        return {Drop::Kind::onto, 0, {}, _sprung->first};
    if (!area.frame.contains(_pointer))
        return {};
    const DropGrid grid{.pages = area.pages,
                        .page = area.page,
                        .columns = area.cells.columns,
                        .rows = area.cells.rows,
                        .gap = gap,
                        .folder = area.folder,
                        .rulesDecide = area.rulesDecide,
                        .moving = _tileSet};
    const QPointF at = _pointer - area.frame.topLeft();
    return dropAt(grid, {(at.x() - area.cells.left) / std::max(1, area.cells.cellWidth),
                         (at.y() - area.cells.top) / std::max(1, area.cells.cellHeight)});
}

void TileDrag::updateDrop() {
    const Area area = _area();
    if (_sprung && (area.folder != _sprung->first || !isPointerNear(_sprung->second)))
        _sprung.reset();
    Gap gap = gapIn(area);
    const Drop drop = dropOn(area, gap.slot);
    if (drop.kind == Drop::Kind::nowhere)
        gap = _home.isIn(area) ? _home : Gap{area.folder, area.page, {}}; // the other tiles move back
    if (drop != _drop || gap != _gap) {
        if (drop.target != _drop.target || drop.kind != _drop.kind)
            _suggestedName.clear();
        _drop = drop;
        _gap = gap;
        ++_revision;
        Q_EMIT dropChanged();
    }
    dwell(area);
}

TileDrag::Dwell TileDrag::dwellOn(const Area& area) {
    if (area.folder && !area.frame.contains(_pointer))
        return {QStringLiteral("outside"), leaveDelay, false, [this] { navigation().closeFolder(); }};
    const LaunchpadItem* target =
        _drop.kind == Drop::Kind::onto ? _viewModel.shown().item(_drop.target) : nullptr;
    if (target && target->folder() && area.folder != _drop.target)
        return {toText(_drop.target), openDelay, false, [this, id = _drop.target] {
                    if (navigation().openFolder(id))
                        _sprung = std::pair(id, _pointer);
                }};
    const bool isLeft = _pointer.x() < area.frame.left() + edge;
    if (isLeft || _pointer.x() > area.frame.right() - edge) {
        const int by = isLeft ? -1 : 1;
        return {QStringLiteral("turn %1 %2").arg(by).arg(area.page), turnDelay, false,
                [this, by] { turnPage(by); }};
    }
    if (target && target->app())
        return {QStringLiteral("form ") + toText(_drop.target), formDelay, true, [this] {
                    Page tiles;
                    for (const QUuid& id : QList{_drop.target} + _tiles)
                        if (const LaunchpadItem* item = _viewModel.shown().item(id))
                            tiles.append(*item);
                    _suggestedName = _viewModel.editor().suggestedFolderName(tiles);
                    Q_EMIT dropChanged();
                }};
    if (_drop.kind == Drop::Kind::between && _gap.slot != _drop.slot)
        return {QStringLiteral("room %1").arg(_drop.slot), roomDelay, true, [this] {
                    _gap.slot = _drop.slot;
                    ++_revision;
                    Q_EMIT dropChanged();
                }};
    return {};
}

void TileDrag::dwell(const Area& area) {
    Dwell rest = dwellOn(area);
    const int turning = !rest.name.startsWith(u"turn")           ? 0
                        : _pointer.x() < area.frame.center().x() ? -1
                                                                 : 1;
    if (std::exchange(_turning, turning) != turning)
        Q_EMIT dropChanged();
    if (rest.name == _restingOn && (!rest.isStill || isPointerNear(_restPoint)))
        return;
    // While the pointer stays on the tile, keep the name that is already shown.
    if (rest.name == _restingOn && !_suggestedName.isEmpty())
        return;
    _restingOn = rest.name;
    _restPoint = _pointer;
    _rest.cancel();
    if (rest.then)
        _rest =
            _scheduler.after(rest.delay, [this, then = std::move(rest.then), isStill = rest.isStill] {
                if (!isStill)
                    _restingOn.clear();
                then();
                if (isActive())
                    updateDrop();
            });
}

void TileDrag::turnPage(int by) {
    const Area now = _area();
    const int page = now.page + by;
    const auto count = static_cast<int>(now.pages.count());
    if (now.folder)
        return navigation().setFolderPage(page);
    if (page < 0 || page > count)
        return;
    setNewPage(page == count);
    if (!_isOnNewPage)
        navigation().setCurrentPage(page);
}

void TileDrag::setNewPage(bool isOn) {
    if (std::exchange(_isOnNewPage, isOn) != isOn)
        Q_EMIT newPageChanged();
}

QList<int> TileDrag::slotsOf(bool inFolder, int page) const {
    if (!isActive())
        return {};
    const Area area = _area();
    if (area.folder.has_value() != inFolder)
        return {};
    Area there = area;
    there.page = page;
    return slotsAround(area.pages.tiles(page), _tileSet, gapIn(there).slot);
}

QVariantList TileDrag::placesOf(bool inFolder, int page) const {
    const QList<int> slots = slotsOf(inFolder, page);
    return {slots.begin(), slots.end()};
}

QRectF TileDrag::caretOf(bool inFolder, int page) const {
    const Area area = _area();
    if (!isActive() || area.folder.has_value() != inFolder || area.page != page ||
        _drop.kind != Drop::Kind::between || _gap.slot == _drop.slot)
        return {};
    // Beside the tile under the pointer, or after the last one.
    const QList<int> slots = slotsOf(inFolder, page);
    QList<int> staying;
    std::ranges::copy_if(slots, std::back_inserter(staying), [](int slot) { return slot >= 0; });
    if (staying.isEmpty())
        return {};
    const double column =
        (_pointer.x() - area.frame.left() - area.cells.left) / std::max(1, area.cells.cellWidth);
    const bool isAfter =
        _drop.slot >= staying.size() || (_drop.slot > 0 && column - std::floor(column) >= 0.5);
    const int cell = staying[isAfter ? _drop.slot - 1 : _drop.slot];
    constexpr double width = 4;
    const double x =
        area.cells.left + (cell % area.cells.columns + (isAfter ? 1 : 0)) * area.cells.cellWidth;
    const double y = area.cells.top + cell / area.cells.columns * area.cells.cellHeight;
    return {x - width / 2, y + area.cells.cellHeight * 0.15, width, area.cells.cellHeight * 0.6};
}

// ---- dropping

void TileDrag::drop() {
    if (!isActive())
        return;
    // If dropped outside the panel before the folder could close, it still leaves the folder.
    for (Area area = _area(); area.folder && !area.frame.contains(_pointer); area = _area())
        navigation().closeFolder();
    updateDrop();
    const Drop drop = _drop;
    const QList<QUuid> tiles = _tiles;
    const bool wasNewPage = _isOnNewPage;
    const bool isRefused = drop.kind == Drop::Kind::nowhere && _area().rulesDecide;
    const LaunchpadItem* target = _viewModel.shown().item(drop.target);
    const bool makesFolder = drop.kind == Drop::Kind::onto && target && target->app();
    end();
    LauncherEditor::Outcome outcome;
    if (isRefused)
        outcome = std::unexpected(launcherError(EditRefusal::rulesDecide));
    if (drop.kind == Drop::Kind::onto)
        outcome =
            _viewModel.editor().groupTiles(_viewModel.shown().mode(), tiles, drop.target, _before);
    else if (drop.kind == Drop::Kind::between)
        outcome = _viewModel.editor().moveTiles(_viewModel.shown().mode(), tiles, drop.place, _before);
    else
        navigation().setPosition(_before);
    if (!outcome) {
        Q_EMIT refused(outcome.error());
        return;
    }
    if (makesFolder)
        Q_EMIT folderMade(drop.target);
    if (wasNewPage && !tiles.isEmpty())
        if (const auto place = _viewModel.shown().shownPages().placeOf(tiles.first()))
            navigation().setCurrentPage(static_cast<int>(place->page));
}

bool TileDrag::cancel() {
    const bool was = isActive();
    release();
    if (was)
        end();
    return was;
}

bool TileDrag::putBack() {
    const bool was = cancel();
    if (was)
        navigation().setPosition(_before);
    return was;
}

void TileDrag::follow() {
    const QSet<QString>& hidden = _viewModel.shown().hiddenKeys();
    QSet<QUuid> shown;
    if (isPressed() || isActive())
        forEachItem(_viewModel.shown().pages(), [&](const LaunchpadItem& item) {
            if ((item.id() == _pressed || _tileSet.contains(item.id())) && isShown(item, hidden))
                shown.insert(item.id());
            return true;
        });
    if (_pressed && !shown.contains(*_pressed))
        release();
    if (!isActive())
        return;
    if (!shown.contains(*_heldTile) || !_viewModel.history().guard(_viewModel.shown().mode())) {
        cancel();
        return;
    }
    if (_tiles.removeIf([&](const QUuid& tile) { return !shown.contains(tile); }) > 0)
        Q_EMIT changed();
    _tileSet = shown;
    ++_revision;
    Q_EMIT dropChanged();
    updateDrop();
}

void TileDrag::end() {
    _rest.cancel();
    _restingOn.clear();
    _tiles.clear();
    _tileSet.clear();
    _drop = {};
    _home = _gap = {};
    _suggestedName.clear();
    _turning = 0;
    _sprung.reset();
    ++_revision;
    setNewPage(false);
    Q_EMIT dropChanged();
    Q_EMIT changed();
}

// ---- the mouse grab

DragStage::DragStage(QQuickItem* parent) : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
}

void DragStage::setDrag(TileDrag* drag) {
    _drag = drag;
    if (!_drag)
        return;
    connect(_drag, &TileDrag::began, this, [this] { grabMouse(); });
    // Released, because nothing is hovered while an item has the grab.
    connect(_drag, &TileDrag::changed, this, [this] {
        if (!_drag->isActive())
            ungrabMouse();
    });
}

void DragStage::mouseMoveEvent(QMouseEvent* event) { _drag->move(event->position()); }

void DragStage::mouseReleaseEvent(QMouseEvent* event) {
    _drag->move(event->position());
    _drag->drop();
}

void DragStage::mouseUngrabEvent() { _drag->cancel(); }

} // namespace tessellar
