#pragma once
#include <CoreFoundation/CoreFoundation.h>
extern "C" {
typedef int32_t OSStatus;
enum : OSStatus {
    errSecSuccess = 0,
    errSecItemNotFound = -25300,
    errSecDuplicateItem = -25299,
    errSecUserCanceled = -128,
    errSecAuthFailed = -25293,
    errSecInteractionNotAllowed = -25308
};
extern const CFStringRef kSecClass, kSecClassGenericPassword, kSecAttrService, kSecAttrAccount, kSecValueData,
    kSecReturnData, kSecReturnAttributes, kSecMatchLimit, kSecMatchLimitOne, kSecAttrLabel, kSecAttrAccessible,
    kSecAttrAccessibleAfterFirstUnlock, kSecUseAuthenticationUI, kSecUseAuthenticationUISkip;
OSStatus SecItemAdd(CFDictionaryRef attributes, CFTypeRef *result);
OSStatus SecItemCopyMatching(CFDictionaryRef query, CFTypeRef *result);
OSStatus SecItemUpdate(CFDictionaryRef query, CFDictionaryRef attributesToUpdate);
OSStatus SecItemDelete(CFDictionaryRef query);
CFStringRef SecCopyErrorMessageString(OSStatus, void *) CF_RETURNS_RETAINED;
}
