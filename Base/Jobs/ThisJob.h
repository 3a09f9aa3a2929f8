// What a job can ask about itself, also from plain functions that it calls.
#pragma once
#include "Base/Jobs/JobCore.h"
#include <QtGlobal>

namespace jobs::this_job {

// Whether the running job was cancelled; false outside of jobs.
inline bool cancelled()
{
    const auto *const core = detail::JobCore::current();
    return core != nullptr && core->cancelled();
}

// The clock of the running job's queue. Only inside of a job.
inline Clock &clock()
{
    const auto *const core = detail::JobCore::current();
    Q_ASSERT_X(core, "this_job::clock", "called outside of a job");
    return core->queue().clock();
}

} // namespace jobs::this_job
