#pragma once
#include <Foundation/Foundation.h>
NS_ASSUME_NONNULL_BEGIN
@interface NSImage : NSObject
+ (nullable NSImage *)imageNamed:(NSString *)n;
@property BOOL template_ __attribute__((unavailable));
- (void)setTemplate:(BOOL)t;
@property NSSize size;
@end
@interface NSResponder : NSObject
@end
@interface NSView : NSResponder
@property NSRect bounds;
- (NSRect)convertRect:(NSRect)r toView:(nullable NSView *)v;
@property (nullable, readonly) id window;
@end
typedef NS_OPTIONS(uint64_t, NSEventMask) { NSEventMaskLeftMouseUp = 1 << 2, NSEventMaskRightMouseUp = 1 << 4 };
typedef NS_OPTIONS(NSUInteger, NSEventModifierFlags) {
    NSEventModifierFlagShift = 1 << 17,
    NSEventModifierFlagControl = 1 << 18,
    NSEventModifierFlagOption = 1 << 19,
    NSEventModifierFlagCommand = 1 << 20
};
typedef NS_ENUM(NSUInteger, NSEventType) { NSEventTypeLeftMouseUp = 2, NSEventTypeRightMouseUp = 4 };
@interface NSEvent : NSObject
@property (readonly) NSEventType type;
@property (readonly) NSEventModifierFlags modifierFlags;
@end
@interface NSButton : NSView
@property (nullable, strong) NSImage *image;
@property (nullable, weak) id target;
@property (nullable) SEL action;
@property (copy) NSString *title;
@property (nullable, copy) NSString *toolTip;
- (NSInteger)sendActionOn:(NSEventMask)m;
@end
@interface NSMenu : NSObject
@end
@interface NSStatusBarButton : NSButton
@end
@interface NSStatusItem : NSObject
@property (nullable, readonly, strong) NSStatusBarButton *button;
@property (nullable, strong) NSMenu *menu;
@property CGFloat length;
@end
@interface NSStatusBar : NSObject
@property (class, readonly, strong) NSStatusBar *systemStatusBar;
- (NSStatusItem *)statusItemWithLength:(CGFloat)l;
- (void)removeStatusItem:(NSStatusItem *)i;
@end
static const CGFloat NSVariableStatusItemLength = -1.0;
typedef NS_ENUM(NSInteger, NSApplicationActivationPolicy) {
    NSApplicationActivationPolicyRegular,
    NSApplicationActivationPolicyAccessory,
    NSApplicationActivationPolicyProhibited
};
@interface NSApplication : NSResponder
@property (class, readonly, strong) NSApplication *sharedApplication;
- (BOOL)setActivationPolicy:(NSApplicationActivationPolicy)p;
- (void)activateIgnoringOtherApps:(BOOL)f;
@property (nullable, readonly) NSEvent *currentEvent;
@end
extern "C" NSApplication *_Null_unspecified NSApp;
NS_ASSUME_NONNULL_END
