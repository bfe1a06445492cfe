#pragma once

#include "app/page_motion.h"
#include "app/wheel_paging.h"

#include <QQuickItem>

namespace tessellar {

/// Pages turned by wheel and trackpad, by swiping (`drag`, `release`) and programmatically (`page`).
/// QML lays out their contents by `position`.
class PagerItem : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(int pageCount READ pageCount WRITE setPageCount NOTIFY pageCountChanged FINAL)
    /// The current page, or the one it is moving to.
    Q_PROPERTY(int page READ page WRITE setPage NOTIFY pageChanged FINAL)
    /// In pages; fractional while moving.
    Q_PROPERTY(double position READ position NOTIFY positionChanged FINAL)
    Q_PROPERTY(bool isMoving READ isMoving NOTIFY positionChanged FINAL)
    /// For reduced motion: pages follow a finger, but are never animated.
    Q_PROPERTY(bool jumps MEMBER _jumps NOTIFY jumpsChanged FINAL)
    /// Right to left: wheel and trackpad are reversed.
    Q_PROPERTY(bool isMirrored MEMBER _isMirrored NOTIFY isMirroredChanged FINAL)

public:
    explicit PagerItem(QQuickItem* parent = nullptr);

    int pageCount() const { return _motion.count(); }
    void setPageCount(int count);
    int page() const { return _motion.page(); }
    void setPage(int page);
    double position() const { return _motion.position(); }
    bool isMoving() const { return !_motion.isAtRest() && !_motion.isDragged(); }

    /// Drags by pixels, to the right if positive, and releases at a velocity in pixels per second.
    Q_INVOKABLE void drag(double pixels);
    Q_INVOKABLE void release(double velocity);
    Q_INVOKABLE void advance(double seconds);
    /// Without animation.
    Q_INVOKABLE void jumpTo(int page);

Q_SIGNALS:
    void pageCountChanged();
    void pageChanged();
    void positionChanged();
    void jumpsChanged();
    void isMirroredChanged();
    /// The user turned to a page.
    void turned(int page);

protected:
    void wheelEvent(QWheelEvent* event) override;

private:
    /// Changes the motion and emits signals for the differences.
    template <typename Change>
    void change(bool byUser, Change change);

    PageMotion _motion;
    bool _jumps = false;
    bool _isMirrored = false;
    WheelPaging _wheel;
    std::uint64_t _lastScroll = 0;
    double _scrollVelocity = 0; ///< in pixels per second
};

} // namespace tessellar
