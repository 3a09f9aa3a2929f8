// Preloaded into the service, makes one step on the way of its files to the disk fail, hang or come up short. What and
// where stands in the file that VERANOX_DISK_STEP names, as "STEP WAY NAME": a step (open, write, sync-file, rename,
// sync-folder), a way (an errno's number, "short", "hang"), and a part of the path that it is about. Nothing happens
// while the file is empty; "hang" lasts as long as the file says so. Each time the step is met, a byte is added to the
// file of that name with ".met" behind it.
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

namespace {

template <class Function> void find(Function &function, const char *name)
{
    function = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, name));
}

/// The system's own calls. Found at the first use, as other libraries may begin before this one.
struct System {
    System()
    {
        find(open, "open");
        find(openAt, "openat");
        find(write, "write");
        find(sync, "fsync");
        find(dataSync, "fdatasync");
        find(renameAt, "renameat");
        find(rename, "rename");
    }
    int (*open)(const char *, int, ...) = nullptr;
    int (*openAt)(int, const char *, int, ...) = nullptr;
    ssize_t (*write)(int, const void *, std::size_t) = nullptr;
    int (*sync)(int) = nullptr;
    int (*dataSync)(int) = nullptr;
    int (*renameAt)(int, const char *, int, const char *) = nullptr;
    int (*rename)(const char *, const char *) = nullptr;
};

const System &real()
{
    static const System system;
    return system;
}

std::string pathOf(int file)
{
    char path[PATH_MAX];
    const ssize_t size = ::readlink(("/proc/self/fd/" + std::to_string(file)).c_str(), path, sizeof path);
    return size > 0 ? std::string(path, static_cast<std::size_t>(size)) : std::string();
}

std::string pathIn(int folder, const char *name)
{
    return name[0] == '/' || folder == AT_FDCWD ? std::string(name) : pathOf(folder) + "/" + name;
}

bool isFolder(int file)
{
    struct stat info{};
    return ::fstat(file, &info) == 0 && S_ISDIR(info.st_mode);
}

/// The way that the step on that path is to go now, or nothing.
std::string wayOf(std::string_view step, std::string_view path)
{
    const char *name = std::getenv("VERANOX_DISK_STEP");
    const int file = name ? real().open(name, O_RDONLY | O_CLOEXEC) : -1;
    char text[PATH_MAX];
    const ssize_t size = file < 0 ? 0 : ::read(file, text, sizeof text);
    if (file >= 0)
        ::close(file);
    const std::string_view wish(text, size > 0 ? static_cast<std::size_t>(size) : 0);
    const std::size_t first = wish.find(' ');
    const std::size_t second = wish.find(' ', first + 1);
    if (second == std::string_view::npos || wish.substr(0, first) != step || !path.contains(wish.substr(second + 1)))
        return {};
    return std::string(wish.substr(first + 1, second - first - 1));
}

void tellThatItWasMet()
{
    const std::string name = std::string(std::getenv("VERANOX_DISK_STEP")) + ".met";
    const int file = real().open(name.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    if (file < 0 || real().write(file, ".", 1) != 1)
        std::abort();
    ::close(file);
}

enum class Way { onward, shortly, fail };

/// Hangs here as long as the step is to hang. For `fail` errno is set.
Way meet(std::string_view step, const std::string &path)
{
    std::string way = wayOf(step, path);
    if (way.empty())
        return Way::onward;
    tellThatItWasMet();
    constexpr useconds_t pause = 5000;
    while (way == "hang") {
        ::usleep(pause);
        way = wayOf(step, path);
    }
    if (way == "short")
        return Way::shortly;
    std::from_chars(way.data(), way.data() + way.size(), errno);
    return way.empty() ? Way::onward : Way::fail;
}

int sync(int file, int (*onward)(int))
{
    return meet(isFolder(file) ? "sync-folder" : "sync-file", pathOf(file)) == Way::fail ? -1 : onward(file);
}

} // namespace

#define PRELOADED extern "C" __attribute__((visibility("default")))

PRELOADED int openat(int folder, const char *name, int flags, ...)
{
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    const bool isToWrite = (flags & O_ACCMODE) != O_RDONLY;
    if (isToWrite && meet("open", pathIn(folder, name)) == Way::fail)
        return -1;
    return real().openAt(folder, name, flags, mode);
}

PRELOADED int open(const char *name, int flags, ...)
{
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    const bool isToWrite = (flags & O_ACCMODE) != O_RDONLY;
    if (isToWrite && meet("open", name) == Way::fail)
        return -1;
    return real().open(name, flags, mode);
}

PRELOADED ssize_t write(int file, const void *data, std::size_t size)
{
    const Way way = meet("write", pathOf(file));
    if (way == Way::fail)
        return -1;
    return real().write(file, data, way == Way::shortly && size > 1 ? size / 2 : size);
}

PRELOADED int fsync(int file)
{
    return sync(file, real().sync);
}

PRELOADED int fdatasync(int file)
{
    return sync(file, real().dataSync);
}

PRELOADED int renameat(int from, const char *name, int to, const char *newName)
{
    return meet("rename", pathIn(to, newName)) == Way::fail ? -1 : real().renameAt(from, name, to, newName);
}

PRELOADED int rename(const char *name, const char *newName)
{
    return meet("rename", newName) == Way::fail ? -1 : real().rename(name, newName);
}
