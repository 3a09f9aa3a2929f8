#pragma once
#include <CoreFoundation/CoreFoundation.h>
extern "C" {
typedef int32_t OSStatus;
typedef uint32_t OSType, UInt32, OptionBits;
typedef unsigned long ItemCount, ByteCount;
typedef uint32_t EventParamName, EventParamType;
enum : OSStatus { noErr = 0, eventNotHandledErr = -9874, eventHotKeyExistsErr = -9878, eventHotKeyInvalidErr = -9879 };
typedef struct OpaqueEventRef *EventRef;
typedef struct OpaqueEventHandlerCallRef *EventHandlerCallRef;
typedef struct OpaqueEventHandlerRef *EventHandlerRef;
typedef struct OpaqueEventTargetRef *EventTargetRef;
typedef struct EventHotKeyRef_ *EventHotKeyRef;
typedef struct {
    OSType signature;
    UInt32 id;
} EventHotKeyID;
typedef struct {
    OSType eventClass;
    UInt32 eventKind;
} EventTypeSpec;
typedef OSStatus (*EventHandlerProcPtr)(EventHandlerCallRef, EventRef, void *);
typedef EventHandlerProcPtr EventHandlerUPP;
enum { kEventClassKeyboard = 0x6b657962, kEventHotKeyPressed = 5, kEventHotKeyReleased = 6 };
enum { kEventParamDirectObject = 0x2d2d2d2d, typeEventHotKeyID = 0x686b6964 };
enum { cmdKey = 0x100, shiftKey = 0x200, optionKey = 0x800, controlKey = 0x1000 };
enum { kVK_ANSI_T = 0x11, kVK_ANSI_Comma = 0x2B };
OSStatus RegisterEventHotKey(
    UInt32 code, UInt32 mods, EventHotKeyID id, EventTargetRef target, OptionBits options, EventHotKeyRef *out);
OSStatus UnregisterEventHotKey(EventHotKeyRef);
EventTargetRef GetApplicationEventTarget(void);
EventTargetRef GetEventDispatcherTarget(void);
OSStatus InstallEventHandler(
    EventTargetRef, EventHandlerUPP, ItemCount, const EventTypeSpec *, void *user, EventHandlerRef *out);
OSStatus RemoveEventHandler(EventHandlerRef);
OSStatus GetEventParameter(EventRef, EventParamName, EventParamType, EventParamType *, ByteCount, ByteCount *, void *);
#define InstallApplicationEventHandler(h, n, l, u, o)                                                                  \
    InstallEventHandler(GetApplicationEventTarget(), (h), (n), (l), (u), (o))
}
