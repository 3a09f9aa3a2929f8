// Refused: method 'userNotificationCenter:didReceiveNotificationResponse:withCompletionHandler:' in protocol
#import <UserNotifications/UserNotifications.h>

@interface Delegate : NSObject <UNUserNotificationCenterDelegate>
@end

@implementation Delegate
- (void)userNotificationCenter:(UNUserNotificationCenter *)center
       willPresentNotification:(UNNotification *)notification
         withCompletionHandler:(void (^)(UNNotificationPresentationOptions))done
{
    done(UNNotificationPresentationOptionBanner);
}

- (void)userNotificationCenter:(UNUserNotificationCenter *)center
    didReceiveNotificationAnswer:(UNNotificationResponse *)response
           withCompletionHandler:(void (^)(void))done
{
    done();
}
@end
