#pragma once

#include "app/page_motion.h"
#include "app/wheel_paging.h"

#include <QQuickItem>

namespace tessellar {

/// Pages that are turned by wheel and trackpad, by swipe (`drag`, `release`) and by program (`page`).
/// QML lays their contents out along `position`.
class PagerItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int pageCount READ pageCount WRITE setPageCount NOTIFY pageCountChanged)
    /// The page shown, or the one that it is moving to.
    Q_PROPERTY(int page READ page WRITE setPage NOTIFY pageChanged)
    /// In pages; a fraction while they move.
    Q_PROPERTY(double position READ position NOTIFY positionChanged)
    Q_PROPERTY(bool isMoving READ isMoving NOTIFY positionChanged)
    /// For who wants little motion: pages follow a finger, and never move by themselves.
    Q_PROPERTY(bool jumps MEMBER _jumps NOTIFY jumpsChanged)
    /// Drawn from right to left: wheel and trackpad turn them the other way.
    Q_PROPERTY(bool isMirrored MEMBER _isMirrored NOTIFY isMirroredChanged)

public:
    explicit PagerItem(QQuickItem* parent = nullptr);

    int pageCount() const { return _motion.count(); }
    void setPageCount(int count);
    int page() const { return _motion.page(); }
    void setPage(int page);
    double position() const { return _motion.position(); }
    bool isMoving() const { return !_motion.isAtRest() && !_motion.isDragged(); }

    /// A finger moves the pages by this many pixels, to the right where positive, and lets them go with
    /// a speed in pixels a second.
    Q_INVOKABLE void drag(double pixels);
    Q_INVOKABLE void release(double velocity);
    Q_INVOKABLE void advance(double seconds);
    /// There at once, without moving.
    Q_INVOKABLE void jumpTo(int page);

Q_SIGNALS:
    void pageCountChanged();
    void pageChanged();
    void positionChanged();
    void jumpsChanged();
    void isMirroredChanged();
    /// The user has turned to a page.
    void turned(int page);

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    /// Does something to the motion and says what has changed.
    template <typename Change>
    void change(bool byUser, Change change);

    PageMotion _motion;
    bool _jumps = false;
    bool _isMirrored = false;
    WheelPaging _wheel;
    std::uint64_t _lastScroll = 0;
    double _scrollVelocity = 0; ///< pixels a second
};

} // namespace tessellar
