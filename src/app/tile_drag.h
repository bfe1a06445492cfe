#pragma once

#include "app/grid_metrics.h"
#include "editing/tile_drop.h"
#include "launcher/launcher_error.h"
#include "launcher/launcher_view_model.h"
#include "launcher/live_layout.h"
#include "platform/uuid_source.h"

#include <QObject>
#include <QPointF>
#include <QQuickItem>
#include <QStringList>

namespace tessellar {

/// Drags tiles with the pointer. Starts with a press on a tile; `dropAt` interprets the position, and
/// the editor performs the drop. The result of dropping is always shown in advance:
///
/// 1. While the pointer moves, tiles stay in place: the target tile is marked, or a caret is shown
///    between two.
/// 2. Resting on a tile shows the folder that would be made, with its name; resting beside one makes
///    room.
/// 3. Dwelling at an edge turns pages, over a folder opens it, outside its panel closes it. A folder
///    that opened under the pointer accepts the tiles as a whole until the pointer moves.
class TileDrag final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(bool isPressed READ isPressed NOTIFY pressedChanged FINAL)
    Q_PROPERTY(QString heldId READ heldId NOTIFY pressedChanged FINAL) ///< about to be dragged
    Q_PROPERTY(bool isActive READ isActive NOTIFY changed FINAL)       ///< tiles are being dragged
    Q_PROPERTY(QStringList tileIds READ tileIds NOTIFY changed FINAL)
    /// The one of them that the pointer holds.
    Q_PROPERTY(QString heldTile READ heldTile NOTIFY changed FINAL)
    /// The position of its image in the window; once dropped, where it was.
    Q_PROPERTY(QPointF pictureAt READ pictureAt NOTIFY moved FINAL)
    Q_PROPERTY(
        QString targetId READ targetId NOTIFY dropChanged FINAL) ///< the tile that would accept them
    /// The name of the folder that would be made, once the pointer rests; else empty.
    Q_PROPERTY(QString suggestedName READ suggestedName NOTIFY dropChanged FINAL)
    /// The side at which the page is about to turn: -1 left, 1 right, 0 neither.
    Q_PROPERTY(int turning READ turning NOTIFY dropChanged FINAL)
    /// The tile last dropped.
    Q_PROPERTY(QString releasedTile READ releasedTile NOTIFY changed FINAL)
    Q_PROPERTY(int revision READ revision NOTIFY dropChanged FINAL) ///< of what `placesOf` returns

public:
    /// The pages under the dragged tiles, as laid out in the window.
    struct Area {
        ShownPages pages;
        int page = 0;
        QRectF frame; ///< in window coordinates: the window, or the open folder's panel
        GridMetrics cells;
        std::optional<QUuid> folder = {};
        bool rulesDecide = false;
    };
    using AreaNow = std::function<Area()>;

    static constexpr std::chrono::milliseconds holdDelay{200};
    static constexpr std::chrono::milliseconds roomDelay{250};
    static constexpr std::chrono::milliseconds formDelay{400};
    static constexpr std::chrono::milliseconds turnDelay{600};
    static constexpr std::chrono::milliseconds openDelay{800};
    static constexpr std::chrono::milliseconds leaveDelay{350};
    /// How far a resting hand may move, in pixels.
    static constexpr double dragThreshold = 6;

    TileDrag(LauncherViewModel& viewModel, Scheduler& scheduler, AreaNow area);

    bool isPressed() const { return _pressed.has_value(); }
    QString heldId() const;
    bool isActive() const { return !_tiles.isEmpty(); }
    QStringList tileIds() const;
    QString heldTile() const { return _heldTile ? toText(*_heldTile) : QString(); }
    QPointF pictureAt() const { return _pointer - _grip; }
    QString targetId() const;
    const QString& suggestedName() const { return _suggestedName; }
    int turning() const { return _turning; }
    QString releasedTile() const { return _heldTile && !isActive() ? toText(*_heldTile) : QString(); }
    int revision() const { return _revision; }
    /// True while the page past the last one is shown; dropping there creates it.
    bool isOnNewPage() const { return _isOnNewPage; }

    /// `picture` is the origin of the tile's image; points are in window coordinates.
    Q_INVOKABLE void press(const QString& tileId, QPointF point, QPointF picture);
    Q_INVOKABLE void move(QPointF point);
    /// The press ended on its tile without becoming a drag.
    Q_INVOKABLE void release();
    /// Drops the tiles at the pointer.
    void drop();
    /// Cancels the drag; true if there was one.
    bool cancel();
    /// The same, also restoring the page and folders where the drag began.
    bool putBack();
    /// The arrangement changed during the drag: tiles that are still shown stay dragged, over the new
    /// contents. Cancels the drag if the held tile is gone, or moving is not allowed now.
    void follow();
    /// The slots in which a page's tiles are drawn; empty if all are in their own.
    QList<int> slotsOf(bool inFolder, int page) const;
    /// The same for QML, whose compiler takes the result of a call for one number if it is a list of
    /// numbers.
    Q_INVOKABLE QVariantList placesOf(bool inFolder, int page) const;
    /// The caret between the tiles of a page, in its pixels; empty if room has been made already.
    Q_INVOKABLE QRectF caretOf(bool inFolder, int page) const;

Q_SIGNALS:
    void pressedChanged();
    void changed();
    void moved();
    void dropChanged();
    /// A press became a drag: the window's owner must grab the pointer.
    void began();
    void newPageChanged();
    /// A folder was made of a tile, which is now in it.
    void folderMade(const QUuid& tile);
    void refused(const LauncherError& error);

private:
    /// The slot kept free on a page of a folder or the grid.
    struct Gap {
        std::optional<QUuid> folder;
        int page = -1;
        std::optional<int> slot;

        bool isIn(const Area& area) const { return folder == area.folder && page == area.page; }
        bool operator==(const Gap&) const = default;
    };
    /// What happens if the pointer stays here for a while.
    struct Dwell {
        QString name; ///< identifies it: the same name continues the wait
        std::chrono::milliseconds delay{0};
        bool isStill = false; ///< moving within the target restarts the wait
        std::function<void()> then;
    };

    LayoutNavigation& navigation() const { return _viewModel.shown().navigation(); }
    void begin();
    void updateDrop();
    Gap gapIn(const Area& area) const;
    Drop dropOn(const Area& area, const std::optional<int>& gap) const;
    bool isPointerNear(QPointF point) const;
    Dwell dwellOn(const Area& area);
    void dwell(const Area& area);
    void turnPage(int by);
    void setNewPage(bool isOn);
    void end();

    LauncherViewModel& _viewModel;
    Scheduler& _scheduler;
    AreaNow _area;
    std::optional<QUuid> _pressed;
    bool _isHeld = false;
    QPointF _pressPoint;
    QPointF _pointer;
    QPointF _grip; ///< of the pointer, relative to the tile's image
    std::optional<QUuid> _heldTile;
    Navigation _before;  ///< the user's position when the drag began
    QList<QUuid> _tiles; ///< being dragged, in arrangement order
    QSet<QUuid> _tileSet;
    Drop _drop;
    Gap _home; ///< where the drag began
    Gap _gap;
    QString _suggestedName;
    int _turning = 0;
    /// A folder that opened under the pointer, and the pointer's position then.
    std::optional<std::pair<QUuid, QPointF>> _sprung;
    int _revision = 0;
    bool _isOnNewPage = false;
    Timer _hold;
    Timer _rest;
    QString _restingOn; ///< the rest being waited for
    QPointF _restPoint; ///< where the wait started
};

/// Grabs the pointer when a drag begins, so that tiles can be dragged across changing pages and
/// folders.
class DragStage : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tessellar::TileDrag* drag MEMBER _drag WRITE setDrag REQUIRED FINAL)

public:
    explicit DragStage(QQuickItem* parent = nullptr);

    void setDrag(TileDrag* drag);
    /// Transparent to presses, which are for the items below.
    bool contains(const QPointF&) const override { return false; }

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;

private:
    TileDrag* _drag = nullptr;
};

} // namespace tessellar
