#include "Tests/Service/Support/FailingDisk.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace veranox::test {

namespace {

constexpr int nothing = -1;
std::atomic<int> failing = nothing; // the number of a step
std::atomic<int> failures;
std::atomic<int> waiting;

bool fails(FailingDisk::Step step)
{
    if (failing != static_cast<int>(step))
        return false;
    ++failures;
    return true;
}

bool isFile(int descriptor)
{
    struct stat info{};
    return ::fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode);
}

int failWith(int reason)
{
    errno = reason;
    return -1;
}

} // namespace

FailingDisk::FailingDisk(Step step)
{
    failures = 0;
    failing = static_cast<int>(step);
}

FailingDisk::~FailingDisk()
{
    failing = nothing;
    failing.notify_all();
    while (const int some = waiting)
        waiting.wait(some);
}

int FailingDisk::count() const
{
    return failures;
}

} // namespace veranox::test

// These stand in the place of the C library's for all that is linked into this program.

using veranox::test::failing;
using veranox::test::fails;
using veranox::test::failWith;
using veranox::test::isFile;
using Step = veranox::test::FailingDisk::Step;

extern "C" {

int openat(int folder, const char *name, int flags, ...)
{
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        va_list rest;
        va_start(rest, flags);
        mode = va_arg(rest, mode_t);
        va_end(rest);
    }
    if (fails((flags & O_CREAT) != 0 ? Step::make : Step::read))
        return failWith(EACCES);
    return static_cast<int>(::syscall(SYS_openat, folder, name, flags, mode));
}

ssize_t write(int file, const void *bytes, size_t count)
{
    if (isFile(file) && fails(Step::write))
        return failWith(ENOSPC);
    if (count > 1 && isFile(file) && failing == static_cast<int>(Step::writeInPart))
        return ::syscall(SYS_write, file, bytes, count / 2);
    if (isFile(file) && fails(Step::writeInPart))
        return failWith(ENOSPC);
    return ::syscall(SYS_write, file, bytes, count);
}

int fsync(int file)
{
    if (fails(isFile(file) ? Step::flushFile : Step::flushFolder))
        return failWith(EIO);
    if (isFile(file) && fails(Step::waitForFlush)) {
        ++veranox::test::waiting;
        failing.wait(static_cast<int>(Step::waitForFlush));
        --veranox::test::waiting;
        veranox::test::waiting.notify_all();
    }
    return static_cast<int>(::syscall(SYS_fsync, file));
}

int renameat(int fromFolder, const char *from, int toFolder, const char *to)
{
    if (fails(Step::rename))
        return failWith(EIO);
    return static_cast<int>(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, 0));
}

} // extern "C"
