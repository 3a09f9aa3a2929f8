// Refused: no viable conversion from 'const QString' to 'NSString * _Nonnull'
#import <AppKit/AppKit.h>
#include <QString>

id<NSObject> begin(const QString &reason)
{
    return [NSProcessInfo.processInfo beginActivityWithOptions:NSActivityAutomaticTerminationDisabled reason:reason];
}
