#include "Base/Process/SpawnSupport.h"
#include <cerrno>
#include <fcntl.h>
#include <sys/event.h>

std::optional<Pipe> openPipe()
{
    int ends[2];
    if (::pipe(ends) != 0)
        return std::nullopt;
    Pipe pipe{.readEnd = Descriptor(ends[0]), .writeEnd = Descriptor(ends[1])};
    if (::fcntl(ends[0], F_SETFD, FD_CLOEXEC) != 0 || ::fcntl(ends[1], F_SETFD, FD_CLOEXEC) != 0
        || ::fcntl(ends[0], F_SETFL, O_NONBLOCK) != 0) // the child's end stays an ordinary one
        return std::nullopt;
    return pipe;
}

short closeEverythingElse(posix_spawn_file_actions_t & /*actions*/)
{
    return POSIX_SPAWN_CLOEXEC_DEFAULT;
}

Descriptor openExitDescriptor(pid_t child)
{
    Descriptor queue(::kqueue());
    struct kevent exit = {};
    EV_SET(&exit, static_cast<uintptr_t>(child), EVFILT_PROC, EV_ADD, NOTE_EXIT, 0, nullptr);
    if (queue && ::kevent(queue.number(), &exit, 1, nullptr, 0, nullptr) == 0)
        return queue;
    if (errno != ESRCH)
        return Descriptor();
    auto ended = openPipe(); // the child has ended before it could be watched; a pipe without a writer is readable
    return ended ? std::move(ended->readEnd) : Descriptor();
}
