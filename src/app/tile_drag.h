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

/// Tiles that the pointer lifts, carries and puts down. Begins with a press on a tile; `dropAt` decides
/// what a point means, the editor carries it out. What would happen is shown at every moment, and just
/// that happens when the tiles are let go:
///
/// 1. While the pointer moves nothing flees from it: the tile that it aims at is marked, or a caret
///    stands between two.
/// 2. Resting on a tile shows the folder that would be made, with its name; resting beside one makes
///    room.
/// 3. Dwelling at an edge turns pages, over a folder opens it, beside its panel closes it. A folder
/// that
///    opened under the pointer takes the tiles in as a whole until the pointer has moved.
class TileDrag final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(bool isPressed READ isPressed NOTIFY pressedChanged)
    Q_PROPERTY(
        QString heldId READ heldId NOTIFY pressedChanged) ///< pressed for a while: about to be lifted
    Q_PROPERTY(bool isLifted READ isLifted NOTIFY changed)
    Q_PROPERTY(QStringList liftedIds READ liftedIds NOTIFY changed)
    /// The one of them that the pointer took hold of.
    Q_PROPERTY(QString heldTile READ heldTile NOTIFY changed)
    Q_PROPERTY(QPointF pointer READ pointer NOTIFY moved)
    Q_PROPERTY(QPointF grip READ grip NOTIFY changed)             ///< of the pointer within the picture
    Q_PROPERTY(QString targetId READ targetId NOTIFY dropChanged) ///< the tile that would take them in
    /// Of the folder that would be made with it, once the pointer rests; empty before, and for others.
    Q_PROPERTY(QString suggestedName READ suggestedName NOTIFY dropChanged)
    /// The side at which the page is about to turn: -1 the left one, 1 the right one, 0 neither.
    Q_PROPERTY(int turning READ turning NOTIFY dropChanged)
    /// Where the picture was when it was let go last, in the window.
    Q_PROPERTY(QString releasedTile READ releasedTile NOTIFY changed)
    Q_PROPERTY(QPointF releasedAt READ releasedAt NOTIFY changed)
    Q_PROPERTY(int revision READ revision NOTIFY dropChanged) ///< of what `slots` says

public:
    /// The pages over which tiles are carried, as they lie in the window.
    struct Area {
        ShownPages pages;
        int page = 0;
        QRectF frame; ///< of the window, or of the open folder's panel
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
    /// How far a hand that rests still trembles, in pixels.
    static constexpr double tremble = 6;

    TileDrag(LauncherViewModel& viewModel, Scheduler& scheduler, AreaNow area);

    bool isPressed() const { return _pressed.has_value(); }
    QString heldId() const;
    bool isLifted() const { return !_lifted.isEmpty(); }
    QStringList liftedIds() const;
    QString heldTile() const { return _heldTile ? toText(*_heldTile) : QString(); }
    QPointF pointer() const { return _pointer; }
    QPointF grip() const { return _grip; }
    QString targetId() const;
    const QString& suggestedName() const { return _suggestedName; }
    int turning() const { return _turning; }
    QString releasedTile() const { return _heldTile && !isLifted() ? toText(*_heldTile) : QString(); }
    QPointF releasedAt() const { return _pointer - _grip; }
    int revision() const { return _revision; }
    /// The page past the last one is shown: letting go there makes a new one.
    bool isOnNewPage() const { return _isOnNewPage; }

    /// `picture` is where the tile's picture begins; points are of the window.
    Q_INVOKABLE void press(const QString& tileId, QPointF point, QPointF picture);
    Q_INVOKABLE void move(QPointF point);
    /// The press ends on its tile without having become a drag.
    Q_INVOKABLE void letGo();
    /// The tiles are put down where the pointer is.
    void drop();
    /// They go back to where they were; true when there were any.
    bool cancel();
    /// The same, and the user is again where the drag began.
    bool putBack();
    /// The arrangement has changed under the tiles: those that are still shown stay in the hand, over
    /// what lies there now. Ends when the one that the pointer holds is gone, or nothing may be moved.
    void follow();
    /// The slots in which the tiles of a page are drawn; empty when each is in its own.
    Q_INVOKABLE QList<int> slotsOf(bool inFolder, int page) const;
    /// Where between the tiles of a page they would go, in its pixels; empty where room is made
    /// already.
    Q_INVOKABLE QRectF caretOf(bool inFolder, int page) const;

Q_SIGNALS:
    void pressedChanged();
    void changed();
    void moved();
    void dropChanged();
    /// The pointer has left the ground with tiles: whoever shows the window takes its grab.
    void lifted();
    void newPageChanged();
    /// A tile has become a folder, and lies in it.
    void folderMade(const QUuid& tile);
    void refused(const LauncherError& error);

private:
    /// The slot in which a page of some folder, or of the grid, has room.
    struct Gap {
        std::optional<QUuid> folder;
        int page = -1;
        std::optional<int> slot;

        bool isIn(const Area& area) const { return folder == area.folder && page == area.page; }
        bool operator==(const Gap&) const = default;
    };
    /// What happens when the pointer stays where it is for a while.
    struct Rest {
        QString name; ///< one that goes on has the same
        std::chrono::milliseconds delay{0};
        bool isStill = false; ///< moving within the target is no rest
        std::function<void()> then;
    };

    void lift();
    void look();
    Gap gapIn(const Area& area) const;
    Drop dropOn(const Area& area, const std::optional<int>& gap) const;
    bool isPointerNear(QPointF point) const;
    Rest restOn(const Area& area);
    void rest(const Area& area);
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
    QPointF _grip;
    std::optional<QUuid> _heldTile;
    Navigation _before;   ///< where the user was when they were lifted
    QList<QUuid> _lifted; ///< in the order of the arrangement
    QSet<QUuid> _liftedSet;
    Drop _drop;
    Gap _home; ///< where they were
    Gap _gap;
    QString _suggestedName;
    int _turning = 0;
    /// A folder that opened under the pointer, and where that was.
    std::optional<std::pair<QUuid, QPointF>> _sprung;
    int _revision = 0;
    bool _isOnNewPage = false;
    Timer _hold;
    Timer _rest;
    QString _restingOn; ///< what the rest's timer waits for
    QPointF _restPoint; ///< where that began
};

/// Takes the pointer's grab when tiles are lifted, so that they can be carried over pages and folders
/// that come and go.
class DragStage : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(tessellar::TileDrag* drag MEMBER _drag WRITE setDrag REQUIRED)

public:
    explicit DragStage(QQuickItem* parent = nullptr);

    void setDrag(TileDrag* drag);
    /// Presses are meant for what lies below.
    bool contains(const QPointF&) const override { return false; }

protected:
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseUngrabEvent() override;

private:
    TileDrag* _drag = nullptr;
};

} // namespace tessellar
