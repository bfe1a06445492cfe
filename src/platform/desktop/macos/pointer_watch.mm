#include "platform/desktop/pointer_watch.h"

#include <QCursor>

#import <AppKit/AppKit.h>

namespace tessellar {

namespace {

class MonitoredPointer final : public PointerWatch {
public:
    explicit MonitoredPointer(std::function<void(QPoint)> moved) {
        // The events only say when to look: Qt gives the position in its own coordinates.
        _overOthers = [NSEvent addGlobalMonitorForEventsMatchingMask:NSEventMaskMouseMoved
                                                             handler:^(NSEvent*) {
                                                               moved(QCursor::pos());
                                                             }];
        _overOurs = [NSEvent addLocalMonitorForEventsMatchingMask:NSEventMaskMouseMoved
                                                          handler:^NSEvent*(NSEvent* event) {
                                                            moved(QCursor::pos());
                                                            return event;
                                                          }];
        [_overOthers retain];
        [_overOurs retain];
    }
    ~MonitoredPointer() override {
        for (id monitor : {_overOthers, _overOurs}) {
            if (monitor)
                [NSEvent removeMonitor:monitor];
            [monitor release];
        }
    }

private:
    id _overOthers = nil;
    id _overOurs = nil;
};

} // namespace

bool PointerWatch::isAvailable() { return true; }

std::unique_ptr<PointerWatch> PointerWatch::make(std::function<void(QPoint)> moved) {
    return std::make_unique<MonitoredPointer>(std::move(moved));
}

} // namespace tessellar
