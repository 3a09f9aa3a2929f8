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
#include "Core/Jobs/Ambient.h"
#include "Core/Jobs/Async.h"
#include "Core/Jobs/CancelAfter.h"
#include "Core/Jobs/Child.h"
#include "Core/Jobs/Clock.h"
#include "Core/Jobs/Completion.h"
#include "Core/Jobs/Isolated.h"
#include "Core/Jobs/Job.h"
#include "Core/Jobs/JobScope.h"
#include "Core/Jobs/MainQueue.h"
#include "Core/Jobs/Sleep.h"
#include "Core/Jobs/SystemClock.h"
#include "Core/Jobs/ThisJob.h"
#include "Core/Jobs/Workers.h"
