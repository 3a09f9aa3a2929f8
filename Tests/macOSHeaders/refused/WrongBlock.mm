// Refused: cannot initialize a parameter of type
#import <UserNotifications/UserNotifications.h>

void ask(UNUserNotificationCenter *center)
{
    [center requestAuthorizationWithOptions:UNAuthorizationOptionAlert completionHandler:^(NSError *){}];
}
