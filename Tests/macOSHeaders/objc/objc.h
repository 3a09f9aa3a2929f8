#pragma once
#define OBJC_EXPORT extern "C"
typedef signed char OBJC_BOOL_UNUSED;
typedef bool BOOL; // arm64-apple: BOOL is bool (x86_64: signed char)
#define YES __objc_yes
#define NO __objc_no
#define nil nullptr
#define NIL nullptr
