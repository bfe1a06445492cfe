#include "platform/desktop/desktop_pasteboard.h"

#import <AppKit/AppKit.h>

// Native, because Qt's clipboard renames types that it does not know and cannot hold several items.

namespace tessellar {

QList<PasteboardItem> DesktopPasteboard::items() const {
    QList<PasteboardItem> result;
    @autoreleasepool {
        for (NSPasteboardItem* item in NSPasteboard.generalPasteboard.pasteboardItems) {
            PasteboardItem copied;
            for (NSPasteboardType type in item.types)
                if (NSData* data = [item dataForType:type])
                    copied.data.insert(QString::fromNSString(type), QByteArray::fromNSData(data));
            result.append(copied);
        }
    }
    return result;
}

bool DesktopPasteboard::write(const QList<PasteboardItem>& items) {
    @autoreleasepool {
        NSMutableArray<NSPasteboardItem*>* objects = [NSMutableArray array];
        for (const PasteboardItem& item : items) {
            NSPasteboardItem* object = [[[NSPasteboardItem alloc] init] autorelease];
            for (const auto& [type, bytes] : item.data.asKeyValueRange())
                [object setData:bytes.toNSData() forType:type.toNSString()];
            [objects addObject:object];
        }
        [NSPasteboard.generalPasteboard clearContents];
        return [NSPasteboard.generalPasteboard writeObjects:objects];
    }
}

} // namespace tessellar
