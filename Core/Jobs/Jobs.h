// The whole job library: coroutines of the main thread, the clock they sleep on, and work off the main thread.
#pragma once
#include "Core/Jobs/Clock.h"
#include "Core/Jobs/Job.h"
#include "Core/Jobs/MainQueue.h"
#include "Core/Jobs/Offload.h"
