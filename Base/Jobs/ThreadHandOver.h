// What Qt's queues guarantee between threads, told to the thread sanitizer, which does not see into the stock Qt:
// all that was done before handOver(p) in one thread is seen after takeOver(p) in another. Nothing in other builds.
#pragma once

#if defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define JOBS_THREAD_SANITIZER 1
#endif
#elif defined(__SANITIZE_THREAD__)
#define JOBS_THREAD_SANITIZER 1
#endif

#if defined(JOBS_THREAD_SANITIZER)
extern "C" void __tsan_acquire(void *); // NOLINT(bugprone-reserved-identifier): the sanitizer's own name
extern "C" void __tsan_release(void *); // NOLINT(bugprone-reserved-identifier)
namespace jobs::detail {
inline void handOver(void *what)
{
    __tsan_release(what);
}
inline void takeOver(void *what)
{
    __tsan_acquire(what);
}
} // namespace jobs::detail
#undef JOBS_THREAD_SANITIZER
#else
namespace jobs::detail {
inline void handOver(void * /*what*/) { }
inline void takeOver(void * /*what*/) { }
} // namespace jobs::detail
#endif
