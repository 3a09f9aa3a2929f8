#pragma once
#include <Availability.h>
#include <TargetConditionals.h>
#include <stdint.h>
#pragma clang assume_nonnull begin
extern "C" {
typedef const void *CFTypeRef;
typedef const struct __attribute__((objc_bridge(NSString))) __CFString *CFStringRef;
typedef const struct __attribute__((objc_bridge(NSDictionary))) __CFDictionary *CFDictionaryRef;
typedef const struct __attribute__((objc_bridge(NSData))) __CFData *CFDataRef;
typedef const struct __attribute__((objc_bridge(NSNumber))) __CFBoolean *CFBooleanRef;
typedef const struct __attribute__((objc_bridge(NSURL))) __CFURL *CFURLRef;
typedef struct __attribute__((objc_bridge_mutable(NSMutableDictionary))) __CFDictionary *CFMutableDictionaryRef;
typedef const struct __CFAllocator *CFAllocatorRef;
typedef long CFIndex;
typedef unsigned long CFTypeID;
typedef unsigned char Boolean;
typedef uint32_t CFStringEncoding;
extern const CFBooleanRef kCFBooleanTrue, kCFBooleanFalse;
extern const CFAllocatorRef _Nullable kCFAllocatorDefault;
void CFRelease(CFTypeRef);
CFTypeID CFGetTypeID(CFTypeRef);
CFTypeID CFBooleanGetTypeID(void);
CFTypeRef CFRetain(CFTypeRef);
}
#pragma clang assume_nonnull end
#define CF_RETURNS_RETAINED __attribute__((cf_returns_retained))
