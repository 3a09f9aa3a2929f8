#include "Service/Files/FolderLock.h"

#include "Service/Files/Folder.h"
#include "Service/Files/OwnExecutable.h"
#include "Service/Text/ServiceProblem.h"
#include "Service/Text/ShownPath.h"
#include "Service/Text/Words.h"
#include <array>
#include <charconv>
#include <fcntl.h>
#include <sys/file.h>

namespace veranox {

namespace fs = std::filesystem;

namespace {

constexpr const char *lockName = "service.lock";

/// "4711 veranox", as whoever has the lock wrote it.
std::string holderOf(int file)
{
    std::array<char, 256> text{};
    const ssize_t count = ::pread(file, text.data(), text.size(), 0);
    const std::string_view line(text.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    long process = 0;
    const auto [end, failure] = std::from_chars(line.data(), line.data() + line.size(), process);
    const auto digits = static_cast<std::size_t>(end - line.data());
    if (failure != std::errc{} || digits >= line.size())
        return "another program, which the system does not tell";
    const std::string program = printable(line.substr(digits + 1, line.find('\n') - digits - 1));
    return program + " (process " + std::to_string(process) + ")";
}

void writeHolder(int file)
{
    const std::string line = std::to_string(::getpid()) + " " + ownExecutable().filename().string() + "\n";
    if (::ftruncate(file, 0) != 0 || ::pwrite(file, line.data(), line.size(), 0) < 0)
        return; // who holds the lock is a courtesy to others; that it is held does not depend on it
}

Descriptor openLock(const fs::path &folder)
{
    constexpr mode_t ownerReadsAndWrites = 0600;
    Folder::openOrMake(folder, false);
    Descriptor file(::open(
        (folder / lockName).c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, ownerReadsAndWrites));
    if (file.get() < 0)
        throwSystemError("opening " + std::string(lockName) + " in it");
    return file;
}

} // namespace

FolderLock::FolderLock(const fs::path &folder, const std::string &file, const std::string &variable) : m_file(-1)
{
    const std::string begin = "The folder " + shownPath(folder) + " for " + file;
    const std::string remedy = "or set " + variable + " to another place.";
    bool isTaken = false;
    try {
        m_file.reset(openLock(folder).release());
        isTaken = ::flock(m_file.get(), LOCK_EX | LOCK_NB) != 0;
        if (isTaken && errno != EWOULDBLOCK)
            throwSystemError("locking " + std::string(lockName) + " in it");
    } catch (const std::system_error &failure) {
        throw ServiceProblem(
            begin + " cannot be used (" + failure.what() + "); make it a folder of yours alone, " + remedy);
    }
    if (isTaken)
        throw ServiceProblem(begin + " is in use by " + holderOf(m_file.get()) + "; end that program, " + remedy);
    writeHolder(m_file.get());
}

} // namespace veranox
