// Jobs: coroutines of the main thread, the clock they sleep on, and work off the main thread.
//
//   Async<T>    what a coroutine returns. Lazy: runs when it is awaited, as a part of the awaiting job.
//   JobScope    a member (the LAST one) of the object that owns jobs; start() makes an Async a job.
//   Job<T>      shared handle of a started job: cancel it, wait for it from any number of jobs.
//   Child<T>    a job that lives in a variable of another job: inherits its cancellation, dies with it.
//   Completion  one value that arrives later: from a callback, a thread, a serial object.
//   Workers     blocking calls on a pool of threads; Isolated<T> one object in a thread of its own.
//
// Rules of writing a coroutine: parameters by value; never a lambda; member coroutines only in classes that cannot be
// copied; no co_await in a catch block; no nested event loop; a job does not delete its own owner (deleteLater() does).
// Order of life: clock, queue, workers and isolated objects, owners of jobs.
#pragma once
#include "Base/Jobs/Ambient.h"
#include "Base/Jobs/Async.h"
#include "Base/Jobs/CancelAfter.h"
#include "Base/Jobs/Child.h"
#include "Base/Jobs/Clock.h"
#include "Base/Jobs/Completion.h"
#include "Base/Jobs/Isolated.h"
#include "Base/Jobs/Job.h"
#include "Base/Jobs/JobScope.h"
#include "Base/Jobs/MainQueue.h"
#include "Base/Jobs/Sleep.h"
#include "Base/Jobs/SystemClock.h"
#include "Base/Jobs/ThisJob.h"
#include "Base/Jobs/Workers.h"
