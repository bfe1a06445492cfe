#include "app/pager_item.h"

#include <QWheelEvent>

#include <cmath>

namespace tessellar {

PagerItem::PagerItem(QQuickItem* parent) : QQuickItem(parent) {}

template <typename Change>
void PagerItem::change(bool byUser, Change change) {
    const int page = _motion.page();
    const double position = _motion.position();
    const bool moved = isMoving();
    change(_motion);
    if (_jumps && !_motion.isDragged())
        _motion.jumpTo(_motion.page());
    if (_motion.page() != page) {
        Q_EMIT pageChanged();
        if (byUser)
            Q_EMIT turned(_motion.page());
    }
    if (_motion.position() != position || isMoving() != moved)
        Q_EMIT positionChanged();
}

void PagerItem::setPageCount(int count) {
    if (std::max(1, count) == pageCount())
        return;
    change(false, [&](PageMotion& motion) { motion.setCount(count); });
    Q_EMIT pageCountChanged();
}

void PagerItem::setPage(int page) {
    if (page != _motion.page())
        change(false, [&](PageMotion& motion) { motion.goTo(page); });
}

void PagerItem::jumpTo(int page) {
    change(false, [&](PageMotion& motion) { motion.jumpTo(page); });
}

void PagerItem::drag(double pixels) {
    if (width() > 0)
        change(true, [&](PageMotion& motion) { motion.drag(-pixels / width()); });
}

void PagerItem::release(double velocity) {
    if (width() > 0)
        change(true, [&](PageMotion& motion) { motion.release(-velocity / width()); });
}

void PagerItem::advance(double seconds) {
    change(false, [&](PageMotion& motion) { motion.advance(seconds); });
}

void PagerItem::wheelEvent(QWheelEvent* event) {
    event->accept();
    // A trackpad that reports the phases of a gesture moves the pages directly.
    if (event->phase() != Qt::NoScrollPhase && !event->pixelDelta().isNull() &&
        event->phase() == Qt::ScrollUpdate) {
        const double elapsed =
            std::max<double>(1, static_cast<double>(event->timestamp() - _lastScroll));
        const int pixels = _isMirrored ? -event->pixelDelta().x() : event->pixelDelta().x();
        _scrollVelocity = elapsed > 100 ? 0 : 0.5 * _scrollVelocity + 0.5 * pixels * 1000 / elapsed;
        _lastScroll = event->timestamp();
        return drag(pixels);
    }
    if (event->phase() == Qt::ScrollEnd)
        return release(_scrollVelocity);
    if (event->phase() == Qt::ScrollBegin) {
        _scrollVelocity = 0;
        _lastScroll = event->timestamp();
        return;
    }
    if (event->phase() == Qt::ScrollMomentum) // the spring replaces momentum
        return;

    const QPoint angle = event->angleDelta();
    const int along = std::abs(angle.x()) <= std::abs(angle.y()) ? angle.y()
                      : _isMirrored                              ? -angle.x()
                                                                 : angle.x();
    if (const int pages = _wheel.turn(-along, event->timestamp()); pages != 0)
        change(true, [&](PageMotion& motion) { motion.goTo(motion.page() + pages); });
}

} // namespace tessellar
