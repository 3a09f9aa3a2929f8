#include "Service/Files/Folder.h"

#include "Service/Files/Descriptor.h"
#include "Service/Text/ShownPath.h"
#include <algorithm>
#include <array>
#include <fcntl.h>
#include <random>
#include <sys/stat.h>

namespace veranox {

namespace {

constexpr mode_t ownerOnly = 0700;
constexpr mode_t othersBits = 0077;

struct stat statOf(int descriptor, const std::string &what)
{
    struct stat info{};
    if (::fstat(descriptor, &info) != 0)
        throwSystemError("reading the kind of " + what);
    return info;
}

Descriptor openFolder(const std::filesystem::path &path)
{
    Descriptor folder(::open(path.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
    if (folder.get() < 0 && (errno == ELOOP || (errno == ENOTDIR && std::filesystem::is_symlink(path))))
        throw std::system_error(ELOOP, std::generic_category(), "opening the folder, which is a symbolic link");
    if (folder.get() < 0)
        throwSystemError("opening the folder");
    return folder;
}

void makeFolder(const std::filesystem::path &path)
{
    if (const std::filesystem::path parent = path.parent_path(); parent != path && !std::filesystem::exists(parent))
        makeFolder(parent);
    if (::mkdir(path.c_str(), ownerOnly) != 0 && errno != EEXIST)
        throwSystemError("making the folder " + shownPath(path));
}

std::string readBounded(Descriptor file, std::size_t limit)
{
    if (!S_ISREG(statOf(file.get(), "the file").st_mode))
        throw std::system_error(EINVAL, std::generic_category(), "reading it, as it is no regular file");
    std::string content;
    std::array<char, 16384> chunk{};
    for (;;) {
        const ssize_t count = ::read(file.get(), chunk.data(), chunk.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throwSystemError("reading it");
        if (count == 0)
            return content;
        content.append(chunk.data(), static_cast<std::size_t>(count));
        if (content.size() > limit)
            throw std::system_error(
                EFBIG, std::generic_category(), "reading it, as it has more than " + std::to_string(limit) + " bytes");
    }
}

void writeAll(int file, std::string_view content)
{
    while (!content.empty()) {
        const ssize_t count = ::write(file, content.data(), content.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            throwSystemError("writing the new content");
        content.remove_prefix(static_cast<std::size_t>(count));
    }
}

bool endsInLine(int file, off_t size)
{
    char last = '\n';
    if (size > 0 && ::pread(file, &last, 1, size - 1) != 1)
        throwSystemError("reading its last line");
    return last == '\n';
}

constexpr std::string_view unfinishedEnding = ".new";

std::string temporaryName(const std::string &name)
{
    std::random_device random;
    return "." + name + "." + std::to_string(random()) + std::string(unfinishedEnding);
}

bool isUnfinished(std::string_view candidate, const std::string &name)
{
    const std::string begin = "." + name + ".";
    if (!candidate.starts_with(begin) || !candidate.ends_with(unfinishedEnding)
        || candidate.size() <= begin.size() + unfinishedEnding.size())
        return false;
    candidate.remove_prefix(begin.size());
    candidate.remove_suffix(unfinishedEnding.size());
    return std::ranges::all_of(candidate, [](char c) { return c >= '0' && c <= '9'; });
}

/// An entry that is taken away again unless the work on it came to its end.
class UnfinishedEntry {
public:
    UnfinishedEntry(int folder, const std::string &name) : m_folder(folder), m_name(name) { }
    UnfinishedEntry(const UnfinishedEntry &) = delete;
    UnfinishedEntry &operator=(const UnfinishedEntry &) = delete;
    ~UnfinishedEntry()
    {
        if (!m_finished)
            ::unlinkat(m_folder, m_name.c_str(), 0);
    }
    void finish() { m_finished = true; }

private:
    int m_folder;
    const std::string &m_name;
    bool m_finished = false;
};

} // namespace

Folder::Folder(std::filesystem::path path, int descriptor) : m_path(std::move(path)), m_descriptor(descriptor) { }

Folder::Folder(Folder &&other) noexcept
    : m_path(std::move(other.m_path)),
      m_descriptor(std::exchange(other.m_descriptor, -1))
{
}

Folder::~Folder()
{
    if (m_descriptor >= 0)
        ::close(m_descriptor);
}

Folder Folder::openOrMake(const std::filesystem::path &path, bool isPrivate)
{
    makeFolder(path);
    const Descriptor folder = openFolder(path);
    const struct stat info = statOf(folder.get(), "the folder");
    if (info.st_uid != ::geteuid())
        throw std::system_error(EPERM, std::generic_category(), "using the folder, which belongs to another user");
    if ((info.st_mode & S_IWOTH) != 0)
        throw std::system_error(EPERM, std::generic_category(), "using the folder, in which everybody may write");
    if (isPrivate && (info.st_mode & othersBits) != 0 && ::fchmod(folder.get(), ownerOnly) != 0)
        throwSystemError("making the folder private");
    const int descriptor = ::fcntl(folder.get(), F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0)
        throwSystemError("opening the folder");
    return {path, descriptor};
}

std::size_t Folder::sizeOf(const std::string &name) const
{
    struct stat info{};
    const bool isThere = ::fstatat(m_descriptor, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
    return isThere ? static_cast<std::size_t>(info.st_size) : 0;
}

void Folder::remove(const std::string &name) const
{
    if (::unlinkat(m_descriptor, name.c_str(), 0) != 0)
        throwSystemError("removing " + name);
}

bool Folder::contains(const std::string &name) const
{
    struct stat info{};
    return ::fstatat(m_descriptor, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0;
}

std::optional<std::string> Folder::read(const std::string &name, std::size_t limit) const
{
    Descriptor file(::openat(m_descriptor, name.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (file.get() < 0 && errno == ENOENT && !contains(name))
        return std::nullopt;
    if (file.get() < 0)
        throwSystemError("opening it");
    return readBounded(std::move(file), limit);
}

Durability Folder::replace(const std::string &name, std::string_view content, unsigned mode) const
{
    const std::string unfinishedName = temporaryName(name);
    Descriptor file(::openat(m_descriptor, unfinishedName.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
        static_cast<mode_t>(mode)));
    if (file.get() < 0)
        throwSystemError("making the new file");
    UnfinishedEntry unfinished(m_descriptor, unfinishedName);
    if (::fchmod(file.get(), static_cast<mode_t>(mode)) != 0)
        throwSystemError("setting who may read the new file");
    writeAll(file.get(), content);
    if (::fsync(file.get()) != 0)
        throwSystemError("bringing the new file to the disk");
    if (!file.close())
        throwSystemError("closing the new file");
    if (::renameat(m_descriptor, unfinishedName.c_str(), m_descriptor, name.c_str()) != 0)
        throwSystemError("putting the new file in its place");
    unfinished.finish();
    return ::fsync(m_descriptor) == 0 ? Durability::confirmed : Durability::unconfirmed;
}

void Folder::removeAbandoned(const std::string &name) const
{
    std::error_code failure;
    for (std::filesystem::directory_iterator entry(m_path, failure), end; !failure && entry != end;
        entry.increment(failure)) {
        const std::string candidate = entry->path().filename();
        struct stat info{};
        if (isUnfinished(candidate, name) && ::fstatat(m_descriptor, candidate.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0
            && S_ISREG(info.st_mode))
            ::unlinkat(m_descriptor, candidate.c_str(), 0);
    }
}

void Folder::appendLine(const std::string &name, std::string_view line, std::size_t limit, unsigned mode) const
{
    const Descriptor file(::openat(m_descriptor, name.c_str(),
        O_RDWR | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, static_cast<mode_t>(mode)));
    if (file.get() < 0)
        throwSystemError("opening it");
    const struct stat info = statOf(file.get(), "the file");
    if (!S_ISREG(info.st_mode))
        throw std::system_error(EINVAL, std::generic_category(), "adding to it, as it is no regular file");
    if (::fchmod(file.get(), static_cast<mode_t>(mode)) != 0)
        throwSystemError("setting who may read it");
    const std::string content = (endsInLine(file.get(), info.st_size) ? "" : "\n") + std::string(line) + "\n";
    if (content.size() > limit || static_cast<std::size_t>(info.st_size) > limit - content.size())
        throw std::system_error(EFBIG, std::generic_category(),
            "adding to it, as it would have more than " + std::to_string(limit) + " bytes");
    try {
        writeAll(file.get(), content);
        if (::fsync(file.get()) != 0)
            throwSystemError("bringing it to the disk");
    } catch (const std::system_error &) {
        if (::ftruncate(file.get(), info.st_size) != 0)
            throwSystemError("taking back what was half added");
        throw;
    }
}

Durability Folder::rename(const std::string &from, const std::string &to) const
{
    if (contains(to))
        throw std::system_error(EEXIST, std::generic_category(), "renaming it to " + to);
    if (::renameat(m_descriptor, from.c_str(), m_descriptor, to.c_str()) != 0)
        throwSystemError("renaming it to " + to);
    return ::fsync(m_descriptor) == 0 ? Durability::confirmed : Durability::unconfirmed;
}

std::string readWholeFile(const std::filesystem::path &path, std::size_t limit)
{
    Descriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (file.get() < 0)
        throwSystemError("opening it");
    return readBounded(std::move(file), limit);
}

} // namespace veranox
