#pragma once
#include <Foundation/Foundation.h>
NS_ASSUME_NONNULL_BEGIN
typedef NS_ENUM(NSInteger, SMAppServiceStatus) {
    SMAppServiceStatusNotRegistered,
    SMAppServiceStatusEnabled,
    SMAppServiceStatusRequiresApproval,
    SMAppServiceStatusNotFound
} API_AVAILABLE(macos(13.0));
API_AVAILABLE(macos(13.0)) @interface SMAppService : NSObject
@property (class, readonly) SMAppService *mainAppService;
@property (readonly) SMAppServiceStatus status;
+ (instancetype)daemonServiceWithPlistName:(NSString *)n;
+ (instancetype)agentServiceWithPlistName:(NSString *)n;
- (BOOL)registerAndReturnError:(NSError *_Nullable *_Nullable)e;
- (BOOL)unregisterAndReturnError:(NSError *_Nullable *_Nullable)e;
+ (void)openSystemSettingsLoginItems;
@end
NS_ASSUME_NONNULL_END
