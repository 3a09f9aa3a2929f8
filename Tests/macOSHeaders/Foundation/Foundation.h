#pragma once
// Hand-written declarations: only what the project calls. Signatures follow Apple's public documentation.
#include <Availability.h>
#include <CoreFoundation/CoreFoundation.h>
#include <TargetConditionals.h>
#include <objc/objc.h>
#include <stdint.h>
typedef long NSInteger;
typedef unsigned long NSUInteger;
typedef double NSTimeInterval;
typedef unsigned short unichar;
#define NS_ENUM(T, N)                                                                                                  \
    enum N : T N;                                                                                                      \
    enum N : T
#define NS_OPTIONS(T, N)                                                                                               \
    T N;                                                                                                               \
    enum : T // exactly what Apple does in C++: an integer typedef plus an anonymous enum
#define NS_ASSUME_NONNULL_BEGIN _Pragma("clang assume_nonnull begin")
#define NS_ASSUME_NONNULL_END _Pragma("clang assume_nonnull end")
#define NS_SWIFT_NAME(x)
#define NS_DESIGNATED_INITIALIZER __attribute__((objc_designated_initializer))
#define NS_UNAVAILABLE __attribute__((unavailable))
#define NSLocalizedString(k, c) [[NSBundle mainBundle] localizedStringForKey:(k) value:@"" table:nil]
typedef struct {
    NSUInteger location, length;
} NSRange;
struct CGPoint {
    double x, y;
};
struct CGSize {
    double width, height;
};
struct CGRect {
    CGPoint origin;
    CGSize size;
}; // tags, because Qt forward-declares struct CGPoint/CGSize/CGRect
typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;
typedef double CGFloat;
typedef struct {
    unsigned long state;
    id __unsafe_unretained _Nullable *_Nullable itemsPtr;
    unsigned long *_Nullable mutationsPtr;
    unsigned long extra[5];
} NSFastEnumerationState;
NS_ASSUME_NONNULL_BEGIN
@class NSString, NSDictionary<K, V>, NSArray<T>, NSError, NSURL, NSDate, NSNumber, NSMethodSignature;
@protocol NSObject
- (BOOL)isEqual:(nullable id)o;
- (BOOL)respondsToSelector:(SEL)s;
- (BOOL)isKindOfClass:(Class)c;
- (id)performSelector:(SEL)s;
@property (readonly, copy) NSString *description;
@property (readonly) NSUInteger hash;
@end
__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
+ (instancetype)new;
- (instancetype)init;
- (void)dealloc;
+ (Class)class;
- (id)copy;
@end
@protocol NSCopying
@end
@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState *)s
                                  objects:(id __unsafe_unretained _Nullable[_Nonnull])b
                                    count:(NSUInteger)n;
@end
@interface NSString : NSObject <NSCopying>
@property (readonly) NSUInteger length;
@property (nullable, readonly) const char *UTF8String;
+ (nullable instancetype)stringWithUTF8String:(const char *)s;
+ (instancetype)stringWithFormat:(NSString *)f, ... __attribute__((format(__NSString__, 1, 2)));
+ (instancetype)string;
- (nullable instancetype)initWithUTF8String:(const char *)s;
- (BOOL)isEqualToString:(NSString *)s;
- (NSString *)stringByAppendingString:(NSString *)s;
- (nullable id)dataUsingEncoding:(NSUInteger)e;
@end
@interface NSNumber : NSObject <NSCopying>
+ (NSNumber *)numberWithBool:(BOOL)v;
+ (NSNumber *)numberWithInt:(int)v;
+ (NSNumber *)numberWithUnsignedInt:(unsigned)v;
+ (NSNumber *)numberWithLong:(long)v;
+ (NSNumber *)numberWithUnsignedLong:(unsigned long)v;
+ (NSNumber *)numberWithLongLong:(long long)v;
+ (NSNumber *)numberWithDouble:(double)v;
+ (NSNumber *)numberWithInteger:(NSInteger)v;
@property (readonly) BOOL boolValue;
@property (readonly) int intValue;
@property (readonly) long long longLongValue;
@end
@interface NSArray<__covariant T> : NSObject <NSFastEnumeration>
+ (instancetype)array;
+ (instancetype)arrayWithObjects:(const T _Nonnull[_Nonnull])o count:(NSUInteger)c;
@property (readonly) NSUInteger count;
@property (nullable, readonly) T firstObject;
- (T)objectAtIndexedSubscript:(NSUInteger)i;
@end
@interface NSDictionary<__covariant K, __covariant V> : NSObject <NSFastEnumeration>
+ (instancetype)dictionary;
+ (instancetype)dictionaryWithObjects:(const V _Nonnull[_Nullable])o
                              forKeys:(const K<NSCopying> _Nonnull[_Nullable])k
                                count:(NSUInteger)c;
- (nullable V)objectForKeyedSubscript:(K)k;
@property (readonly) NSUInteger count;
- (id)mutableCopy;
@end
@interface NSMutableDictionary<K, V> : NSDictionary <K, V>
- (void)setObject:(nullable V)o forKeyedSubscript:(K<NSCopying>)k;
@end
@interface NSSet<__covariant T> : NSObject
+ (instancetype)setWithObject:(T)o;
+ (instancetype)setWithArray:(NSArray<T> *)a;
+ (instancetype)set;
@end
@interface NSData : NSObject
+ (instancetype)dataWithBytes:(nullable const void *)b length:(NSUInteger)n;
@property (readonly) NSUInteger length;
@property (readonly) const void *bytes;
@end
@interface NSURL : NSObject
+ (nullable instancetype)URLWithString:(NSString *)s;
+ (NSURL *)fileURLWithPath:(NSString *)s;
@property (nullable, readonly, copy) NSString *absoluteString, *path;
@end
@interface NSError : NSObject
@property (readonly, copy) NSString *localizedDescription;
@property (readonly, copy) NSString *domain;
@property (readonly) NSInteger code;
@end
@interface NSBundle : NSObject
@property (class, readonly, strong) NSBundle *mainBundle;
@property (nullable, readonly, copy) NSString *bundleIdentifier, *bundlePath;
- (nullable id)objectForInfoDictionaryKey:(NSString *)key;
- (NSString *)localizedStringForKey:(NSString *)k value:(nullable NSString *)v table:(nullable NSString *)t;
- (nullable id)objectForInfoDictionaryKey:(NSString *)k;
@end
@interface NSUserDefaults : NSObject
@property (class, readonly, strong) NSUserDefaults *standardUserDefaults;
- (nullable id)objectForKey:(NSString *)key;
- (void)setObject:(nullable id)value forKey:(NSString *)key;
- (void)setBool:(BOOL)value forKey:(NSString *)key;
- (void)removeObjectForKey:(NSString *)key;
@end
@interface NSAppleEventDescriptor : NSObject
@property (nullable, readonly, copy) NSString *stringValue;
@end
extern "C" NSString *const NSAppleScriptErrorNumber;
extern "C" NSString *const NSAppleScriptErrorMessage;
@interface NSAppleScript : NSObject
- (nullable instancetype)initWithSource:(NSString *)source NS_DESIGNATED_INITIALIZER;
- (NSAppleEventDescriptor *)executeAndReturnError:(NSDictionary<NSString *, id> *_Nullable *_Nullable)e;
@end
typedef NS_OPTIONS(uint64_t, NSActivityOptions) {
    NSActivityIdleDisplaySleepDisabled = 1ULL << 40,
    NSActivityIdleSystemSleepDisabled = 1ULL << 20,
    NSActivitySuddenTerminationDisabled = 1ULL << 14,
    NSActivityAutomaticTerminationDisabled = 1ULL << 15,
    NSActivityUserInitiated = 0x00FFFFFFULL | (1ULL << 20),
    NSActivityUserInitiatedAllowingIdleSystemSleep = 0x00FFFFFFULL & ~(1ULL << 20),
    NSActivityBackground = 0xFFULL
};
@interface NSProcessInfo : NSObject
@property (class, readonly, strong) NSProcessInfo *processInfo;
- (id<NSObject>)beginActivityWithOptions:(NSActivityOptions)o reason:(NSString *)r;
- (void)endActivity:(id<NSObject>)a;
@end
@interface NSNotification : NSObject
@property (nullable, readonly, copy) NSDictionary *userInfo;
@end
@interface NSNotificationCenter : NSObject
@property (class, readonly, strong) NSNotificationCenter *defaultCenter;
- (id<NSObject>)addObserverForName:(nullable NSString *)n
                            object:(nullable id)o
                             queue:(nullable id)q
                        usingBlock:(void (^)(NSNotification *))b;
- (void)removeObserver:(id)o;
@end
NS_ASSUME_NONNULL_END
extern "C" void NSLog(NSString *_Nonnull f, ...) __attribute__((format(__NSString__, 1, 2)));
#define NSFoundationVersionNumber 1
