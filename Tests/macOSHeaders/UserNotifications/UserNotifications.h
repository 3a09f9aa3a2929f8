#pragma once
#include <Foundation/Foundation.h>
NS_ASSUME_NONNULL_BEGIN
typedef NS_OPTIONS(NSUInteger, UNAuthorizationOptions) {
    UNAuthorizationOptionBadge = 1,
    UNAuthorizationOptionSound = 2,
    UNAuthorizationOptionAlert = 4
};
typedef NS_OPTIONS(NSUInteger, UNNotificationPresentationOptions) {
    UNNotificationPresentationOptionBadge = 1,
    UNNotificationPresentationOptionSound = 2,
    UNNotificationPresentationOptionList = 8,
    UNNotificationPresentationOptionBanner = 16
};
@interface UNNotificationContent : NSObject
@property (readonly, copy) NSString *title, *body, *categoryIdentifier;
@property (readonly, copy) NSDictionary *userInfo;
@end
@interface UNMutableNotificationContent : UNNotificationContent
@property (copy) NSString *title, *body, *categoryIdentifier, *threadIdentifier;
@property (copy) NSDictionary *userInfo;
@end
@interface UNNotificationTrigger : NSObject
@end
@interface UNNotificationRequest : NSObject
@property (readonly, copy) NSString *identifier;
@property (readonly, copy) UNNotificationContent *content;
+ (instancetype)requestWithIdentifier:(NSString *)i
                              content:(UNNotificationContent *)c
                              trigger:(nullable UNNotificationTrigger *)t;
@end
@interface UNNotification : NSObject
@property (readonly, copy) UNNotificationRequest *request;
@end
extern "C" NSString *const UNNotificationDefaultActionIdentifier;
extern "C" NSString *const UNNotificationDismissActionIdentifier;
@interface UNNotificationResponse : NSObject
@property (readonly, copy) UNNotification *notification;
@property (readonly, copy) NSString *actionIdentifier;
@end
@interface UNNotificationAction : NSObject
+ (instancetype)actionWithIdentifier:(NSString *)i title:(NSString *)t options:(NSUInteger)o;
@end
@interface UNNotificationCategory : NSObject
+ (instancetype)categoryWithIdentifier:(NSString *)i
                               actions:(NSArray<UNNotificationAction *> *)a
                     intentIdentifiers:(NSArray<NSString *> *)n
                               options:(NSUInteger)o;
@end
@class UNUserNotificationCenter;
// On purpose @required here (Apple: @optional): a mistyped delegate selector then fails with -Wprotocol -Werror
@protocol UNUserNotificationCenterDelegate <NSObject>
- (void)userNotificationCenter:(UNUserNotificationCenter *)c
       willPresentNotification:(UNNotification *)n
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions))h;
- (void)userNotificationCenter:(UNUserNotificationCenter *)c
    didReceiveNotificationResponse:(UNNotificationResponse *)r
             withCompletionHandler:(void (^)(void))h;
@end
@interface UNUserNotificationCenter : NSObject
@property (weak, nullable) id<UNUserNotificationCenterDelegate> delegate;
+ (UNUserNotificationCenter *)currentNotificationCenter;
- (instancetype)init NS_UNAVAILABLE;
- (void)requestAuthorizationWithOptions:(UNAuthorizationOptions)o
                      completionHandler:(void (^)(BOOL granted, NSError *_Nullable error))h;
- (void)addNotificationRequest:(UNNotificationRequest *)r
         withCompletionHandler:(nullable void (^)(NSError *_Nullable error))h;
- (void)removeDeliveredNotificationsWithIdentifiers:(NSArray<NSString *> *)i;
- (void)setNotificationCategories:(NSSet<UNNotificationCategory *> *)c;
@end
NS_ASSUME_NONNULL_END
