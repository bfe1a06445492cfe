#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <objc/NSObject.h>
typedef struct {
    unsigned long state;
    id __unsafe_unretained* itemsPtr;
    unsigned long* mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;

@interface NSString : NSObject
@property(readonly) const char* UTF8String;
@end
@interface NSData : NSObject
@end
@interface NSError : NSObject
@property(readonly) NSString* localizedDescription;
@end
@interface NSArray<ObjectType> : NSObject
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id __unsafe_unretained*)buffer
                                    count:(NSUInteger)count;
@end
@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
+ (instancetype)array;
- (void)addObject:(ObjectType)object;
@end
