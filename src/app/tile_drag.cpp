#include "app/tile_drag.h"

#include "launcher/launcher_editor.h"
#include "launcher/launcher_history.h"

#include <QGuiApplication>
#include <QMouseEvent>
#include <QStyleHints>

#include <cmath>

namespace tessellar {

/// How near to a side of the window pages turn.
static constexpr double edge = 36;

TileDrag::TileDrag(LauncherViewModel& viewModel, Scheduler& scheduler, AreaNow area)
    : _viewModel(viewModel), _scheduler(scheduler), _area(std::move(area)) {}

QString TileDrag::heldId() const { return _isHeld && _pressed ? toText(*_pressed) : QString(); }

QStringList TileDrag::liftedIds() const {
    QStringList ids;
    for (const QUuid& id : _lifted)
        ids.append(toText(id));
    return ids;
}

QString TileDrag::targetId() const {
    return _drop.kind == Drop::Kind::onto ? toText(_drop.target) : QString();
}

// ---- from the press to the lift

void TileDrag::press(const QString& tileId, QPointF point, QPointF picture) {
    const QUuid id = QUuid::fromString(tileId);
    if (isLifted() || !_viewModel.shown().item(id))
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

void TileDrag::letGo() {
    _hold.cancel();
    _isHeld = false;
    if (std::exchange(_pressed, std::nullopt))
        Q_EMIT pressedChanged();
}

void TileDrag::move(QPointF point) {
    if (!isPressed() && !isLifted())
        return;
    _pointer = point;
    if (!isLifted()) {
        const int distance = QGuiApplication::styleHints()->startDragDistance();
        if (!_isHeld && (point - _pressPoint).manhattanLength() < distance)
            return;
        return lift();
    }
    Q_EMIT moved();
    look();
}

void TileDrag::lift() {
    const Area area = _area();
    // What a smart folder shows stays: its rules decide. A blocked arrangement does not change either.
    const auto guard = _viewModel.history().guard(_viewModel.shown().mode());
    if (!guard || area.rulesDecide) {
        letGo();
        if (!guard)
            Q_EMIT refused(guard.error());
        return;
    }
    const QUuid tile = *_pressed;
    _heldTile = tile;
    const QSet<QUuid>& selected = _viewModel.shown().selectedItemIDs();
    _liftedSet = selected.contains(tile) ? selected : QSet<QUuid>{tile};
    _lifted.clear();
    forEachItem(_viewModel.shown().pages(), [&](const LaunchpadItem& item) {
        if (_liftedSet.contains(item.id()))
            _lifted.append(item.id());
        return true;
    });
    _gap.reset();
    if (const auto at = area.pages.placeOf(tile); at && at->page == area.page) {
        int before = 0;
        const Page tiles = area.pages.tiles(at->page);
        for (qsizetype slot = 0; slot < at->slot; ++slot)
            before += _liftedSet.contains(tiles.at(slot).id()) ? 0 : 1;
        _gap = before;
        _gapFolder = area.folder;
        _gapPage = area.page;
    }
    _drop = {};
    Q_EMIT lifted(); // before the press ends
    letGo();
    ++_revision;
    Q_EMIT changed();
    Q_EMIT dropChanged();
    Q_EMIT moved();
    look();
}

// ---- on the way

void TileDrag::look() {
    const Area area = _area();
    const bool isGapHere = _gapFolder == area.folder && _gapPage == area.page;
    DropGrid grid{.pages = area.pages,
                  .page = area.page,
                  .columns = area.cells.columns,
                  .rows = area.cells.rows,
                  .gap = isGapHere ? _gap : std::nullopt,
                  .folder = area.folder,
                  .rulesDecide = area.rulesDecide,
                  .lifted = _liftedSet};
    const QPointF at = _pointer - area.frame.topLeft();
    Drop drop;
    if (!area.folder || area.frame.contains(_pointer))
        drop = dropAt(grid, {(at.x() - area.cells.left) / std::max(1, area.cells.cellWidth),
                             (at.y() - area.cells.top) / std::max(1, area.cells.cellHeight)});
    std::optional<int> gap = grid.gap;
    if (drop.kind == Drop::Kind::between)
        gap = drop.slot;
    else if (drop.kind == Drop::Kind::nowhere)
        gap.reset();
    if (drop != _drop || gap != _gap || !isGapHere) {
        _drop = drop;
        _gap = gap;
        _gapFolder = area.folder;
        _gapPage = area.page;
        ++_revision;
        Q_EMIT dropChanged();
    }
    rest(area);
}

/// Dwelling opens folders or turns pages.
void TileDrag::rest(const Area& area) {
    QString on;
    std::function<void()> then;
    std::chrono::milliseconds delay = turnDelay;
    const LaunchpadItem* target =
        _drop.kind == Drop::Kind::onto ? _viewModel.shown().item(_drop.target) : nullptr;
    if (area.folder && !area.frame.contains(_pointer)) {
        on = QStringLiteral("outside");
        delay = leaveDelay;
        then = [this] { _viewModel.shown().closeFolder(); };
    } else if (target && target->folder() && !_liftedSet.contains(_drop.target)) {
        on = toText(_drop.target);
        delay = openDelay;
        then = [this, id = _drop.target] { _viewModel.shown().openFolder(id); };
    } else if (_pointer.x() < area.frame.left() + edge || _pointer.x() > area.frame.right() - edge) {
        const int by = _pointer.x() < area.frame.center().x() ? -1 : 1;
        on = QStringLiteral("turn %1 %2").arg(by).arg(area.page);
        then = [this, by] {
            const Area now = _area();
            const int page = now.page + by;
            const auto count = static_cast<int>(now.pages.count());
            if (now.folder)
                return _viewModel.shown().setFolderPage(page);
            if (page < 0 || page > count)
                return;
            setNewPage(page == count);
            if (!_isOnNewPage)
                _viewModel.shown().setCurrentPage(page);
        };
    }
    if (on == _restingOn)
        return;
    _restingOn = on;
    _rest.cancel();
    if (then)
        _rest = _scheduler.after(delay, [this, then = std::move(then)] {
            _restingOn.clear();
            then();
            if (isLifted())
                look();
        });
}

void TileDrag::setNewPage(bool isOn) {
    if (std::exchange(_isOnNewPage, isOn) != isOn)
        Q_EMIT newPageChanged();
}

QList<int> TileDrag::slotsOf(bool inFolder, int page) const {
    if (!isLifted())
        return {};
    const Area area = _area();
    if (area.folder.has_value() != inFolder)
        return {};
    const bool isGapHere = _gapFolder == area.folder && _gapPage == page;
    return slotsAround(area.pages.tiles(page), _liftedSet, isGapHere ? _gap : std::nullopt);
}

// ---- the end

void TileDrag::drop() {
    if (!isLifted())
        return;
    // Let go beside the panel before the folder had time to close: out of it all the same.
    for (Area area = _area(); area.folder && !area.frame.contains(_pointer); area = _area())
        _viewModel.shown().closeFolder();
    look();
    const Drop drop = _drop;
    const QList<QUuid> tiles = _lifted;
    const bool wasNewPage = _isOnNewPage;
    end();
    LauncherEditor::Outcome outcome;
    if (drop.kind == Drop::Kind::onto)
        outcome = _viewModel.editor().groupTiles(_viewModel.shown().mode(), tiles, drop.target);
    else if (drop.kind == Drop::Kind::between)
        outcome = _viewModel.editor().moveTiles(_viewModel.shown().mode(), tiles, drop.place);
    if (!outcome) {
        Q_EMIT refused(outcome.error());
        return;
    }
    if (wasNewPage && !tiles.isEmpty())
        if (const auto place = _viewModel.shown().shownPages().placeOf(tiles.first()))
            _viewModel.shown().setCurrentPage(static_cast<int>(place->page));
}

bool TileDrag::cancel() {
    const bool was = isLifted();
    letGo();
    if (was)
        end();
    return was;
}

void TileDrag::follow() {
    const QSet<QString>& hidden = _viewModel.shown().hiddenKeys();
    QSet<QUuid> shown;
    if (isPressed() || isLifted())
        forEachItem(_viewModel.shown().pages(), [&](const LaunchpadItem& item) {
            if ((item.id() == _pressed || _liftedSet.contains(item.id())) && isShown(item, hidden))
                shown.insert(item.id());
            return true;
        });
    if (_pressed && !shown.contains(*_pressed))
        letGo();
    if (!isLifted())
        return;
    if (!shown.contains(*_heldTile) || !_viewModel.history().guard(_viewModel.shown().mode())) {
        cancel();
        return;
    }
    if (_lifted.removeIf([&](const QUuid& tile) { return !shown.contains(tile); }) > 0)
        Q_EMIT changed();
    _liftedSet = shown;
    ++_revision;
    Q_EMIT dropChanged();
    look();
}

void TileDrag::end() {
    _rest.cancel();
    _restingOn.clear();
    _lifted.clear();
    _liftedSet.clear();
    _drop = {};
    _gap.reset();
    _gapPage = -1;
    ++_revision;
    setNewPage(false);
    Q_EMIT dropChanged();
    Q_EMIT changed();
}

// ---- the pointer's grab

DragStage::DragStage(QQuickItem* parent) : QQuickItem(parent) {
    setAcceptedMouseButtons(Qt::LeftButton);
}

void DragStage::setDrag(TileDrag* drag) {
    _drag = drag;
    if (_drag)
        connect(_drag, &TileDrag::lifted, this, [this] { grabMouse(); });
}

void DragStage::mouseMoveEvent(QMouseEvent* event) { _drag->move(event->scenePosition()); }

void DragStage::mouseReleaseEvent(QMouseEvent* event) {
    _drag->move(event->scenePosition());
    _drag->drop();
}

void DragStage::mouseUngrabEvent() { _drag->cancel(); }

} // namespace tessellar
