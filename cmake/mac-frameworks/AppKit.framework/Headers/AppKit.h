#pragma once
#include <Foundation/Foundation.h>
typedef NSString* NSPasteboardType;
@interface NSPasteboardItem : NSObject
@property(readonly) NSArray<NSPasteboardType>* types;
- (NSData*)dataForType:(NSPasteboardType)type;
- (BOOL)setData:(NSData*)data forType:(NSPasteboardType)type;
@end
@interface NSPasteboard : NSObject
@property(class, readonly) NSPasteboard* generalPasteboard;
@property(readonly) NSArray<NSPasteboardItem*>* pasteboardItems;
- (NSInteger)clearContents;
- (BOOL)writeObjects:(NSArray*)objects;
@end
typedef unsigned long long NSEventMask;
static const NSEventMask NSEventMaskMouseMoved = 1ULL << 5;
@interface NSEvent : NSObject
+ (id)addGlobalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(void (^)(NSEvent*))handler;
+ (id)addLocalMonitorForEventsMatchingMask:(NSEventMask)mask handler:(NSEvent* (^)(NSEvent*))handler;
+ (void)removeMonitor:(id)monitor;
@end
