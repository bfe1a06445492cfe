#pragma once
#include <CoreFoundation/CoreFoundation.h>
#ifdef __cplusplus
extern "C" {
#endif
typedef UInt32 EventParamName;
typedef UInt32 EventParamType;
typedef struct OpaqueEventRef* EventRef;
typedef struct OpaqueEventHandlerRef* EventHandlerRef;
typedef struct OpaqueEventHandlerCallRef* EventHandlerCallRef;
typedef struct OpaqueEventTargetRef* EventTargetRef;
typedef struct OpaqueEventHotKeyRef* EventHotKeyRef;
typedef struct {
    OSType signature;
    UInt32 id;
} EventHotKeyID;
typedef struct {
    OSType eventClass;
    UInt32 eventKind;
} EventTypeSpec;
typedef OSStatus (*EventHandlerUPP)(EventHandlerCallRef next, EventRef event, void* data);
enum { eventHotKeyExistsErr = -9878, eventNotHandledErr = -9874 };
enum { kEventClassKeyboard = 'keyb', kEventHotKeyPressed = 5 };
enum { kEventParamDirectObject = '----', typeEventHotKeyID = 'hkid' };
enum { cmdKey = 1 << 8, shiftKey = 1 << 9, optionKey = 1 << 11, controlKey = 1 << 12 };
EventTargetRef GetApplicationEventTarget(void);
OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP handler, unsigned long typeCount,
                             const EventTypeSpec* types, void* data, EventHandlerRef* installed);
OSStatus RemoveEventHandler(EventHandlerRef handler);
OSStatus RegisterEventHotKey(UInt32 keyCode, UInt32 modifiers, EventHotKeyID identifier,
                             EventTargetRef target, UInt32 options, EventHotKeyRef* hotKey);
OSStatus UnregisterEventHotKey(EventHotKeyRef hotKey);
OSStatus GetEventParameter(EventRef event, EventParamName name, EventParamType type,
                           EventParamType* actualType, unsigned long size, unsigned long* actualSize,
                           void* data);
#ifdef __cplusplus
}
#endif
