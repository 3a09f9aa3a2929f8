#pragma once
#define __MAC_10_9 1090
#define __MAC_10_14 101400
#define __MAC_10_15 101500
#define __MAC_11_0 110000
#define __MAC_12_0 120000
#define __MAC_13_0 130000
#define __MAC_OS_X_VERSION_MAX_ALLOWED 130000
#define __MAC_OS_X_VERSION_MIN_REQUIRED __ENVIRONMENT_MAC_OS_X_VERSION_MIN_REQUIRED__
#define API_AVAILABLE_1(p) __attribute__((availability(p)))
#define __API_macos(v) macos, introduced = v
#define API_AVAILABLE(x) __attribute__((availability(__API_##x)))
#define API_UNAVAILABLE(...)
#define __OSX_AVAILABLE_STARTING(a, b)
#define __OSX_AVAILABLE_BUT_DEPRECATED(a, b, c, d)
