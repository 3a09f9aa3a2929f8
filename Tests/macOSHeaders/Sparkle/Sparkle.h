#pragma once
#include <Foundation/Foundation.h>
NS_ASSUME_NONNULL_BEGIN
@protocol SPUUpdaterDelegate <NSObject>
@optional
- (nullable NSString *)feedURLStringForUpdater:(id)u;
@end
@protocol SPUStandardUserDriverDelegate <NSObject>
@end
@interface SPUUpdater : NSObject
@property BOOL automaticallyChecksForUpdates;
@property (readonly) BOOL canCheckForUpdates;
@property (nullable, readonly, copy) NSDate *lastUpdateCheckDate;
- (void)checkForUpdatesInBackground;
@end
@interface SPUStandardUpdaterController : NSObject
- (instancetype)initWithStartingUpdater:(BOOL)s
                        updaterDelegate:(nullable id<SPUUpdaterDelegate>)d
                     userDriverDelegate:(nullable id<SPUStandardUserDriverDelegate>)u;
@property (readonly) SPUUpdater *updater;
- (void)checkForUpdates:(nullable id)sender;
@end
NS_ASSUME_NONNULL_END
