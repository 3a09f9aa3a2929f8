#pragma once
#include <stdint.h>
#include <time.h>
#define EVFILT_READ (-1)
#define EVFILT_WRITE (-2)
#define EVFILT_PROC (-5)
#define EVFILT_EXCEPT (-15)
#define EV_ADD 0x0001
#define EV_DELETE 0x0002
#define EV_ENABLE 0x0004
#define EV_DISABLE 0x0008
#define EV_ONESHOT 0x0010
#define EV_CLEAR 0x0020
#define EV_OOBAND 0x2000
#define EV_ERROR 0x4000
#define EV_EOF 0x8000
#define NOTE_EXIT 0x80000000
#define EV_SET(event, a, b, c, d, e, f)                                                                                \
    do {                                                                                                               \
        struct kevent *set = (event);                                                                                  \
        set->ident = (a);                                                                                              \
        set->filter = (b);                                                                                             \
        set->flags = (c);                                                                                              \
        set->fflags = (d);                                                                                             \
        set->data = (e);                                                                                               \
        set->udata = (f);                                                                                              \
    } while (0)
#ifdef __cplusplus
extern "C" {
#endif
struct kevent {
    uintptr_t ident;
    int16_t filter;
    uint16_t flags;
    uint32_t fflags;
    intptr_t data;
    void *udata;
};
int kqueue(void);
int kevent(int, const struct kevent *, int, struct kevent *, int, const struct timespec *);
#ifdef __cplusplus
}
#endif
