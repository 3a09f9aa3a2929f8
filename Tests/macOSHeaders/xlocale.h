#pragma once
// Darwin libc extras over musl headers: only what libc++ 14's <locale>/<iostream> need under __APPLE__
#include <ctype.h>
#include <locale.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <wchar.h>
#ifdef __cplusplus
extern "C" {
#endif
int snprintf_l(char *, size_t, locale_t, const char *, ...);
int asprintf_l(char **, locale_t, const char *, ...);
int sscanf_l(const char *, locale_t, const char *, ...);
int vsnprintf_l(char *, size_t, locale_t, const char *, va_list);
int vasprintf_l(char **, locale_t, const char *, va_list);
int vsscanf_l(const char *, locale_t, const char *, va_list);
wint_t btowc_l(int, locale_t);
int wctob_l(wint_t, locale_t);
size_t wcsnrtombs_l(char *, const wchar_t **, size_t, size_t, mbstate_t *, locale_t);
size_t wcrtomb_l(char *, wchar_t, mbstate_t *, locale_t);
size_t mbsnrtowcs_l(wchar_t *, const char **, size_t, size_t, mbstate_t *, locale_t);
size_t mbrtowc_l(wchar_t *, const char *, size_t, mbstate_t *, locale_t);
int mbtowc_l(wchar_t *, const char *, size_t, locale_t);
size_t mbrlen_l(const char *, size_t, mbstate_t *, locale_t);
struct lconv *localeconv_l(locale_t);
size_t mbsrtowcs_l(wchar_t *, const char **, size_t, mbstate_t *, locale_t);
double strtod_l(const char *, char **, locale_t);
float strtof_l(const char *, char **, locale_t);
long double strtold_l(const char *, char **, locale_t);
long long strtoll_l(const char *, char **, int, locale_t);
unsigned long long strtoull_l(const char *, char **, int, locale_t);
size_t __mb_cur_max_l(locale_t);
#define MB_CUR_MAX_L(l) __mb_cur_max_l(l)
#ifdef __cplusplus
}
#endif
typedef unsigned int __uint32_t;
#define _CTYPE_A 0x100L
#define _CTYPE_C 0x200L
#define _CTYPE_D 0x400L
#define _CTYPE_G 0x800L
#define _CTYPE_L 0x1000L
#define _CTYPE_P 0x2000L
#define _CTYPE_S 0x4000L
#define _CTYPE_U 0x8000L
#define _CTYPE_X 0x10000L
#define _CTYPE_B 0x20000L
#define _CTYPE_R 0x40000L
