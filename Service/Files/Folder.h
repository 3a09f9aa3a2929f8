#pragma once
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace veranox {

/// Whether the disk has said that a change will outlast a loss of power. What is unconfirmed is done all the same:
/// everybody sees it.
enum class Durability { confirmed, unconfirmed };

/// A folder of this user, held open, so that nobody can swap it for another or for a link between two steps. All names
/// are names of entries in it. Every operation throws std::system_error whose text names the step that failed.
class Folder {
public:
    /// Opens the folder and makes it and its parents where they are missing, with mode 0700. Refuses a folder that is a
    /// symbolic link, belongs to somebody else or lets everybody write. `isPrivate` takes away what others may do in
    /// one that exists.
    static Folder openOrMake(const std::filesystem::path &path, bool isPrivate);

    Folder(Folder &&other) noexcept;
    Folder &operator=(Folder &&) = delete;
    ~Folder();

    const std::filesystem::path &path() const { return m_path; }

    /// The content of a regular file, or nothing when there is no such entry. Fails for more than `limit` bytes and for
    /// anything that is no regular file; never waits for a pipe.
    std::optional<std::string> read(const std::string &name, std::size_t limit) const;

    /// Puts the content in the place of whatever file or link has that name, so that at each moment, also after a
    /// crash, either the old or the new content is there, whole. Whoever fails here has changed nothing.
    Durability replace(const std::string &name, std::string_view content, unsigned mode) const;

    /// Takes away what a replace() of that name left behind when its process was killed. For whoever has the folder for
    /// itself: the work of a process that still lives would go, too.
    void removeAbandoned(const std::string &name) const;

    /// Adds the line, given without its line feed, at the end of the regular file of that name, which is made where it
    /// is missing, and brings it to the disk. Where the last line has no end, as after a loss of power, it gets one
    /// first. Fails, with nothing added, when the file would have more than `limit` bytes.
    void appendLine(const std::string &name, std::string_view line, std::size_t limit, unsigned mode) const;

    /// Renames an entry of any kind. Fails when the new name is taken.
    Durability rename(const std::string &from, const std::string &to) const;

    bool contains(const std::string &name) const;
    /// The bytes of the entry; 0 when there is none.
    std::size_t sizeOf(const std::string &name) const;
    void remove(const std::string &name) const;

private:
    Folder(std::filesystem::path path, int descriptor);

    std::filesystem::path m_path;
    int m_descriptor;
};

/// The content of a regular file anywhere, under the same bounds as Folder::read.
std::string readWholeFile(const std::filesystem::path &path, std::size_t limit);

} // namespace veranox
