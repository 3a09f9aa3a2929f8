#include "Log/RotatingLineFile.h"
#include "Log/VeranoxRuntimeLogFileError.h"
#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <system_error>

using namespace Qt::StringLiterals;

namespace {

constexpr mode_t folderMode = 0700;
constexpr mode_t fileMode = 0600;

// Far above what a rotated file or a single line can reach; more than this is not ours.
constexpr std::int64_t largestRead = std::int64_t{64} << 20;

[[noreturn]] void fail(const QString &path, QStringView what, const QString &reason)
{
    throw VeranoxRuntimeLogFileError(u"“%1” could not be %2: %3"_s.arg(path, what, reason));
}

[[noreturn]] void fail(const QString &path, QStringView what)
{
    const int reason = errno;
    if (reason == ELOOP)
        fail(path, what, u"It is a symbolic link"_s);
    fail(path, what, QString::fromStdString(std::generic_category().message(reason)));
}

template <class Call> auto uninterrupted(const Call &call)
{
    for (;;) {
        const auto result = call();
        if (result >= 0 || errno != EINTR)
            return result;
    }
}

void makeFolders(const QString &path)
{
    if (::mkdir(QFile::encodeName(path).constData(), folderMode) == 0 || errno == EEXIST)
        return; // what exists but is no folder fails when it is opened
    const QString parent = QFileInfo(path).path();
    if (errno != ENOENT || parent == path)
        fail(path, u"created");
    makeFolders(parent);
    if (::mkdir(QFile::encodeName(path).constData(), folderMode) != 0 && errno != EEXIST)
        fail(path, u"created");
}

bool exists(int folder, const QByteArray &name)
{
    struct stat found{};
    return ::fstatat(folder, name.constData(), &found, AT_SYMLINK_NOFOLLOW) == 0;
}

// Opens something of ours. When it is refused, the rights of the owner may be missing: then grants them, if it can, and
// tries again.
template <class Open, class Grant> FileDescriptor openOwn(const Open &open, const Grant &grant)
{
    const int number = uninterrupted(open);
    if (number >= 0 || errno != EACCES)
        return FileDescriptor(number);
    if (grant())
        return FileDescriptor(uninterrupted(open));
    errno = EACCES;
    return FileDescriptor();
}

bool isPlainFile(int folder, const QByteArray &name)
{
    struct stat found{};
    return ::fstatat(folder, name.constData(), &found, AT_SYMLINK_NOFOLLOW) == 0 && S_ISREG(found.st_mode);
}

// Never waits for a partner (a pipe), never follows a link.
FileDescriptor openPlainFile(int folder, const QByteArray &name, const QString &path, int flags)
{
    FileDescriptor file = openOwn(
        [&] { return ::openat(folder, name.constData(), flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, fileMode); },
        [&] {
            return isPlainFile(folder, name)
                && ::fchmodat(folder, name.constData(), fileMode, AT_SYMLINK_NOFOLLOW) == 0;
        });
    if (!file)
        fail(path, u"opened");
    struct stat found{};
    if (::fstat(file.number(), &found) != 0)
        fail(path, u"opened");
    if (!S_ISREG(found.st_mode))
        fail(path, u"opened", u"It is not a regular file"_s);
    return file;
}

std::int64_t sizeOf(int file)
{
    struct stat found{};
    return ::fstat(file, &found) == 0 ? found.st_size : 0;
}

void writeAll(int file, const QByteArray &data, const QString &path)
{
    const std::int64_t before = sizeOf(file);
    for (qsizetype done = 0; done < data.size();) {
        const ssize_t written = uninterrupted(
            [&] { return ::write(file, data.constData() + done, static_cast<std::size_t>(data.size() - done)); });
        if (written < 0) {
            const int reason = errno;
            std::ignore = ::ftruncate(file, before); // half a line would spoil the next one too
            errno = reason;
            fail(path, u"written");
        }
        done += written;
    }
}

} // namespace

RotatingLineFile::RotatingLineFile(const QString &path, std::int64_t maxBytes, int backupCount)
    : m_path(QFileInfo(path).absoluteFilePath()),
      m_maxBytes(std::max<std::int64_t>(maxBytes, 1)),
      m_backupCount(std::max(backupCount, 0))
{
}

// Lines that fit into the file go there in one write. Once that fails, each has to find its own way.
void RotatingLineFile::append(const QByteArrayList &lines)
{
    std::optional<VeranoxRuntimeLogFileError> failure;
    qsizetype most = lines.size();
    for (qsizetype next = 0; next < lines.size();) {
        try {
            next += appendTogether(lines, next, most);
            failure.reset();
        } catch (const VeranoxRuntimeLogFileError &error) {
            failure = error;
            next += most == 1 ? 1 : 0;
            most = 1;
        }
    }
    if (failure)
        throw *std::move(failure);
}

// Writes the line at `first` and as many after it as still fit, `most` in all; gives their number.
qsizetype RotatingLineFile::appendTogether(const QByteArrayList &lines, qsizetype first, qsizetype most) const
{
    const FileDescriptor folder = openFolder();
    FileDescriptor file = prepareFile(folder.number());
    std::int64_t size = sizeOf(file.number());
    QByteArray data = lines[first] + '\n';
    if (size > 0 && data.size() > m_maxBytes - size) {
        rotate(folder.number());
        file = prepareFile(folder.number());
        size = sizeOf(file.number());
    }
    qsizetype count = 1;
    for (; count < most && first + count < lines.size(); ++count) {
        const QByteArray &line = lines[first + count];
        if (line.size() + 1 > m_maxBytes - size - data.size())
            break;
        data += line;
        data += '\n';
    }
    writeAll(file.number(), data, m_path);
    return count;
}

QByteArrayList RotatingLineFile::contents()
{
    const FileDescriptor folder = openFolder();
    prepareFile(folder.number());
    QByteArrayList all;
    for (int index = m_backupCount; index >= 0; --index) {
        const Place file = place(index);
        if (exists(folder.number(), file.name))
            all.append(read(folder.number(), file));
    }
    return all;
}

FileDescriptor RotatingLineFile::openFolder() const
{
    const QString path = QFileInfo(m_path).path();
    makeFolders(path);
    const QByteArray name = QFile::encodeName(path);
    FileDescriptor folder = openOwn([&] { return ::open(name.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); },
        [&] { return ::chmod(name.constData(), folderMode) == 0; });
    if (!folder)
        fail(path, u"opened");
    if (::fchmod(folder.number(), folderMode) != 0)
        fail(path, u"made private");
    return folder;
}

FileDescriptor RotatingLineFile::prepareFile(int folder) const
{
    FileDescriptor file = openPlainFile(folder, place(0).name, m_path, O_WRONLY | O_APPEND | O_CREAT);
    if (::fchmod(file.number(), fileMode) != 0)
        fail(m_path, u"made private");
    return file;
}

void RotatingLineFile::rotate(int folder) const
{
    if (m_backupCount == 0 && ::unlinkat(folder, place(0).name.constData(), 0) != 0)
        fail(m_path, u"deleted");
    for (int index = m_backupCount; index >= 1; --index) {
        const Place from = place(index - 1);
        const Place to = place(index);
        if (exists(folder, to.name) && ::unlinkat(folder, to.name.constData(), 0) != 0)
            fail(to.path, u"deleted");
        if (exists(folder, from.name) && ::renameat(folder, from.name.constData(), folder, to.name.constData()) != 0)
            fail(from.path, u"moved");
    }
}

QByteArray RotatingLineFile::read(int folder, const Place &place) const
{
    const FileDescriptor file = openPlainFile(folder, place.name, place.path, O_RDONLY);
    const std::int64_t size = sizeOf(file.number());
    std::int64_t at = std::max<std::int64_t>(size - largestRead, 0);
    QByteArray data(static_cast<qsizetype>(size - at), Qt::Uninitialized);
    qsizetype done = 0;
    while (done < data.size()) {
        const ssize_t got = uninterrupted([&] {
            return ::pread(file.number(), data.data() + done, static_cast<std::size_t>(data.size() - done), at + done);
        });
        if (got < 0)
            fail(place.path, u"read");
        if (got == 0) // somebody made it shorter
            break;
        done += got;
    }
    data.truncate(done);
    return data;
}

RotatingLineFile::Place RotatingLineFile::place(int index) const
{
    const QString path = index == 0 ? m_path : m_path + u'.' + QString::number(index);
    return {.name = QFile::encodeName(QFileInfo(path).fileName()), .path = path};
}
