#pragma once
#include "Service/Config/ConfigDocument.h"
#include "Service/Files/Folder.h"
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace veranox {

/// A document with the text of its file.
struct ConfigDraft {
    ConfigDocument document;
    std::shared_ptr<const std::string> text;
};

/// The file `config.json` of one folder. Where that is a symbolic link, the file that it leads to is read and written,
/// and the link stays. Remembers nothing, so any thread may use a copy.
class ConfigFile {
public:
    /// Of the file, as it is and as it would be written: what is loaded can also be saved and sent around.
    static constexpr std::size_t sizeLimit = 4 * 1024 * 1024;

    explicit ConfigFile(std::filesystem::path folder);

    std::filesystem::path path() const { return m_folder / "config.json"; }

    /// Its content, or nothing where there is none. Throws std::system_error, and ServiceProblem for a folder that
    /// cannot be used.
    std::optional<std::string> read() const;
    /// True when it holds something else than that text. A file that is gone holds nothing that could be lost.
    bool holdsOtherThan(std::string_view text) const;
    /// Makes the document ready to be written. Throws ServiceProblem where the file could not be read again.
    ConfigDraft draft(ConfigDocument document) const;
    /// Throws ServiceProblem; then it holds what it held.
    Durability write(std::string_view text) const;
    /// Puts its content beside it as "config.json.replaced-<moment>". Throws ServiceProblem.
    void keepCopy(const std::string &moment) const;
    /// Gives it another name, "config.json.damaged-<moment>", which is returned. Throws std::system_error.
    std::filesystem::path setAside(const std::string &moment) const;
    /// Takes away what writes left behind when their process was killed. For whoever has the folder for itself.
    void removeAbandoned() const;

private:
    /// Where the file itself lies, and its name there.
    struct Place {
        Folder folder;
        std::string name;
    };
    Folder folder() const;
    Place place() const;

    std::filesystem::path m_folder;
};

} // namespace veranox
